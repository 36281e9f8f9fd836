// What the meter measured, as the records of the engine's interface. Main thread only.
#pragma once

#include <algorithm>
#include <iterator>

#include "engine/api/MovieToolbox.h"
#include "engine/output/Meter.h"

namespace qm {

static_assert(Meter::kChannels == kMeterChannels && Meter::kBands == kMeterBands);

inline void copyVolumes(const Meter::Levels& heard, QTAudioVolumeLevels& averagePower, QTAudioVolumeLevels& peakHold) {
    averagePower.numChannels = peakHold.numChannels = kMeterChannels;
    std::copy(heard.averagePower.begin(), heard.averagePower.end(), std::begin(averagePower.level));
    std::copy(heard.peakHold.begin(), heard.peakHold.end(), std::begin(peakHold.level));
}

inline void copyBands(const Meter::Levels& heard, QTAudioFrequencyLevels& levels) {
    levels.numChannels = kMeterChannels;
    levels.numFrequencyBands = kMeterBands;
    float* level = levels.level;
    for (const auto& channel : heard.bands) level = std::copy(channel.begin(), channel.end(), level);
}

}  // namespace qm
