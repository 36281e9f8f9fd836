// The low-level calls on a movie handle, with times as signed 32-bit counts in the movie's own time scale.
// Main thread only. A call on a dead or absent handle does nothing and answers kInvalidMovie, zero or "not done".
#pragma once

#include <cstdint>

#include "engine/api/FourCharCode.h"
#include "engine/api/QTMovie.h"

namespace qm {

using OSErr = int;
inline constexpr OSErr kNoErr = 0;
inline constexpr OSErr kInvalidMovie = -2010;
inline constexpr OSErr kUnknownProperty = -2195;

inline constexpr std::uint32_t kQTPropertyClass_Audio = fourCharCode("audi");
inline constexpr std::uint32_t kQTAudioPropertyID_Pitch = fourCharCode("pitc");  // 32-bit float, cents
inline constexpr std::uint32_t kDeviceMix = fourCharCode("dcly");                // what the device plays
inline constexpr std::uint32_t kStereoMix = fourCharCode("stmx");

// The records of the meters.
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

class MovieToolbox {
public:
    virtual ~MovieToolbox() = default;

    virtual std::int32_t GetMovieDuration(Movie movie) = 0;
    virtual std::int32_t GetMovieTime(Movie movie) = 0;
    virtual void SetMovieTimeValue(Movie movie, std::int32_t time) = 0;
    virtual bool IsMovieDone(Movie movie) = 0;

    virtual OSErr QTSetMovieProperty(Movie movie, std::uint32_t propertyClass, std::uint32_t propertyId,
                                     std::uint32_t size, const void* value) = 0;
    virtual OSErr SetMovieAudioBalance(Movie movie, float balance, std::uint32_t flags) = 0;

    // Bass and treble of one sound track (0 is the first), each 0..256 with 128 neutral; other values are clamped.
    virtual int soundTrackCount(Movie movie) = 0;
    virtual OSErr MediaSetSoundBassAndTreble(Movie movie, int soundTrack, std::int16_t bass, std::int16_t treble) = 0;

    // Metering: volume of the device mix, bands of the stereo mix. `bands` comes back as the count that is delivered.
    // Levels are read into the caller's records, counts included, without allocation; before metering is switched on
    // the status is not zero.
    virtual OSErr SetMovieAudioVolumeMeteringEnabled(Movie movie, std::uint32_t mix, bool enabled) = 0;
    virtual OSErr SetMovieAudioFrequencyMeteringNumBands(Movie movie, std::uint32_t mix, std::uint32_t& bands) = 0;
    virtual OSErr GetMovieAudioVolumeLevels(Movie movie, std::uint32_t mix, QTAudioVolumeLevels& averagePower,
                                            QTAudioVolumeLevels& peakHold) = 0;
    virtual OSErr GetMovieAudioFrequencyLevels(Movie movie, std::uint32_t mix, QTAudioFrequencyLevels& levels) = 0;
};

}  // namespace qm
