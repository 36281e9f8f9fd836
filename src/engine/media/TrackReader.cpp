#include "engine/media/TrackReader.h"

#include <algorithm>

namespace qm {

namespace {

constexpr std::int64_t kReadThrough = 8192;  // a gap of so many frames is decoded rather than jumped
constexpr int kBytesBesideReservoir = 38;    // header, checksum and side information of an MPEG audio frame
constexpr std::int64_t kLongestReservoir = 64;
constexpr std::int64_t kUnsizedReservoir = 16;  // packets to go back where their sizes are not known

}  // namespace

std::unique_ptr<TrackReader> TrackReader::create(SoundTrack track) {
    auto decoder = AudioDecoder::create(*track.parameters, track.timeBase);
    if (!decoder) {
        return nullptr;
    }
    return std::unique_ptr<TrackReader>(new TrackReader(std::move(track), std::move(decoder)));
}

TrackReader::TrackReader(SoundTrack track, std::unique_ptr<AudioDecoder> decoder)
    : m_track(std::move(track)), m_decoder(std::move(decoder)), m_packet(av_packet_alloc()) {}

bool TrackReader::read(std::int64_t first, float* stereo, std::int64_t count) {
    std::fill_n(stereo, 2 * count, 0.0f);
    bool readable = true;
    m_track.kept.forEach(first, count, [&](std::int64_t decoded, std::int64_t frames, std::int64_t offset) {
        readable = readable && readDecoded(decoded, stereo + 2 * offset, frames);
    });
    return readable;
}

bool TrackReader::readDecoded(std::int64_t first, float* stereo, std::int64_t count) {
    const bool continues =
        m_positioned && first >= m_decodedStart && first <= decodedEnd() + m_track.traits.prerollFrames + kReadThrough;
    if (!continues && !seek(first)) {
        return false;
    }
    for (;;) {
        const std::int64_t from = std::max(first, m_decodedStart);
        const std::int64_t to = std::min(first + count, decodedEnd());
        if (from < to) {
            std::copy_n(m_decoded.data() + 2 * (from - m_decodedStart), 2 * (to - from), stereo + 2 * (from - first));
        }
        if (decodedEnd() >= first + count) {
            return true;
        }
        if (!decodeNext()) {
            return m_positioned;
        }
    }
}

std::int64_t TrackReader::reservoirPacket(std::int64_t target) const {
    const PacketIndex& index = m_track.index;
    if (index.packet(target).position == PacketIndex::kNoPosition) {
        return std::max<std::int64_t>(target - kUnsizedReservoir, 0);
    }
    const std::int64_t lowest = std::max<std::int64_t>(target - kLongestReservoir, 0);
    std::int64_t bytes = 0;
    while (target > lowest && bytes < m_track.traits.reservoirBytes) {
        --target;
        bytes += std::max<std::int64_t>(std::int64_t{index.packet(target).size} - kBytesBesideReservoir, 0);
    }
    return target;
}

std::int64_t TrackReader::prerollPacket(std::int64_t target) const {
    const PacketIndex& index = m_track.index;
    const std::int64_t packet = m_track.traits.reservoirBytes > 0 ? reservoirPacket(target) : target;
    return std::min(index.packetAt(index.packet(packet).start - m_track.traits.prerollFrames), packet);
}

void TrackReader::planRestart(std::int64_t packet) {
    m_replay.clear();
    m_nextRestart = packet;
    m_replayFrom = packet < m_track.index.packets() ? prerollPacket(packet) : packet;
}

bool TrackReader::seek(std::int64_t frame) {
    m_positioned = false;
    m_decoded.clear();
    const PacketIndex& index = m_track.index;
    if (index.packets() == 0 || !m_decoder->restart()) {
        return false;
    }
    const int grid = m_track.traits.restartPackets;
    const std::int64_t target = index.packetAt(frame);
    const std::int64_t start = grid > 0 ? target - target % grid : target;
    m_decodeFrom = prerollPacket(start);
    planRestart(grid > 0 ? start + grid : index.packets());
    const std::int64_t landed = m_track.source->seek(index, m_decodeFrom);
    if (landed < 0) {
        return false;
    }
    m_next = landed;
    m_decodedStart = index.packet(landed).start;
    m_positioned = true;
    return true;
}

bool TrackReader::restartAndReplay() {
    if (!m_decoder->restart()) {
        return false;
    }
    for (const PacketPtr& packet : m_replay) {
        m_decoder->decode(*packet, m_decoded);
    }
    m_decoded.clear();
    planRestart(m_nextRestart + m_track.traits.restartPackets);
    return true;
}

bool TrackReader::fetchAndDecode() {
    if (m_next == m_nextRestart && !restartAndReplay()) {
        return false;
    }
    switch (m_track.source->next(m_track.index, *m_packet)) {
        case PacketSource::Outcome::Packet:
            break;
        case PacketSource::Outcome::End:
            return true;
        case PacketSource::Outcome::Unreadable:
            return false;
    }
    if (m_next >= m_replayFrom) {
        m_replay.emplace_back(av_packet_clone(m_packet.get()));
    }
    if (m_next >= m_decodeFrom) {
        m_decoder->decode(*m_packet, m_decoded);
    }
    return true;
}

// Makes the yield exactly as long as the index says of its packet: what is missing is silent.
void TrackReader::fitYield(std::int64_t frames) {
    const auto yielded = static_cast<std::int64_t>(m_decoded.size() / 2);
    if (m_track.traits.yieldBelongsToEnd && yielded < frames) {
        m_decoded.insert(m_decoded.begin(), static_cast<std::size_t>(2 * (frames - yielded)), 0.0f);
    } else if (m_track.traits.yieldBelongsToEnd && yielded > frames) {
        m_decoded.erase(m_decoded.begin(), m_decoded.begin() + 2 * (yielded - frames));
    }
    m_decoded.resize(static_cast<std::size_t>(2 * frames), 0.0f);
}

bool TrackReader::decodeNext() {
    const PacketIndex& index = m_track.index;
    if (m_next < index.packets()) {
        const PacketIndex::Packet place = index.packet(m_next);
        m_decoded.clear();
        m_positioned = fetchAndDecode();
        fitYield(m_positioned ? place.frames : 0);
        m_decodedStart = place.start;
        ++m_next;
        return m_positioned;
    }
    if (m_track.drainedFrames == 0 || m_decodedStart >= index.frames()) {
        return false;
    }
    m_decoded.clear();
    m_decoder->drain(m_decoded);
    m_decoded.resize(static_cast<std::size_t>(2 * m_track.drainedFrames), 0.0f);
    m_decodedStart = index.frames();
    return true;
}

int TrackReader::measureLastPacket() {
    const std::int64_t last = m_track.index.packets() - 1;
    if (last < 0 || !seek(m_track.index.packet(last).start)) {
        return 0;
    }
    int frames = 0;
    for (; m_next <= last; ++m_next) {
        m_decoded.clear();
        if (m_track.source->next(m_track.index, *m_packet) != PacketSource::Outcome::Packet) {
            return 0;
        }
        frames = m_decoder->decode(*m_packet, m_decoded);
    }
    m_positioned = false;
    m_decoded.clear();
    return frames;
}

}  // namespace qm
