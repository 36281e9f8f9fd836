// The tags of Matroska and WebM files.
#pragma once

#include "engine/media/FileBytes.h"
#include "engine/media/tags/TagList.h"

namespace qm {

// In the file's order. The title of what is said to be an album is the track's album.
void readMatroskaTags(const FileBytes& file, TagList& tags);

}  // namespace qm
