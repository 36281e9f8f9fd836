#include "engine/media/PacketIndex.h"

#include <algorithm>

namespace qm {

namespace {

// A packet's position is found by adding sizes from the start of its run: long runs would make that slow.
constexpr std::int64_t kLongestRun = 64;

constexpr std::int32_t kSamplesPerPacket = 2048;  // frames

}  // namespace

PacketIndex PacketIndex::uniform(std::int64_t position, std::int64_t bytes, std::uint32_t packetBytes,
                                 std::int32_t packetFrames, std::int32_t lastFrames) {
    PacketIndex index;
    const std::int64_t whole = bytes / packetBytes;
    if (whole > 0) {
        index.m_runs.push_back({position, 0, 0, packetFrames, packetBytes});
        index.m_packets = whole;
        index.m_frames = whole * packetFrames;
    }
    const auto rest = static_cast<std::uint32_t>(bytes % packetBytes);
    if (rest > 0 && lastFrames > 0) {
        index.m_runs.push_back({position + whole * packetBytes, index.m_frames, whole, lastFrames, rest});
        index.m_packets += 1;
        index.m_frames += lastFrames;
    }
    return index;
}

PacketIndex PacketIndex::ofSamples(std::int64_t position, std::int64_t bytes, std::uint32_t frameBytes) {
    const std::int64_t frames = bytes / frameBytes;
    return uniform(position, frames * frameBytes, frameBytes * kSamplesPerPacket, kSamplesPerPacket,
                   static_cast<std::int32_t>(frames % kSamplesPerPacket));
}

void PacketIndex::append(std::int64_t position, std::uint32_t size, std::int32_t frames) {
    const bool known = position != kNoPosition;
    const bool follows = !m_runs.empty() && m_runs.back().frames == frames && position == m_nextPosition &&
                         m_packets - m_runs.back().firstPacket < kLongestRun;
    if (!follows) {
        m_runs.push_back({position, m_frames, m_packets, frames, 0});
    }
    m_sizes.push_back(size);
    m_nextPosition = known ? position + size : kNoPosition;
    m_packets += 1;
    m_frames += frames;
}

void PacketIndex::shortenLast(std::int32_t frames) {
    if (m_packets == 0 || m_runs.back().uniformSize > 0) {
        return;
    }
    const Packet last = packet(m_packets - 1);
    m_packets -= 1;
    m_frames = last.start;
    m_sizes.pop_back();
    if (m_runs.back().firstPacket == m_packets) {
        m_runs.pop_back();
    }
    m_nextPosition = kNoPosition - 1;  // a run of its own
    append(last.position, last.size, frames);
}

const PacketIndex::Run& PacketIndex::runOfPacket(std::int64_t number) const {
    const auto after = std::upper_bound(m_runs.begin(), m_runs.end(), number,
                                        [](std::int64_t n, const Run& run) { return n < run.firstPacket; });
    return *(after - 1);
}

std::int64_t PacketIndex::endOfRun(const Run& run) const {
    const Run* next = &run + 1;
    return next == m_runs.data() + m_runs.size() ? m_packets : next->firstPacket;
}

PacketIndex::Packet PacketIndex::packet(std::int64_t number) const {
    const Run& run = runOfPacket(number);
    const std::int64_t ordinal = number - run.firstPacket;
    Packet packet{run.position, run.uniformSize, run.start + ordinal * run.frames, run.frames};
    if (run.uniformSize > 0) {
        packet.position += ordinal * run.uniformSize;
        return packet;
    }
    packet.size = m_sizes[static_cast<std::size_t>(number)];
    if (packet.position != kNoPosition) {
        for (std::int64_t i = run.firstPacket; i < number; ++i) {
            packet.position += m_sizes[static_cast<std::size_t>(i)];
        }
    }
    return packet;
}

std::int64_t PacketIndex::packetAt(std::int64_t frame) const {
    if (m_packets == 0 || frame <= 0) {
        return 0;
    }
    const auto after = std::upper_bound(m_runs.begin(), m_runs.end(), frame,
                                        [](std::int64_t f, const Run& run) { return f < run.start; });
    const Run& run = *(after - 1);
    const std::int64_t ordinal = run.frames > 0 ? (frame - run.start) / run.frames : 0;
    return std::min(run.firstPacket + ordinal, endOfRun(run) - 1);
}

std::int64_t PacketIndex::findUnique(std::uint32_t identity) const {
    const auto found = std::find(m_sizes.begin(), m_sizes.end(), identity);
    if (found == m_sizes.end() || std::find(found + 1, m_sizes.end(), identity) != m_sizes.end()) {
        return -1;
    }
    return found - m_sizes.begin();
}

std::size_t PacketIndex::memoryBytes() const {
    return m_runs.capacity() * sizeof(Run) + m_sizes.capacity() * sizeof(std::uint32_t);
}

}  // namespace qm
