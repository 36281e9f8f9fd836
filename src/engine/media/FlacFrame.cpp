#include "engine/media/FlacFrame.h"

extern "C" {
#include <libavutil/crc.h>
}

#include "engine/media/FileBytes.h"
#include "engine/media/SoundTrack.h"

namespace qm {

namespace {

// Reads a header's fields one after the other, and knows when the bytes are not enough.
class Fields {
public:
    Fields(const std::uint8_t* bytes, std::size_t available) : m_bytes(bytes), m_available(available) {}

    int take(int bytes) {
        int value = 0;
        for (; bytes > 0; --bytes) value = value << 8 | byte();
        return value;
    }

    // A number in the form of UTF-8, extended to 36 bits; -1 for bytes that are none.
    std::int64_t number() {
        const std::uint8_t first = byte();
        if (first < 0x80) return first;
        int following = 1;
        while (following < 7 && (first << (following + 1) & 0x80) != 0) ++following;
        if ((first & 0x40) == 0 || following > 6) return -1;
        std::int64_t value = following < 6 ? first & (0x3f >> following) : 0;
        for (int i = 0; i < following; ++i) {
            const std::uint8_t next = byte();
            if ((next & 0xc0) != 0x80) return -1;
            value = value << 6 | (next & 0x3f);
        }
        return value;
    }

    std::size_t taken() const { return m_taken; }
    bool areWhole() const { return m_taken <= m_available; }

private:
    std::uint8_t byte() { return m_taken++ < m_available ? m_bytes[m_taken - 1] : 0; }

    const std::uint8_t* m_bytes;
    std::size_t m_available;
    std::size_t m_taken = 0;
};

int blockSizeOf(int code, Fields& fields) {
    if (code == 1) return 192;
    if (code >= 2 && code <= 5) return 576 << (code - 2);
    if (code == 6) return fields.take(1) + 1;
    if (code == 7) return fields.take(2) + 1;
    return code >= 8 ? 256 << (code - 8) : 0;
}

bool fitsChannels(int code, int channels) {
    return code < 8 ? code + 1 == channels : code <= 10 && channels == 2;
}

bool fitsBits(int code, int bits) {
    constexpr int kBits[] = {0, 8, 12, 0, 16, 20, 24, 32};
    return code == 0 || kBits[code] == bits;
}

}  // namespace

std::optional<FlacStreamInfo> FlacStreamInfo::parse(const std::uint8_t* bytes) {
    FlacStreamInfo info;
    info.smallestBlock = bigEndian16(bytes);
    info.largestBlock = bigEndian16(bytes + 2);
    info.largestBytes = bigEndian32(bytes + 6) & 0xffffff;
    info.sampleRate = static_cast<int>(bigEndian32(bytes + 10) >> 12);
    info.channels = (bytes[12] >> 1 & 7) + 1;
    info.bitsPerSample = ((bytes[12] & 1) << 4 | bytes[13] >> 4) + 1;
    info.frames = static_cast<std::int64_t>(bytes[13] & 0xf) << 32 | bigEndian32(bytes + 14);
    constexpr int kSmallestLegalBlock = 16;
    if (!isPlausible(info.sampleRate, info.channels) || info.smallestBlock < kSmallestLegalBlock ||
        info.largestBlock < info.smallestBlock || info.bitsPerSample < 4) {
        return std::nullopt;
    }
    return info;
}

std::int64_t FlacStreamInfo::mostBytes() const {
    constexpr std::int64_t kHeadersAndChecksum = 64;
    const std::int64_t bits = static_cast<std::int64_t>(largestBlock) * channels * (bitsPerSample + 1);
    return bits / 8 + kHeadersAndChecksum * channels;
}

std::optional<FlacFrameHeader> FlacFrameHeader::parse(const std::uint8_t* bytes, std::size_t available,
                                                      const FlacStreamInfo& stream) {
    Fields fields(bytes, available);
    const int sync = fields.take(2);
    if ((sync & 0xfffe) != 0xfff8) return std::nullopt;
    const int sizes = fields.take(1);
    const int kind = fields.take(1);
    FlacFrameHeader header;
    header.countsFrames = (sync & 1) != 0;
    header.number = fields.number();
    header.blockSize = blockSizeOf(sizes >> 4, fields);
    const int rate = sizes & 0xf;
    fields.take(rate == 12 ? 1 : rate == 13 || rate == 14 ? 2 : 0);
    const std::size_t checked = fields.taken();
    const int checksum = fields.take(1);
    const bool fits = fields.areWhole() && (kind & 1) == 0 && rate != 15 && header.number >= 0 &&
                      header.blockSize > 0 && header.blockSize <= stream.largestBlock &&
                      fitsChannels(kind >> 4, stream.channels) && fitsBits(kind >> 1 & 7, stream.bitsPerSample);
    if (!fits || av_crc(av_crc_get_table(AV_CRC_8_ATM), 0, bytes, checked) != static_cast<std::uint32_t>(checksum)) {
        return std::nullopt;
    }
    return header;
}

bool isWholeFlacFrame(const std::uint8_t* bytes, std::size_t count) {
    return av_crc(av_crc_get_table(AV_CRC_16_ANSI), 0, bytes, count) == 0;
}

}  // namespace qm
