// APE tags, which some programs write behind MPEG audio.
#pragma once

#include "engine/media/FileBytes.h"
#include "engine/media/tags/TagList.h"

namespace qm {

// Adds the texts of a tag that ends the file, or that stands in front of an ID3v1 tag at its end.
void readApe(const FileBytes& file, TagList& tags);

}  // namespace qm
