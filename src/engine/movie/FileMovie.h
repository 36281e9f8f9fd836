// A media file as a movie: turns the operations of the interface into requests to the render thread and answers with
// what is being heard. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "engine/api/MetaData.h"
#include "engine/api/QTMovie.h"
#include "engine/media/SoundReader.h"
#include "engine/movie/WaveformScan.h"
#include "engine/realtime/ThreadRole.h"
#include "engine/render/RenderThread.h"
#include "engine/video/VideoThread.h"
#include "engine/waiting/Reaper.h"

namespace qm {

class FileMovie;

// The movies that live, and who ends what is left of the others.
struct MovieRegistry {
    std::unordered_map<Movie, FileMovie*> movies;
    Reaper reaper;
};

class FileMovie : public QTMovie {
public:
    // Stands in the registry under its handle for as long as it lives.
    FileMovie(Movie handle, std::shared_ptr<MovieRegistry> registry, OpenedMedia media, OutputFactory openOutput);
    ~FileMovie() override;  // falls silent at once; its threads, device and file end when they can

    void play() override;
    void stop() override;
    void setRate(float rate) override;
    QTTime currentTime() const override;
    void setCurrentTime(QTTime time) override;
    QTTime duration() const override;
    std::optional<long> timeScaleAttribute() const override;
    bool hasVideoAttribute() const override;
    std::optional<std::string> displayNameAttribute() const override;
    std::optional<std::string> copyrightAttribute() const override;
    std::optional<std::int64_t> dataSizeAttribute() const override { return m_works->file->size(); }
    std::vector<std::optional<std::string>> trackFormatSummaries() const override { return m_description.trackFormats; }
    void setSelectionAttribute(QTTimeRange range) override;
    void setLoopsAttribute(bool loops) override;
    void setPlaysSelectionOnlyAttribute(bool only) override;
    void setPreferredRateAttribute(float rate) override;
    void setMuted(bool muted) override;
    void setVolume(float volume) override;
    float volume() const override { return m_volume; }
    void setPictureViewer(std::optional<PictureViewer> viewer) override;
    std::shared_ptr<const VideoPicture> currentPicture() const override;
    Waveform waveform() const override;
    std::unique_ptr<MovieExport> writeToFileWithAttributes(const std::string& path, WriteAttribute attribute) override;
    Movie quickTimeMovie() const override { return m_handle; }

    // True when playback has reached the end in its direction of play: that of the last rate that was not zero. A movie
    // that was only moved to an end while it stood still has not played to it.
    bool isDone() const;
    void setPitch(float cents);
    void setBalance(float balance);
    void setTone(const ToneSettings& tone);
    bool hasSound() const { return m_description.hasSound; }
    void seekTo(std::int64_t time);  // units of the movie's time scale
    Meter& meter() { return m_render.meter(); }
    const RenderThread& renderThread() const { return m_render; }
    const std::vector<Tag>& tags() const { return m_tags; }

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
    const Movie m_handle;
    const std::shared_ptr<MovieRegistry> m_registry;
    const MediaDescription m_description;
    const std::vector<Tag> m_tags;
    std::unique_ptr<Works> m_works;
    RenderThread& m_render;
    const std::int32_t m_timeScale;  // units per second
    RenderThread::Request m_request;
    float m_preferredRate;
    bool m_hasRate = false;  // it was told one
    QTTimeRange m_selection;
    bool m_playsSelectionOnly = false;
    bool m_backward = false;
    bool m_hasPlayed = false;  // since it was last moved while it stood still
    bool m_muted = false;
    float m_volume = 1;
    float m_balance = 0;
};

}  // namespace qm
