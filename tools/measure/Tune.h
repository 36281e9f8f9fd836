// The demonstration's tune: a plucked melody with woodblock ticks on the left, a steady A of 440 Hz on the right. The
// rhythm does not repeat within the tune, so that a loop's period can be told from the recording alone.
#pragma once

#include "SoundFile.h"

namespace qm::measure {

inline constexpr double kSteadyToneHz = 440.0;

Sound makeTune(int seconds);

}  // namespace qm::measure
