#include <algorithm>
#include <cstring>

#include "engine/media/PacketSource.h"

namespace qm {

namespace {

constexpr int kLandingTries = 256;  // packets read after a seek to recognise one

}  // namespace

DemuxedPacketSource::DemuxedPacketSource(std::shared_ptr<const FileBytes> file, MediaKind kind, int stream,
                                         int sampleRate)
    : m_file(std::move(file)), m_kind(kind), m_stream(stream), m_sampleRate(sampleRate), m_landed(av_packet_alloc()) {}

std::uint64_t DemuxedPacketSource::mixed(std::uint64_t hash, std::uint64_t word) {
    constexpr std::uint64_t kPrime = 0x100000001b3ULL;
    hash = (hash ^ word) * kPrime;
    return hash ^ hash >> 29;
}

std::uint64_t DemuxedPacketSource::contentHash(const AVPacket& packet) {
    std::uint64_t hash = mixed(0xcbf29ce484222325ULL, static_cast<std::uint64_t>(packet.size));
    for (int i = 0; i < packet.size; i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, packet.data + i, static_cast<std::size_t>(std::min(8, packet.size - i)));
        hash = mixed(hash, word);
    }
    return hash;
}

std::uint32_t DemuxedPacketSource::fingerprint(std::uint64_t contentHash, std::int64_t position) {
    const std::uint64_t hash = mixed(contentHash, static_cast<std::uint64_t>(position));
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

bool DemuxedPacketSource::restart() {
    m_hasLanded = false;
    auto demuxer = Demuxer::open(m_file, m_kind, true);
    if (!demuxer || m_stream >= static_cast<int>(demuxer.value()->context().nb_streams)) {
        m_demuxer.reset();
        return false;
    }
    m_demuxer = std::move(demuxer.value());
    m_demuxer->onlyStream(m_stream);
    return true;
}

std::int64_t DemuxedPacketSource::tryLanding(const PacketIndex& index, std::int64_t frame, std::int64_t packet) {
    const AVStream& stream = m_demuxer->stream(m_stream);
    const std::int64_t origin = stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time;
    if (!m_demuxer->seek(m_stream, origin + av_rescale_q(frame, {1, m_sampleRate}, stream.time_base))) {
        return -1;
    }
    for (int i = 0; i < kLandingTries && m_demuxer->read(m_stream, *m_landed) >= 0; ++i) {
        const std::int64_t known = index.findUnique(fingerprint(*m_landed));
        if (known > packet) {
            return -1;
        }
        if (known >= 0) {
            m_hasLanded = true;
            return known;
        }
    }
    return -1;
}

std::int64_t DemuxedPacketSource::seek(const PacketIndex& index, std::int64_t packet) {
    m_hasLanded = false;
    if (!m_demuxer && !restart()) {
        return -1;
    }
    const std::int64_t target = index.packet(packet).start;
    for (std::int64_t back = 0; target - back > 0; back = std::max<std::int64_t>(4 * back, m_sampleRate / 4)) {
        const std::int64_t landed = tryLanding(index, target - back, packet);
        if (landed >= 0) {
            return landed;
        }
    }
    return restart() ? 0 : -1;
}

PacketSource::Outcome DemuxedPacketSource::next(const PacketIndex&, AVPacket& packet) {
    if (!m_demuxer && !restart()) {
        return Outcome::Unreadable;
    }
    av_packet_unref(&packet);
    if (m_hasLanded) {
        m_hasLanded = false;
        av_packet_move_ref(&packet, m_landed.get());
        return Outcome::Packet;
    }
    const int code = m_demuxer->read(m_stream, packet);
    if (code == AVERROR_EOF) {
        return Outcome::End;
    }
    if (code < 0) {
        return Outcome::Unreadable;
    }
    packet.flags &= ~AV_PKT_FLAG_DISCARD;
    return Outcome::Packet;
}

}  // namespace qm
