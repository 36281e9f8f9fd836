// The metering calls: volume of the device mix and four bands of the stereo mix, nothing else.
#include <algorithm>
#include <iterator>

#include "engine/movie/FileEngine.h"

namespace qm {

static_assert(Meter::kChannels == kMeterChannels && Meter::kBands == kMeterBands);

OSErr FileEngine::SetMovieAudioVolumeMeteringEnabled(Movie movie, std::uint32_t mix, bool enabled) {
    FileMovie* found = find(movie);
    if (!found) return kInvalidMovie;
    if (mix != kDeviceMix) return kUnknownProperty;
    found->meter().enableVolume(enabled);
    return kNoErr;
}

OSErr FileEngine::SetMovieAudioFrequencyMeteringNumBands(Movie movie, std::uint32_t mix, std::uint32_t& bands) {
    FileMovie* found = find(movie);
    if (!found) return kInvalidMovie;
    if (mix != kStereoMix) return kUnknownProperty;
    if (bands > 0) bands = kMeterBands;
    found->meter().enableBands(bands > 0);
    return kNoErr;
}

OSErr FileEngine::GetMovieAudioVolumeLevels(Movie movie, std::uint32_t mix, QTAudioVolumeLevels& averagePower,
                                            QTAudioVolumeLevels& peakHold) {
    FileMovie* found = find(movie);
    if (!found) return kInvalidMovie;
    if (mix != kDeviceMix || !found->meter().volumeEnabled()) return kUnknownProperty;
    const Meter::Levels heard = found->meter().levels();
    averagePower.numChannels = peakHold.numChannels = kMeterChannels;
    std::copy(heard.averagePower.begin(), heard.averagePower.end(), std::begin(averagePower.level));
    std::copy(heard.peakHold.begin(), heard.peakHold.end(), std::begin(peakHold.level));
    return kNoErr;
}

OSErr FileEngine::GetMovieAudioFrequencyLevels(Movie movie, std::uint32_t mix, QTAudioFrequencyLevels& levels) {
    FileMovie* found = find(movie);
    if (!found) return kInvalidMovie;
    if (mix != kStereoMix || !found->meter().bandsEnabled()) return kUnknownProperty;
    const Meter::Levels heard = found->meter().levels();
    levels.numChannels = kMeterChannels;
    levels.numFrequencyBands = kMeterBands;
    float* level = levels.level;
    for (const auto& channel : heard.bands) level = std::copy(channel.begin(), channel.end(), level);
    return kNoErr;
}

}  // namespace qm
