// The records that the meters are read into. Values.
#pragma once

#include <cstdint>

namespace qm {

inline constexpr std::uint32_t kMeterChannels = 2;
inline constexpr std::uint32_t kMeterBands = 4;

struct QTAudioVolumeLevels {
    std::uint32_t numChannels = kMeterChannels;
    float level[kMeterChannels] = {};  // dBFS
};
static_assert(sizeof(QTAudioVolumeLevels) == 12);

struct QTAudioFrequencyLevels {
    std::uint32_t numChannels = kMeterChannels;
    std::uint32_t numFrequencyBands = kMeterBands;
    float level[kMeterChannels * kMeterBands] = {};  // linear, 0 to 1: all bands of a channel, then of the next
};
static_assert(sizeof(QTAudioFrequencyLevels) == 40);

}  // namespace qm
