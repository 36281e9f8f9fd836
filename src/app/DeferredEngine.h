// The media engine, out of the program's way until it is needed: its module is loaded in the background once the window
// stands, or by the first movie that is opened, which then waits for it. Without the module, as after a broken
// installation, every file is one that cannot be opened, and the log says why. Main thread only.
#pragma once

#include <QString>
#include <future>
#include <memory>

#include "engine/api/EngineModule.h"

namespace qm {

class DeferredEngine : public MediaEngine {
public:
    explicit DeferredEngine(QString modulePath = installedModule());

    void load();                   // begins, and returns at once
    const EngineModule* module();  // waits for it with a living window; null if it cannot be loaded

    Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) override;
    void giveUpOpening() override;
    std::optional<SoundOutput> soundOutput() const override;

    // Before the first movie there is no handle that could mean anything.
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

    static QString installedModule();  // the path of the module that belongs to this program

private:
    const QString m_modulePath;
    std::future<const EngineModule*> m_loading;
    const EngineModule* m_module = nullptr;
    std::unique_ptr<MediaEngine> m_engine;
};

}  // namespace qm
