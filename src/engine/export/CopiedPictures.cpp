#include "engine/export/CopiedPictures.h"

#include <algorithm>
#include <cmath>

#include "engine/export/PictureTraits.h"

namespace qm {

CopiedPictures::CopiedPictures(std::unique_ptr<Demuxer> demuxer, int stream, double origin)
    : m_demuxer(std::move(demuxer)),
      m_stream(stream),
      m_origin(std::llround(origin / av_q2d(m_demuxer->stream(stream).time_base))) {
    m_demuxer->onlyStream(stream);
    const AVStream& source = m_demuxer->stream(stream);
    const AVRational rate = pictureRate(source);
    m_usualDuration = std::max<std::int64_t>(av_rescale_q(1, av_inv_q(rate), source.time_base), 1);
}

void CopiedPictures::describe(AVStream& stream) const {
    const AVStream& source = m_demuxer->stream(m_stream);
    avcodec_parameters_copy(stream.codecpar, source.codecpar);
    stream.codecpar->codec_tag = 0;
    stream.time_base = source.time_base;
    stream.avg_frame_rate = pictureRate(source);
    if (source.sample_aspect_ratio.num > 0) {  // the container's word counts more than the codec's
        stream.codecpar->sample_aspect_ratio = source.sample_aspect_ratio;
    }
    stream.sample_aspect_ratio = stream.codecpar->sample_aspect_ratio;
    copyTurn(source, stream);
}

// Where the container gives no times, or wrong ones, they follow from the packet before.
void CopiedPictures::setTimes(AVPacket& packet) {
    const bool isFirst = m_lastDecoded == AV_NOPTS_VALUE;
    if (packet.dts == AV_NOPTS_VALUE) {
        packet.dts = isFirst ? (packet.pts == AV_NOPTS_VALUE ? m_origin : packet.pts)
                             : m_lastDecoded + m_usualDuration + m_origin;
    }
    packet.dts -= m_origin;
    packet.pts = packet.pts == AV_NOPTS_VALUE ? packet.dts : packet.pts - m_origin;
    if (!isFirst) {
        packet.dts = std::max(packet.dts, m_lastDecoded + 1);
    }
    packet.pts = std::max(packet.pts, packet.dts);
    if (packet.duration <= 0) {
        packet.duration = m_usualDuration;
    }
    m_lastDecoded = packet.dts;
}

ExportTrack::Outcome CopiedPictures::next(AVPacket& packet) {
    const int code = m_demuxer->read(m_stream, packet);
    if (code < 0) {
        return code == AVERROR_EOF ? Outcome::End : Outcome::Failed;
    }
    const bool isDiscarded = (packet.flags & AV_PKT_FLAG_DISCARD) != 0;
    if (packet.size == 0 || (isDiscarded && m_hasShown)) {
        return Outcome::Working;
    }
    m_hasShown = m_hasShown || !isDiscarded;
    packet.flags &= AV_PKT_FLAG_KEY;
    setTimes(packet);
    return Outcome::Packet;
}

}  // namespace qm
