// A media engine without sound: movies are scripts, time moves when the test moves it, and every call that would change
// something is recorded in order with its arguments. Reads are not recorded. Main thread only.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "engine/api/MediaEngine.h"
#include "engine/api/MetaDataCopies.h"
#include "support/widgets/EventLog.h"

namespace qm {

// What a file opens as. Times are units of the scale; the default is 100 seconds at 600.
struct MovieScript {
    std::int32_t duration = 60000;
    std::int32_t timeScale = 600;
    bool givesTimeScale = true;
    bool hasVideo = false;
    int soundTracks = 1;
    std::optional<std::string> displayName = "A Song";
    std::vector<Tag> tags = {};
    std::optional<std::string> copyright = {};
    std::optional<std::int64_t> dataSize = 1234567;
    std::vector<std::optional<std::string>> trackFormats = {"AAC, Stereo, 44.100 kHz"};
};

class FakeMediaEngine;

class FakeMovie : public QTMovie {
public:
    FakeMovie(FakeMediaEngine& engine, Movie handle, MovieScript script);
    ~FakeMovie() override;

    MovieScript script;
    QTTime time;        // the current time; a test may set any value and flags
    bool done = false;  // what IsMovieDone() answers
    std::optional<PictureViewer> viewer;
    std::shared_ptr<const VideoPicture> picture;  // what currentPicture() answers
    Waveform pictured;                            // what waveform() answers

    void play() override;
    void stop() override;
    void setRate(float rate) override;
    QTTime currentTime() const override { return time; }
    void setCurrentTime(QTTime newTime) override;
    QTTime duration() const override { return {script.duration, script.timeScale, 0}; }
    std::optional<long> timeScaleAttribute() const override;
    bool hasVideoAttribute() const override { return script.hasVideo; }
    std::optional<std::string> displayNameAttribute() const override { return script.displayName; }
    std::optional<std::string> copyrightAttribute() const override { return script.copyright; }
    std::optional<std::int64_t> dataSizeAttribute() const override { return script.dataSize; }
    std::vector<std::optional<std::string>> trackFormatSummaries() const override { return script.trackFormats; }
    void setSelectionAttribute(QTTimeRange range) override;
    void setLoopsAttribute(bool loops) override;
    void setPlaysSelectionOnlyAttribute(bool only) override;
    void setPreferredRateAttribute(float rate) override;
    std::unique_ptr<MovieExport> writeToFileWithAttributes(const std::string& path, WriteAttribute attribute) override;
    void setMuted(bool muted) override;
    void setVolume(float volume) override;
    float volume() const override { return m_volume; }
    void setPictureViewer(std::optional<PictureViewer> newViewer) override { viewer = std::move(newViewer); }
    std::shared_ptr<const VideoPicture> currentPicture() const override { return picture; }
    Waveform waveform() const override { return pictured; }
    Movie quickTimeMovie() const override { return m_handle; }

private:
    FakeMediaEngine& m_engine;
    Movie m_handle;
    float m_volume = 1;
};

// An export that goes on until the test ends it.
class FakeExport : public MovieExport {
public:
    explicit FakeExport(FakeMediaEngine& engine);
    ~FakeExport() override;

    double done = 0;
    bool finished = false;
    std::string reason;  // when it is finished: why it failed, if it did

    double progress() const override { return done; }
    bool isFinished() const override { return finished; }
    std::string failure() const override { return finished ? reason : std::string(); }
    void cancel() override;

private:
    FakeMediaEngine& m_engine;
};

class FakeMediaEngine : public MediaEngine {
public:
    explicit FakeMediaEngine(EventLog& eventLog) : log(eventLog) {}

    EventLog& log;
    MovieScript usual;                         // what a file without a script of its own opens as
    std::map<std::string, MovieScript> files;  // by path
    std::set<std::string> unreadable;          // paths that cannot be opened
    std::set<std::string> missing;             // paths where no file is
    std::set<std::string> silent;              // paths of files that do not answer
    std::optional<SoundOutput> output;         // what soundOutput() answers
    OSErr status = kNoErr;                     // what every call with a status answers on a living movie

    // What the meters measure, and what the two calls that read them answer in place of `status`.
    QTAudioVolumeLevels averagePower;
    QTAudioVolumeLevels peakHold;
    QTAudioFrequencyLevels frequencyLevels;
    std::optional<OSErr> volumeLevelsStatus;
    std::optional<OSErr> frequencyLevelsStatus;
    std::function<void(const std::string& call)> atMeterRead;  // called when the meters are read, with the call

    bool exportsObey = true;  // a cancelled export is finished at once

    // The export begun last, if it still lives.
    FakeExport* movieExport() const { return m_export; }

    OSErr metaDataStatus = kNoErr;                                            // what copying the tags answers
    std::set<std::pair<QTMetaDataItem, std::uint32_t>> unreadableProperties;  // by item, counted from 1, and property
    std::size_t metaDataInUse() const { return m_metaData.count(); }          // copies that have not been released

    // The movie opened last, if it still lives.
    FakeMovie* movie() const;

    Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) override;
    void giveUpOpening() override { log.add("give up opening"); }
    std::optional<SoundOutput> soundOutput() const override { return output; }
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
    void QTMetaDataRelease(QTMetaDataRef metaData) override { m_metaData.release(metaData); }

private:
    friend class FakeMovie;
    friend class FakeExport;
    FakeMovie* living(Movie movie) const;
    OSErr statusFor(Movie movie) const;
    OSErr meterStatus(Movie movie, std::optional<OSErr> own, const std::string& call) const;

    std::map<Movie, FakeMovie*> m_living;
    Movie m_lastHandle = 0;
    FakeExport* m_export = nullptr;
    MetaDataCopies m_metaData;
};

}  // namespace qm
