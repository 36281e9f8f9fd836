// A media file as a movie: turns the operations of the interface into requests to the render thread and answers with
// what is being heard. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "engine/api/QTMovie.h"
#include "engine/media/SoundReader.h"
#include "engine/movie/WaveformScan.h"
#include "engine/realtime/ThreadRole.h"
#include "engine/render/RenderThread.h"
#include "engine/video/VideoThread.h"
#include "engine/waiting/Reaper.h"

namespace qm {

class FileMovie : public QTMovie {
public:
    // What is left of it when it is closed ends with the reaper.
    FileMovie(MovieRegistry& registry, std::shared_ptr<Reaper> reaper, OpenedMedia media, OutputFactory openOutput);
    ~FileMovie() override;  // falls silent at once; its threads, device and file end when they can

    void play() override;
    void stop() override;
    void setRate(float rate) override;
    QTTime currentTime() const override;
    void setCurrentTime(QTTime time) override;
    void seekTo(std::int64_t time) override;
    QTTime duration() const override;
    bool isDone() const override;
    std::optional<long> timeScaleAttribute() const override;
    bool hasVideoAttribute() const override;
    std::optional<std::string> displayNameAttribute() const override;
    std::optional<std::string> copyrightAttribute() const override;
    std::optional<std::int64_t> dataSizeAttribute() const override { return m_works->file->size(); }
    std::vector<std::optional<std::string>> trackFormatSummaries() const override { return m_description.trackFormats; }
    const std::vector<Tag>& tags() const override { return m_tags; }
    void setSelectionAttribute(QTTimeRange range) override;
    void setLoopsAttribute(bool loops) override;
    void setPlaysSelectionOnlyAttribute(bool only) override;
    void setPreferredRateAttribute(float rate) override;
    void setMuted(bool muted) override;
    void setVolume(float volume) override;
    float volume() const override { return m_volume; }
    void setBalance(float balance) override;
    void setPitch(float cents) override;
    int soundTrackCount() const override { return m_description.hasSound ? 1 : 0; }
    void setTone(int soundTrack, std::int16_t bass, std::int16_t treble) override;
    void meterVolume(bool on) override { meter().enableVolume(on); }
    void meterBands(bool on) override { meter().enableBands(on); }
    bool readVolumeLevels(QTAudioVolumeLevels& averagePower, QTAudioVolumeLevels& peakHold) const override;
    bool readFrequencyLevels(QTAudioFrequencyLevels& levels) const override;
    std::optional<SoundOutput> soundOutput() const override { return m_render.soundOutput(); }
    void setPictureViewer(std::optional<PictureViewer> viewer) override;
    std::shared_ptr<const VideoPicture> currentPicture() const override;
    Waveform waveform() const override;
    std::unique_ptr<MovieExport> writeToFileWithAttributes(const std::string& path, WriteAttribute attribute) override;

    Meter& meter() const { return m_render.meter(); }
    const RenderThread& renderThread() const { return m_render; }

private:
    // All of a movie that may have to wait for its device or its file before it can end.
    struct Works {
        Works(OpenedMedia& media, OutputFactory openOutput);
        VideoMoment moment() const;  // asked by the video thread

        const std::shared_ptr<const FileBytes> file;
        SoundOpener openSound;  // until the scan has it
        RenderThread render;
        std::unique_ptr<WaveformScan> waveform;
        std::unique_ptr<VideoThread> video;  // ends before what its clock asks
    };

    void request();
    void takeRate(float rate);
    void beginInside();
    bool standsAtTheEnd() const;
    std::int64_t intoRange(std::int64_t position) const;
    void applyGains();
    std::int64_t position() const;  // frames
    std::int64_t toFrames(QTTime time) const;
    std::int64_t toUnits(std::int64_t frames) const;

    const ThreadRole m_mainThread;
    const std::shared_ptr<Reaper> m_reaper;
    const MediaDescription m_description;
    const std::vector<Tag> m_tags;
    std::unique_ptr<Works> m_works;
    RenderThread& m_render;
    const std::int32_t m_timeScale;  // units per second
    RenderThread::Request m_request;
    float m_preferredRate;
    bool m_hasRate = false;  // it was told one
    QTTimeRange m_selection;
    bool m_selectionIsNew = false;  // and has not been asked for
    bool m_playsSelectionOnly = false;
    bool m_backward = false;
    bool m_hasPlayed = false;  // since it was last moved while it stood still
    bool m_muted = false;
    float m_volume = 1;
    float m_balance = 0;
};

}  // namespace qm
