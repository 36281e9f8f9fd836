#include "engine/api/MovieToolbox.h"

#include <cstring>

#include "engine/api/QTMovie.h"

namespace qm {

std::int32_t MovieToolbox::GetMovieDuration(Movie movie) const {
    const QTMovie* found = m_movies.find(movie);
    return found ? static_cast<std::int32_t>(found->duration().timeValue) : 0;
}

std::int32_t MovieToolbox::GetMovieTime(Movie movie) const {
    const QTMovie* found = m_movies.find(movie);
    return found ? static_cast<std::int32_t>(found->currentTime().timeValue) : 0;
}

void MovieToolbox::SetMovieTimeValue(Movie movie, std::int32_t time) {
    if (QTMovie* found = m_movies.find(movie)) found->seekTo(time);
}

bool MovieToolbox::IsMovieDone(Movie movie) const {
    const QTMovie* found = m_movies.find(movie);
    return found && found->isDone();
}

OSErr MovieToolbox::QTSetMovieProperty(Movie movie, std::uint32_t propertyClass, std::uint32_t propertyId,
                                       std::uint32_t size, const void* value) {
    QTMovie* found = m_movies.find(movie);
    if (!found) return kInvalidMovie;
    if (propertyClass != kQTPropertyClass_Audio || propertyId != kQTAudioPropertyID_Pitch || size != sizeof(float))
        return kUnknownProperty;
    float cents = 0;
    std::memcpy(&cents, value, sizeof cents);
    found->setPitch(cents);
    return kNoErr;
}

OSErr MovieToolbox::SetMovieAudioBalance(Movie movie, float balance, std::uint32_t) {
    QTMovie* found = m_movies.find(movie);
    if (!found) return kInvalidMovie;
    found->setBalance(balance);
    return kNoErr;
}

int MovieToolbox::soundTrackCount(Movie movie) const {
    const QTMovie* found = m_movies.find(movie);
    return found ? found->soundTrackCount() : 0;
}

OSErr MovieToolbox::MediaSetSoundBassAndTreble(Movie movie, int soundTrack, std::int16_t bass, std::int16_t treble) {
    QTMovie* found = m_movies.find(movie);
    if (!found || soundTrack < 0 || soundTrack >= found->soundTrackCount()) return kInvalidMovie;
    found->setTone(soundTrack, bass, treble);
    return kNoErr;
}

OSErr MovieToolbox::SetMovieAudioVolumeMeteringEnabled(Movie movie, std::uint32_t mix, bool enabled) {
    QTMovie* found = m_movies.find(movie);
    if (!found) return kInvalidMovie;
    if (mix != kDeviceMix) return kUnknownProperty;
    found->meterVolume(enabled);
    return kNoErr;
}

OSErr MovieToolbox::SetMovieAudioFrequencyMeteringNumBands(Movie movie, std::uint32_t mix, std::uint32_t& bands) {
    QTMovie* found = m_movies.find(movie);
    if (!found) return kInvalidMovie;
    if (mix != kStereoMix) return kUnknownProperty;
    if (bands > 0) bands = kMeterBands;
    found->meterBands(bands > 0);
    return kNoErr;
}

OSErr MovieToolbox::GetMovieAudioVolumeLevels(Movie movie, std::uint32_t mix, QTAudioVolumeLevels& averagePower,
                                              QTAudioVolumeLevels& peakHold) const {
    const QTMovie* found = m_movies.find(movie);
    if (!found) return kInvalidMovie;
    return mix == kDeviceMix && found->readVolumeLevels(averagePower, peakHold) ? kNoErr : kUnknownProperty;
}

OSErr MovieToolbox::GetMovieAudioFrequencyLevels(Movie movie, std::uint32_t mix, QTAudioFrequencyLevels& levels) const {
    const QTMovie* found = m_movies.find(movie);
    if (!found) return kInvalidMovie;
    return mix == kStereoMix && found->readFrequencyLevels(levels) ? kNoErr : kUnknownProperty;
}

}  // namespace qm
