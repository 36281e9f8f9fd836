// Which kind of file this is, by its first bytes and never by its name. Pure but for the reading.
#pragma once

#include "engine/api/MediaKinds.h"
#include "engine/media/FileBytes.h"

namespace qm {

// By the marks of the kinds; MPEG audio, which has none of its own, for a file that is none of the others.
MediaKind fileKind(const FileBytes& file);

}  // namespace qm
