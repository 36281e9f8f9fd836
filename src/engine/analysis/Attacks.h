// Where the notes of a track begin, to the frame, for marks that snap. The attacks are those that the stretcher knows
// (AttackMap.h); here each is traced back to the first frame of its rise. Any thread that may wait for the disk; not
// for the sound's own reader while it plays.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/media/SoundReader.h"
#include "engine/render/stretch/AttackMap.h"

namespace qm {

// The first frame at which the sound is no longer what followed from the sound before: within 18 ms of the attack. The
// attack itself where nothing rises there.
std::int64_t firstFrameOfRise(SoundReader& sound, std::int64_t attack);

// All attacks of [begin, end), ascending, each at the first frame of its rise.
std::vector<Attack> attacksBetween(SoundReader& sound, std::int64_t begin, std::int64_t end);

// Those in the 300 ms around a frame, which is the sound that a mark snaps to.
std::vector<std::int64_t> attacksAround(SoundReader& sound, std::int64_t frame);

}  // namespace qm
