// The parts of the reader that are pure: which frames are kept, where packets lie, other sample rates.
#include <doctest/doctest.h>

#include <cmath>
#include <vector>

#include "engine/media/KeptRanges.h"
#include "engine/media/PacketIndex.h"
#include "engine/media/Resampler.h"

using namespace qm;

namespace {

std::vector<std::int64_t> heard(const KeptRanges& ranges, std::int64_t first, std::int64_t count) {
    std::vector<std::int64_t> frames(static_cast<std::size_t>(count), -1);
    ranges.forEach(first, count, [&](std::int64_t decoded, std::int64_t n, std::int64_t offset) {
        for (std::int64_t i = 0; i < n; ++i) {
            frames[static_cast<std::size_t>(offset + i)] = decoded + i;
        }
    });
    return frames;
}

using Frames = std::vector<std::int64_t>;

}  // namespace

TEST_CASE("cut frames are passed over, also where cuts overlap") {
    KeptRanges ranges(20);
    ranges.cut(0, 3);
    ranges.cut(5, 8);
    ranges.cut(7, 10);
    ranges.cut(18, 30);
    CHECK(ranges.length() == 10);
    CHECK(heard(ranges, 0, 10) == Frames{3, 4, 10, 11, 12, 13, 14, 15, 16, 17});
    CHECK(heard(ranges, -1, 3) == Frames{-1, 3, 4});
    CHECK(heard(ranges, 9, 3) == Frames{17, -1, -1});
    ranges.truncate(3);
    CHECK(heard(ranges, 0, 4) == Frames{3, 4, 10, -1});
    ranges.cut(0, 100);
    CHECK(ranges.length() == 0);
}

TEST_CASE("every packet is found by its number and by its frames") {
    PacketIndex index;
    std::vector<PacketIndex::Packet> packets;
    std::int64_t position = 100;
    std::int64_t start = 0;
    for (std::uint32_t i = 0; i < 1000; ++i) {
        const PacketIndex::Packet packet{position, 50 + i % 7, start, i % 100 == 99 ? 0 : i % 50 == 3 ? 576 : 1152};
        index.append(packet.position, packet.size, packet.frames);
        packets.push_back(packet);
        position += packet.size + (i % 130 == 17 ? 12 : 0);
        start += packet.frames;
    }
    CHECK(index.packets() == 1000);
    CHECK(index.frames() == start);
    for (std::int64_t i = 0; i < 1000; ++i) {
        const PacketIndex::Packet found = index.packet(i);
        const PacketIndex::Packet& expected = packets[static_cast<std::size_t>(i)];
        CHECK(found.position == expected.position);
        CHECK(found.size == expected.size);
        CHECK(found.start == expected.start);
        CHECK(found.frames == expected.frames);
        if (expected.frames > 0) {
            CHECK(index.packetAt(expected.start) == i);
            CHECK(index.packetAt(expected.start + expected.frames - 1) == i);
        }
    }
}

TEST_CASE("an index of three hours of small packets takes less than six bytes a packet") {
    PacketIndex index;
    constexpr std::int64_t kPackets = 413000;
    std::int64_t position = 0;
    for (std::int64_t i = 0; i < kPackets; ++i) {
        const std::uint32_t size = 417 + i % 2;
        index.append(position, size, 1152);
        position += size;
    }
    CHECK(index.memoryBytes() < 6 * kPackets);
}

TEST_CASE("blocks of one size take no memory each and the last may be smaller") {
    const PacketIndex index = PacketIndex::uniform(44, 1000 * 512 + 100, 512, 1017, 193);
    CHECK(index.packets() == 1001);
    CHECK(index.frames() == 1000 * 1017 + 193);
    CHECK(index.packet(1000).position == 44 + 1000 * 512);
    CHECK(index.packet(1000).size == 100);
    CHECK(index.packetAt(1017 * 500 + 3) == 500);
    CHECK(index.memoryBytes() < 200);
}

TEST_CASE("a packet's identity is only found when no other packet has it") {
    PacketIndex index;
    for (const std::uint32_t identity : {7u, 8u, 9u, 8u}) {
        index.append(PacketIndex::kNoPosition, identity, 10);
    }
    CHECK(index.findUnique(9) == 2);
    CHECK(index.findUnique(8) == -1);
    CHECK(index.findUnique(1) == -1);
}

TEST_CASE("a tone keeps its pitch and loudness at another sample rate, whatever stretch is asked for") {
    for (const auto& [from, to] :
         {std::pair{44100, 48000}, {48000, 44100}, {22050, 44100}, {96000, 44100}, {44101, 48000}}) {
        CAPTURE(from);
        const Resampler resampler(from, to);
        const auto at = [&, from = from](std::int64_t n) {
            return std::sin(2 * M_PI * 997 * static_cast<double>(n) / from);
        };
        const auto produce = [&](std::int64_t first, std::int64_t count) {
            const Resampler::Need need = resampler.need(first, count);
            std::vector<float> input;
            for (std::int64_t n = need.first; n < need.first + need.count; ++n) {
                input.push_back(static_cast<float>(at(n)));
                input.push_back(static_cast<float>(at(n)));
            }
            std::vector<float> output(static_cast<std::size_t>(2 * count), 0.0f);
            resampler.add(first, count, input.data(), output.data());
            return output;
        };
        const auto whole = produce(1000, 500);
        double error = 0;
        for (std::int64_t n = 0; n < 500; ++n) {
            const double expected = std::sin(2 * M_PI * 997 * static_cast<double>(1000 + n) / to);
            error = std::max(error, std::abs(static_cast<double>(whole[static_cast<std::size_t>(2 * n)]) - expected));
        }
        CHECK(error < 0.0005);
        const auto part = produce(1234, 10);
        CHECK(std::equal(part.begin(), part.end(), whole.begin() + 2 * 234));
        CHECK(resampler.outputLength(from) == to);
    }
}
