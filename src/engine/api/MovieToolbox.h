// The low-level calls on a movie handle, with times as signed 32-bit counts in the movie's own time scale.
// Main thread only. A call on a dead or absent handle does nothing and answers kInvalidMovie, zero or "not done".
#pragma once

#include <cstdint>

#include "engine/api/FourCharCode.h"
#include "engine/api/MeterLevels.h"
#include "engine/api/MovieRegistry.h"

namespace qm {

using OSErr = int;
inline constexpr OSErr kNoErr = 0;
inline constexpr OSErr kInvalidMovie = -2010;
inline constexpr OSErr kUnknownProperty = -2195;

inline constexpr std::uint32_t kQTPropertyClass_Audio = fourCharCode("audi");
inline constexpr std::uint32_t kQTAudioPropertyID_Pitch = fourCharCode("pitc");  // 32-bit float, cents
inline constexpr std::uint32_t kDeviceMix = fourCharCode("dcly");                // what the device plays
inline constexpr std::uint32_t kStereoMix = fourCharCode("stmx");

class MovieToolbox {
public:
    explicit MovieToolbox(const MovieRegistry& movies) : m_movies(movies) {}

    std::int32_t GetMovieDuration(Movie movie) const;
    std::int32_t GetMovieTime(Movie movie) const;
    void SetMovieTimeValue(Movie movie, std::int32_t time);
    bool IsMovieDone(Movie movie) const;

    OSErr QTSetMovieProperty(Movie movie, std::uint32_t propertyClass, std::uint32_t propertyId, std::uint32_t size,
                             const void* value);
    OSErr SetMovieAudioBalance(Movie movie, float balance, std::uint32_t flags);

    // Bass and treble of one sound track (0 is the first), each 0..256 with 128 neutral; other values are clamped.
    int soundTrackCount(Movie movie) const;
    OSErr MediaSetSoundBassAndTreble(Movie movie, int soundTrack, std::int16_t bass, std::int16_t treble);

    // Metering: volume of the device mix, bands of the stereo mix. `bands` comes back as the count that is delivered.
    // Levels are read into the caller's records, counts included, without allocation; before metering is switched on
    // the status is not zero.
    OSErr SetMovieAudioVolumeMeteringEnabled(Movie movie, std::uint32_t mix, bool enabled);
    OSErr SetMovieAudioFrequencyMeteringNumBands(Movie movie, std::uint32_t mix, std::uint32_t& bands);
    OSErr GetMovieAudioVolumeLevels(Movie movie, std::uint32_t mix, QTAudioVolumeLevels& averagePower,
                                    QTAudioVolumeLevels& peakHold) const;
    OSErr GetMovieAudioFrequencyLevels(Movie movie, std::uint32_t mix, QTAudioFrequencyLevels& levels) const;

private:
    const MovieRegistry& m_movies;
};

}  // namespace qm
