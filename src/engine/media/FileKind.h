// Which kind of file this is, by its first bytes and never by its name. Pure but for the reading.
#pragma once

#include <string>

#include "engine/media/FileBytes.h"

namespace qm {

// The demuxer's short name ("wav", "aiff", "caf", "mov", "avi", "asf", "dv", "nistsphere"), "rifx" for a wave file with
// its numbers big-endian, which needs no demuxer, or empty for a file that is none of these: MPEG audio has no mark of
// its own.
std::string fileKind(const FileBytes& file);

}  // namespace qm
