// Where every packet of a sound track begins, in the file and in decoded frames, at about four bytes a packet: packets
// that follow one another in the file and hold equally many frames share one run. A value; reading it is safe from any
// thread once it is complete.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm {

class PacketIndex {
public:
    struct Packet {
        std::int64_t position = 0;  // bytes from the start of the file, kNoPosition when only the demuxer knows
        std::uint32_t size = 0;     // bytes, or whatever four bytes of identity were appended
        std::int64_t start = 0;     // frames
        std::int32_t frames = 0;
    };
    static constexpr std::int64_t kNoPosition = -1;

    // Packets of one size without end: `bytes` at `position`, cut into packets; the last may be smaller and then holds
    // `lastFrames`.
    static PacketIndex uniform(std::int64_t position, std::int64_t bytes, std::uint32_t packetBytes,
                               std::int32_t packetFrames, std::int32_t lastFrames);

    // Samples without packets of their own, cut into such: as many whole frames as the bytes hold.
    static PacketIndex ofSamples(std::int64_t position, std::int64_t bytes, std::uint32_t frameBytes);

    void append(std::int64_t position, std::uint32_t size, std::int32_t frames);

    void shortenLast(std::int32_t frames);  // gives the last packet so many frames

    std::int64_t packets() const { return m_packets; }
    std::int64_t frames() const { return m_frames; }
    Packet packet(std::int64_t number) const;
    std::int64_t packetAt(std::int64_t frame) const;  // clamped to the packets there are

    // The number of the only packet with this identity, or -1 when none or several have it.
    std::int64_t findUnique(std::uint32_t identity) const;

    // Of each packet; empty where packets are of one size.
    const std::vector<std::uint32_t>& sizes() const { return m_sizes; }

    std::size_t memoryBytes() const;

private:
    struct Run {
        std::int64_t position;
        std::int64_t start;
        std::int64_t firstPacket;
        std::int32_t frames;
        std::uint32_t uniformSize;  // 0: the sizes stand in m_sizes
    };

    const Run& runOfPacket(std::int64_t number) const;
    std::int64_t endOfRun(const Run& run) const;  // its first packet that is not in it any more

    std::vector<Run> m_runs;
    std::vector<std::uint32_t> m_sizes;
    std::int64_t m_packets = 0;
    std::int64_t m_frames = 0;
    std::int64_t m_nextPosition = kNoPosition;
};

}  // namespace qm
