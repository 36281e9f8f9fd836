// What tells a file's sound from every other: the same for a copy of the file, under another name, with other tags or a
// cover, or with its packets copied into another movie; another for a new encoding, a cut, or other sound of the same
// length. Any thread that may wait for the disk.
#pragma once

#include <string>

#include "engine/media/FileBytes.h"
#include "engine/media/SoundTrack.h"

namespace qm {

// "q1-" and 32 hexadecimal digits: the first half of the SHA-256 of the track's kind and size and of pieces of its
// coded sound. Decodes nothing; reads at most 512 KiB, at 16 places. Empty if the file has become unreadable.
std::string soundIdentity(const SoundTrack& track, const FileBytes& file);

}  // namespace qm
