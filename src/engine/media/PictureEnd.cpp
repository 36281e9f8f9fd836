#include "engine/media/PictureEnd.h"

#include <algorithm>

namespace qm {

namespace {

constexpr double kLongestBelieved = 400 * 3600.0;  // seconds that a film may claim to last

double secondsOf(const AVStream& stream, std::int64_t stamp) {
    return static_cast<double>(stamp) * av_q2d(stream.time_base);
}

double believed(double seconds) {
    return seconds > 0 && seconds <= kLongestBelieved ? seconds : 0;
}

// The table of a movie file lists every picture; where the file was cut, those at its end are missing.
double endInTable(AVStream& stream, std::int64_t fileSize) {
    const int entries = avformat_index_get_entries_count(&stream);
    const double stated = stream.duration > 0 ? startSeconds(stream) + secondsOf(stream, stream.duration) : 0;
    double end = stated;
    for (int i = entries - 1; i >= 0; --i) {
        const AVIndexEntry* entry = avformat_index_get_entry(&stream, i);
        if (entry->pos + entry->size <= fileSize) {
            return end;
        }
        end = std::min(stated, secondsOf(stream, entry->timestamp));
    }
    return end;
}

// In units of the stream. Where packets do not say how long their pictures last, the usual duration tells.
std::int64_t usualDuration(const AVStream& stream) {
    const AVRational rate = stream.avg_frame_rate.num > 0 ? stream.avg_frame_rate : stream.r_frame_rate;
    return rate.num > 0 && rate.den > 0 ? av_rescale_q(1, av_inv_q(rate), stream.time_base) : 0;
}

// Found by reading from the last key picture on; all of the file where that cannot be found.
double endByReading(const MediaTracks& tracks, int number) {
    const auto opened = Demuxer::open(tracks.file, tracks.kind, rowOf(tracks.kind).mustBeAnalysed);
    if (!opened || number >= static_cast<int>(opened.value()->context().nb_streams)) {
        return 0;
    }
    Demuxer& demuxer = *opened.value();
    demuxer.onlyStream(number);
    const AVStream& stream = demuxer.stream(number);
    const std::int64_t start = stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time;
    if (stream.duration > 0) {
        demuxer.seek(number, start + stream.duration);  // where that fails, reading begins at the start
    }
    double end = 0;
    const PacketPtr packet(av_packet_alloc());
    while (demuxer.read(number, *packet) >= 0) {
        const std::int64_t stamp = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
        const std::int64_t duration = packet->duration > 0 ? packet->duration : usualDuration(stream);
        if (stamp != AV_NOPTS_VALUE) {
            end = std::max(end, believed(secondsOf(stream, stamp) + secondsOf(stream, duration)));
        }
    }
    return end;
}

}  // namespace

double pictureEnd(const MediaTracks& tracks) {
    double end = 0;
    for (const int number : tracks.pictures) {
        const bool listed = tracks.kind == MediaKind::MovieFile && !tracks.facts.isFragmented;
        end = std::max(end, listed ? believed(endInTable(tracks.demuxer->stream(number), tracks.file->size()))
                                   : endByReading(tracks, number));
    }
    return end;
}

}  // namespace qm
