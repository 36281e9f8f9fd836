// The media engine on real files and the real sound device. Main thread only. Handles are tokens that are looked up, so
// a call on a movie that has gone does nothing.
#pragma once

#include "engine/api/MediaEngine.h"
#include "engine/api/MetaDataCopies.h"
#include "engine/movie/FileMovie.h"
#include "engine/output/AudioOutput.h"
#include "engine/realtime/ThreadRole.h"

namespace qm {

class FileEngine : public MediaEngine {
public:
    // With `patience`, files are opened on another thread.
    explicit FileEngine(OutputFactory openOutput = openSystemOutput, Patience patience = {});
    ~FileEngine() override;

    Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) override;
    void giveUpOpening() override { m_isGivenUp = true; }
    std::optional<SoundOutput> soundOutput() const override;

    std::int32_t GetMovieDuration(Movie movie) override;
    std::int32_t GetMovieTime(Movie movie) override;
    void SetMovieTimeValue(Movie movie, std::int32_t time) override;
    bool IsMovieDone(Movie movie) override;
    OSErr QTSetMovieProperty(Movie movie, std::uint32_t propertyClass, std::uint32_t propertyId, std::uint32_t size,
                             const void* value) override;
    OSErr SetMovieAudioBalance(Movie movie, float balance, std::uint32_t flags) override;
    int soundTrackCount(Movie movie) override;
    OSErr MediaSetSoundBassAndTreble(Movie movie, int soundTrack, std::int16_t bass, std::int16_t treble) override;
    OSErr SetMovieAudioVolumeMeteringEnabled(Movie movie, std::uint32_t mix, bool enabled) override;
    OSErr SetMovieAudioFrequencyMeteringNumBands(Movie movie, std::uint32_t mix, std::uint32_t& bands) override;
    OSErr GetMovieAudioVolumeLevels(Movie movie, std::uint32_t mix, QTAudioVolumeLevels& averagePower,
                                    QTAudioVolumeLevels& peakHold) override;
    OSErr GetMovieAudioFrequencyLevels(Movie movie, std::uint32_t mix, QTAudioFrequencyLevels& levels) override;

    OSErr QTCopyMovieMetaData(Movie movie, QTMetaDataRef& metaData) override;
    OSErr QTMetaDataGetNextItem(QTMetaDataRef metaData, std::uint32_t storageFormat, QTMetaDataItem current,
                                std::uint32_t keyFormat, QTMetaDataItem& next) override;
    OSErr QTMetaDataGetItemProperty(QTMetaDataRef metaData, QTMetaDataItem item, std::uint32_t propertyClass,
                                    std::uint32_t propertyId, std::size_t size, void* value,
                                    std::size_t& sizeUsed) override;
    void QTMetaDataRelease(QTMetaDataRef metaData) override;

private:
    FileMovie* find(Movie movie) const;
    Result<OpenedMedia> open(const std::string& path);

    const ThreadRole m_mainThread;
    const OutputFactory m_openOutput;
    const Patience m_patience;
    const std::shared_ptr<MovieRegistry> m_registry;  // shared with the movies, which leave it when they go
    Movie m_lastHandle = 0;
    bool m_isGivenUp = false;  // the file that is being opened
    MetaDataCopies m_metaData;
};

}  // namespace qm
