// What quillmere-render says of a passage of a track instead of rendering it. Frames [begin, end); the answer is an
// exit status.
#pragma once

#include <cstdint>

#include "engine/media/SoundReader.h"

namespace qm {

// A line for each attack: its time in seconds, how sure it is one, its strength.
int printAttacks(SoundReader& sound, std::int64_t begin, std::int64_t end);

// A line for each column: its least and its largest sample and its loudness.
int printColumns(SoundReader& sound, std::int64_t begin, std::int64_t end, std::int64_t count);

}  // namespace qm
