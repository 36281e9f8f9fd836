// One opened media file, as the program above the engine sees it. Main thread only. Nothing here waits for the disk or
// for the sound device, not even closing: what the file says of itself was read when it was opened. Nothing here
// reports an error: a movie that loses its file falls silent and leaves a log line.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/api/MeterLevels.h"
#include "engine/api/MovieExport.h"
#include "engine/api/MovieRegistry.h"
#include "engine/api/QTTime.h"
#include "engine/api/SoundOutput.h"
#include "engine/api/Tag.h"
#include "engine/api/VideoPicture.h"
#include "engine/api/Waveform.h"

namespace qm {

enum class WriteAttribute {
    QTMovieFlatten,  // self-contained: the file holds all that it needs
};

class QTMovie {
public:
    // Stands in the registry for as long as it lives.
    explicit QTMovie(MovieRegistry& registry);
    virtual ~QTMovie();
    QTMovie(const QTMovie&) = delete;
    QTMovie& operator=(const QTMovie&) = delete;

    Movie quickTimeMovie() const { return m_handle; }  // handle of the low-level calls

    virtual void play() = 0;               // at the preferred rate for as long as setRate() was not called
    virtual void stop() = 0;               // keeps the position
    virtual void setRate(float rate) = 0;  // signed; 0 stands still; pitch unchanged

    virtual QTTime currentTime() const = 0;        // the frame being heard, in the movie's time scale
    virtual void setCurrentTime(QTTime time) = 0;  // clamped to [0, duration]
    virtual void seekTo(std::int64_t time) = 0;    // units of the movie's time scale, clamped likewise
    virtual QTTime duration() const = 0;

    // True when playback has reached the end in its direction of play: that of the last rate that was not zero. A movie
    // that was only moved to an end while it stood still has not played to it.
    virtual bool isDone() const = 0;

    virtual std::optional<long> timeScaleAttribute() const = 0;           // QTMovieTimeScaleAttribute
    virtual bool hasVideoAttribute() const = 0;                           // QTMovieHasVideoAttribute
    virtual std::optional<std::string> displayNameAttribute() const = 0;  // QTMovieDisplayNameAttribute, UTF-8

    virtual std::optional<std::string> copyrightAttribute() const = 0;  // QTMovieCopyrightAttribute, UTF-8
    virtual std::optional<std::int64_t> dataSizeAttribute() const = 0;  // QTMovieDataSizeAttribute, bytes

    // QTTrackFormatSummaryAttribute of each track, in order: "AAC, Stereo, 44.100 kHz"; none for a track whose kind is
    // not known. Pictures of covers are no tracks.
    virtual std::vector<std::optional<std::string>> trackFormatSummaries() const = 0;

    virtual const std::vector<Tag>& tags() const = 0;  // in the file's order

    // A loop is set by the next three in their order, and ended by the last two. They are heard as one change: a new
    // selection that is told to loop, or one that no longer does, waits for the last call or any other operation.
    virtual void setSelectionAttribute(QTTimeRange range) = 0;   // QTMovieSelectionAttribute
    virtual void setLoopsAttribute(bool loops) = 0;              // QTMovieLoopsAttribute
    virtual void setPlaysSelectionOnlyAttribute(bool only) = 0;  // QTMoviePlaysSelectionOnlyAttribute
    virtual void setPreferredRateAttribute(float rate) = 0;      // QTMoviePreferredRateAttribute, signed

    virtual void setMuted(bool muted) = 0;
    virtual void setVolume(float volume) = 0;    // 0 to 1, linear
    virtual float volume() const = 0;            // as it was set, also while muted
    virtual void setBalance(float balance) = 0;  // -1 left to 1 right
    virtual void setPitch(float cents) = 0;      // the speed stays

    // Bass and treble of one sound track, of which the first is 0: each 0 to 256 with 128 neutral, others are clamped.
    virtual int soundTrackCount() const = 0;
    virtual void setTone(int soundTrack, std::int16_t bass, std::int16_t treble) = 0;

    // Volume of what the device plays, bands of the sound before gain and balance. Both meters are off at first; while
    // one is, its levels cannot be read. Reading does not allocate.
    virtual void meterVolume(bool on) = 0;
    virtual void meterBands(bool on) = 0;
    virtual bool readVolumeLevels(QTAudioVolumeLevels& averagePower, QTAudioVolumeLevels& peakHold) const = 0;
    virtual bool readFrequencyLevels(QTAudioFrequencyLevels& levels) const = 0;

    virtual std::optional<SoundOutput> soundOutput() const = 0;  // none: not known yet

    // Pictures are made only while somebody watches, who is told when the next one is due; once another viewer or none
    // is set, the one before is not called any more. The picture of what is being heard is the same object for as long
    // as it stands; null without video and before the first picture is there.
    virtual void setPictureViewer(std::optional<PictureViewer> viewer) = 0;
    virtual std::shared_ptr<const VideoPicture> currentPicture() const = 0;

    // The picture of the whole sound, enabled tracks together, as far as it is known by now. It is begun when it is
    // first asked for, and made in the background.
    virtual Waveform waveform() const = 0;

    // Begins to write a movie of this one's tracks and preferred rate, and goes on playing. The path, in the file
    // system's own encoding, may be that of the open file. Never null; lives on without this movie.
    virtual std::unique_ptr<MovieExport> writeToFileWithAttributes(const std::string& path,
                                                                   WriteAttribute attribute) = 0;

private:
    MovieRegistry& m_registry;
    const Movie m_handle;
};

}  // namespace qm
