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

std::int64_t TrackReader::prerollPacket(std::int64_t target) const {
    const PacketIndex& index = m_track.index;
    const CodecTraits& traits = m_track.traits;
    std::int64_t packet = target;
    if (traits.reservoirBytes > 0) {
        const bool sized = target < index.packets() && index.packet(target).position != PacketIndex::kNoPosition;
        const std::int64_t lowest = std::max<std::int64_t>(target - (sized ? kLongestReservoir : kUnsizedReservoir), 0);
        for (int bytes = 0; packet > lowest && (!sized || bytes < traits.reservoirBytes); --packet) {
            bytes += std::max(static_cast<int>(index.packet(packet - 1).size) - kBytesBesideReservoir, 0);
        }
    }
    return std::min(index.packetAt(index.packet(packet).start - traits.prerollFrames), packet);
}

bool TrackReader::seek(std::int64_t frame) {
    m_positioned = false;
    m_decoded.clear();
    if (m_track.index.packets() == 0 || !m_decoder->restart()) {
        return false;
    }
    const std::int64_t landed = m_track.source->seek(m_track.index, prerollPacket(m_track.index.packetAt(frame)));
    if (landed < 0) {
        return false;
    }
    m_next = landed;
    m_decodedStart = m_track.index.packet(landed).start;
    m_positioned = true;
    return true;
}

bool TrackReader::decodeNext() {
    const bool draining = m_next >= m_track.index.packets();
    const std::int64_t end = m_track.index.frames() + m_track.drainedFrames;
    if (draining && decodedEnd() >= end) {
        return false;
    }
    const PacketIndex::Packet place = draining ? PacketIndex::Packet{} : m_track.index.packet(m_next);
    const std::int64_t start = draining ? m_track.index.frames() : place.start;
    const std::int64_t frames = draining ? m_track.drainedFrames : place.frames;
    m_decoded.clear();
    if (draining) {
        m_decoder->drain(m_decoded);
    } else {
        switch (m_track.source->next(m_track.index, *m_packet)) {
            case PacketSource::Outcome::Packet:
                m_decoder->decode(*m_packet, m_decoded);
                break;
            case PacketSource::Outcome::End:
                break;
            case PacketSource::Outcome::Unreadable:
                m_positioned = false;
                return false;
        }
        ++m_next;
    }
    // Exactly the frames that the index gives to this packet: what is missing is silent.
    const auto yielded = static_cast<std::int64_t>(m_decoded.size() / 2);
    if (m_track.traits.yieldBelongsToEnd && !draining && yielded < frames) {
        m_decoded.insert(m_decoded.begin(), static_cast<std::size_t>(2 * (frames - yielded)), 0.0f);
    } else if (m_track.traits.yieldBelongsToEnd && !draining && yielded > frames) {
        m_decoded.erase(m_decoded.begin(), m_decoded.begin() + 2 * (yielded - frames));
    }
    m_decoded.resize(static_cast<std::size_t>(2 * frames), 0.0f);
    m_decodedStart = start;
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
