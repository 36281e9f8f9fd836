#include "engine/export/ExportMovie.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "engine/export/CopiedPictures.h"
#include "engine/export/CopiedSound.h"
#include "engine/export/CopyRules.h"
#include "engine/export/EncodedPictures.h"
#include "engine/export/MovieWriter.h"
#include "engine/export/PcmSound.h"
#include "engine/media/MediaTracks.h"
#include "engine/media/TrackReader.h"
#include "engine/media/VideoDecoder.h"

namespace qm {

namespace {

constexpr int kScaleWithoutSound = 600;  // units a second

const Error kUnreadable{ErrorCategory::Unreadable, "the file has become unreadable"};
const Error kCancelled{ErrorCategory::Unreadable, "cancelled"};

// The container's time, in seconds, at which the first track begins.
double originOf(const MediaTracks& tracks) {
    double origin = std::numeric_limits<double>::infinity();
    for (const SoundTrack& track : tracks.sound) {
        origin = std::min(origin, track.startSeconds);
    }
    for (const int stream : tracks.pictures) {
        origin = std::min(origin, startSeconds(tracks.demuxer->stream(stream)));
    }
    return std::isfinite(origin) ? origin : 0;
}

double lengthOf(const MediaTracks& tracks) {
    double longest = 0;
    for (const SoundTrack& track : tracks.sound) {
        longest = std::max(longest, static_cast<double>(track.kept.length()) / track.sampleRate);
    }
    for (const int stream : tracks.pictures) {
        const AVStream& pictures = tracks.demuxer->stream(stream);
        longest = std::max(longest, static_cast<double>(pictures.duration) * av_q2d(pictures.time_base));
    }
    return longest;
}

std::unique_ptr<ExportTrack> soundTrack(SoundTrack track, MediaKind kind, double origin) {
    const auto start = static_cast<std::int64_t>(std::llround((track.startSeconds - origin) * track.sampleRate));
    if (canCopySound(track, kind, start)) {
        return std::make_unique<CopiedSound>(std::move(track), start);
    }
    auto reader = TrackReader::create(std::move(track));
    return reader ? std::make_unique<PcmSound>(std::move(reader), start) : nullptr;
}

std::unique_ptr<ExportTrack> pictureTrack(const MediaTracks& tracks, int stream, double origin) {
    auto demuxer = Demuxer::open(tracks.file, tracks.kind, true);  // reads on for sizes that are not in the headers
    if (demuxer && canCopyPictures(demuxer.value()->stream(stream), tracks.kind)) {
        return std::make_unique<CopiedPictures>(std::move(demuxer.value()), stream, origin);
    }
    return EncodedPictures::create(VideoDecoder::open(tracks.file, tracks.kind, stream, origin),
                                   tracks.demuxer->stream(stream));
}

// The writing of one movie: its tracks side by side, always the one that is furthest behind.
class Export {
public:
    Export(MediaTracks tracks, TargetFile& target, ExportMonitor& monitor)
        : m_media(std::move(tracks)), m_monitor(monitor), m_seconds(lengthOf(m_media)), m_writer(target) {}

    std::optional<Error> run() {
        if (m_media.demuxer) {
            m_writer.setTags(m_media.demuxer->context().metadata);
        }
        if (m_media.pictures.empty()) {
            m_media.demuxer.reset();  // its tables of a long file are large
        }
        gatherTracks();
        if (m_lines.empty()) {
            return Error{ErrorCategory::Unsupported, "no track of it can be written"};
        }
        std::optional<Error> failure = m_writer.begin();
        while (!failure && !m_lines.empty()) {
            failure = m_monitor.cancelled ? kCancelled : step();
        }
        if (!failure && !isStillReadable()) {
            failure = kUnreadable;
        }
        if (!failure) {
            failure = m_writer.finish();
            m_monitor.progress = 1;
        }
        return failure;
    }

private:
    struct Line {
        std::unique_ptr<ExportTrack> track;
        int number;
        AVRational timeBase;
        PacketPtr packet{av_packet_alloc()};
        bool hasPacket = false;
        double seconds = -std::numeric_limits<double>::infinity();  // where its packet belongs
    };

    void gatherTracks() {
        const double origin = originOf(m_media);
        m_writer.setTimeScale(m_media.sound.empty() ? kScaleWithoutSound : m_media.sound.front().sampleRate);
        for (const int stream : m_media.pictures) {
            add(pictureTrack(m_media, stream, origin));
        }
        for (SoundTrack& track : m_media.sound) {
            if (track.kept.length() > 0) {
                add(soundTrack(std::move(track), m_media.kind, origin));
            }
        }
    }

    void add(std::unique_ptr<ExportTrack> track) {
        if (track) {
            AVStream& stream = m_writer.addTrack();
            track->describe(stream);
            m_lines.push_back({.track = std::move(track), .number = stream.index, .timeBase = stream.time_base});
        }
    }

    std::optional<Error> step() {
        const auto line = std::min_element(m_lines.begin(), m_lines.end(),
                                           [](const Line& a, const Line& b) { return a.seconds < b.seconds; });
        if (line->hasPacket) {
            line->hasPacket = false;
            noteProgress(line->seconds);
            if (auto failure = m_writer.write(line->number, *line->packet, line->timeBase)) {
                return failure;
            }
        }
        switch (line->track->next(*line->packet)) {
            case ExportTrack::Outcome::Packet:
                line->hasPacket = true;
                line->seconds = static_cast<double>(line->packet->dts) * av_q2d(line->timeBase);
                return std::nullopt;
            case ExportTrack::Outcome::Working:
                return std::nullopt;
            case ExportTrack::Outcome::End:
                m_lines.erase(line);
                return std::nullopt;
            case ExportTrack::Outcome::Failed:
                return kUnreadable;
        }
        return std::nullopt;
    }

    void noteProgress(double seconds) {
        if (m_seconds > 0) {
            m_monitor.progress = std::clamp(seconds / m_seconds, m_monitor.progress.load(), 1.0);
        }
    }

    // Tells a lost file from the end of one, which look the same to a demuxer.
    bool isStillReadable() const {
        std::uint8_t last = 0;
        return m_media.file->readAt(m_media.file->size() - 1, &last, 1) == 1;
    }

    MediaTracks m_media;
    ExportMonitor& m_monitor;
    const double m_seconds;
    MovieWriter m_writer;
    std::vector<Line> m_lines;
};

// Writes the preferred rate over the 1 that the muxer always puts into the movie's header.
std::optional<Error> stateRate(TargetFile& target, float rate) {
    const auto written = FileBytes::open(target.temporaryName());
    const std::int64_t position = written ? readMovieFacts(*written.value()).ratePosition : -1;
    const auto fixed = static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(rate * 65536.0)));
    const std::uint8_t bytes[4] = {static_cast<std::uint8_t>(fixed >> 24), static_cast<std::uint8_t>(fixed >> 16),
                                   static_cast<std::uint8_t>(fixed >> 8), static_cast<std::uint8_t>(fixed)};
    if (position < 0 || ::pwrite(target.descriptor(), bytes, sizeof bytes, position) != sizeof bytes) {
        return Error{ErrorCategory::Unreadable, "the movie's header cannot be written"};
    }
    return std::nullopt;
}

}  // namespace

std::optional<Error> exportMovie(std::shared_ptr<const FileBytes> source, TargetFile& target, float preferredRate,
                                 ExportMonitor& monitor) {
    auto tracks = findTracks(std::move(source));
    if (!tracks) {
        return tracks.error();
    }
    if (auto failure = Export(std::move(tracks.value()), target, monitor).run()) {
        return failure;
    }
    return stateRate(target, preferredRate);
}

}  // namespace qm
