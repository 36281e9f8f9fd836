// A media engine without sound: movies are scripts, time moves when the test moves it, and every call that would change
// something is recorded in order with its arguments. Reads are not recorded. Main thread only.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "engine/api/MediaEngine.h"
#include "engine/api/MetaData.h"
#include "engine/api/MovieToolbox.h"
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
    FakeMovie(FakeMediaEngine& engine, MovieScript script);

    MovieScript script;
    QTTime time;        // the current time; a test may set any value and flags
    bool done = false;  // what isDone() answers
    std::optional<PictureViewer> viewer;
    std::shared_ptr<const VideoPicture> picture;  // what currentPicture() answers
    Waveform pictured;                            // what waveform() answers

    void play() override;
    void stop() override;
    void setRate(float rate) override;
    QTTime currentTime() const override { return time; }
    void setCurrentTime(QTTime newTime) override;
    void seekTo(std::int64_t newTime) override;
    bool isDone() const override { return done; }
    QTTime duration() const override { return {script.duration, script.timeScale, 0}; }
    std::optional<long> timeScaleAttribute() const override;
    bool hasVideoAttribute() const override { return script.hasVideo; }
    std::optional<std::string> displayNameAttribute() const override { return script.displayName; }
    std::optional<std::string> copyrightAttribute() const override { return script.copyright; }
    std::optional<std::int64_t> dataSizeAttribute() const override { return script.dataSize; }
    std::vector<std::optional<std::string>> trackFormatSummaries() const override { return script.trackFormats; }
    const std::vector<Tag>& tags() const override { return script.tags; }
    void setSelectionAttribute(QTTimeRange range) override;
    void setLoopsAttribute(bool loops) override;
    void setPlaysSelectionOnlyAttribute(bool only) override;
    void setPreferredRateAttribute(float rate) override;
    std::unique_ptr<MovieExport> writeToFileWithAttributes(const std::string& path, WriteAttribute attribute) override;
    void setMuted(bool muted) override;
    void setVolume(float volume) override;
    float volume() const override { return m_volume; }
    void setBalance(float balance) override;
    void setPitch(float cents) override;
    int soundTrackCount() const override { return script.soundTracks; }
    void setTone(int soundTrack, std::int16_t bass, std::int16_t treble) override;
    void meterVolume(bool on) override;
    void meterBands(bool on) override;
    bool readVolumeLevels(QTAudioVolumeLevels& averagePower, QTAudioVolumeLevels& peakHold) const override;
    bool readFrequencyLevels(QTAudioFrequencyLevels& levels) const override;
    std::optional<SoundOutput> soundOutput() const override;
    void setPictureViewer(std::optional<PictureViewer> newViewer) override { viewer = std::move(newViewer); }
    std::shared_ptr<const VideoPicture> currentPicture() const override { return picture; }
    Waveform waveform() const override { return pictured; }

private:
    FakeMediaEngine& m_engine;
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
    MovieRegistry movies;  // the real calls on handles, over the fake's movies
    MovieToolbox toolbox{movies};
    MetaDataToolbox metaData{movies};

    MovieScript usual;                         // what a file without a script of its own opens as
    std::map<std::string, MovieScript> files;  // by path
    std::set<std::string> unreadable;          // paths that cannot be opened
    std::set<std::string> missing;             // paths where no file is
    std::set<std::string> silent;              // paths of files that do not answer
    std::optional<SoundOutput> output;         // what soundOutput() answers

    // What the meters measure, and whether the two calls that read them give it.
    QTAudioVolumeLevels averagePower;
    QTAudioVolumeLevels peakHold;
    QTAudioFrequencyLevels frequencyLevels;
    bool givesVolumeLevels = true;
    bool givesFrequencyLevels = true;
    std::function<void(const std::string& call)> atMeterRead;  // called when the meters are read, with the call

    bool exportsObey = true;  // a cancelled export is finished at once

    // The export begun last, if it still lives.
    FakeExport* movieExport() const { return m_export; }

    // The movie opened last, if it still lives.
    FakeMovie* movie() const;

    Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) override;
    void giveUpOpening() override { log.add("give up opening"); }

private:
    friend class FakeExport;

    Movie m_last = 0;
    FakeExport* m_export = nullptr;
};

}  // namespace qm
