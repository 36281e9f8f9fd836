#include "engine/export/CopiedSound.h"

#include <algorithm>

namespace qm {

namespace {

constexpr std::int64_t kLongPiece = 16384;  // frames

}  // namespace

CopiedSound::CopiedSound(SoundTrack track, std::int64_t startFrames)
    : m_track(std::move(track)), m_start(startFrames), m_kept(*m_track.kept.only()), m_part(av_packet_alloc()) {}

void CopiedSound::describe(AVStream& stream) const {
    AVCodecParameters& parameters = *stream.codecpar;
    avcodec_parameters_copy(&parameters, m_track.parameters.get());
    parameters.codec_tag = 0;
    parameters.sample_rate = m_track.sampleRate;
    if (parameters.ch_layout.nb_channels == 0) {
        av_channel_layout_default(&parameters.ch_layout, m_track.channels);
    }
    parameters.frame_size = isPcm(parameters.codec_id) ? 0 : m_track.index.packet(0).frames;
    stream.time_base = {1, m_track.sampleRate};
}

// PCM frames that are not heard go; elsewhere a packet is whole or gone. False for one of which nothing is left.
bool CopiedSound::cutToKept(AVPacket& packet, const PacketIndex::Packet& place) const {
    const std::int64_t end = std::min(place.start + place.frames, m_kept.last);
    const bool isSamples = isPcm(m_track.parameters->codec_id);
    const std::int64_t first = isSamples ? std::max(place.start, m_kept.first) : place.start;
    if (first >= end) {
        return false;
    }
    if (isSamples) {
        const int frameBytes = packet.size / place.frames;
        packet.data += (first - place.start) * frameBytes;
        packet.size = static_cast<int>((end - first) * frameBytes);
    }
    packet.pts = packet.dts = first - m_kept.first + m_start;
    packet.duration = end - first;
    packet.flags |= AV_PKT_FLAG_KEY;
    return true;
}

ExportTrack::Outcome CopiedSound::readPacket(AVPacket& packet) {
    const PacketIndex& index = m_track.index;
    if (!m_positioned && m_track.source->seek(index, 0) != 0) {
        return Outcome::Failed;
    }
    m_positioned = true;
    if (m_next >= index.packets() || index.packet(m_next).start >= m_kept.last) {
        return Outcome::End;
    }
    if (m_track.source->next(index, packet) != PacketSource::Outcome::Packet) {
        return Outcome::Failed;
    }
    av_packet_free_side_data(&packet);
    return cutToKept(packet, index.packet(m_next++)) ? Outcome::Packet : Outcome::Working;
}

// Each packet costs the muxer memory until the end, so samples are handed over in large pieces.
ExportTrack::Outcome CopiedSound::next(AVPacket& packet) {
    Outcome outcome = readPacket(packet);
    if (!isPcm(m_track.parameters->codec_id)) {
        return outcome;
    }
    while (outcome == Outcome::Packet && packet.duration < kLongPiece) {
        const Outcome more = readPacket(*m_part);
        if (more == Outcome::Failed) {
            return more;
        }
        if (more != Outcome::Packet) {
            break;
        }
        const int size = packet.size;
        if (av_grow_packet(&packet, m_part->size) < 0) {
            return Outcome::Failed;
        }
        std::copy_n(m_part->data, m_part->size, packet.data + size);
        packet.duration += m_part->duration;
    }
    return outcome;
}

}  // namespace qm
