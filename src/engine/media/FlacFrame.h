// The header in front of every frame of a FLAC stream, and what the stream says of all of them (RFC 9639, sections 8.2
// and 9.1). Pure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace qm {

// The block STREAMINFO. Sizes of 0 are not known.
struct FlacStreamInfo {
    static constexpr std::size_t kBytes = 34;

    int smallestBlock = 0;  // frames of sound in a FLAC frame; the last one may hold fewer
    int largestBlock = 0;
    std::int64_t largestBytes = 0;  // of a FLAC frame
    int sampleRate = 0;
    int channels = 0;
    int bitsPerSample = 0;
    std::int64_t frames = 0;  // of sound, in the whole stream

    // `bytes` holds kBytes. None for values that no stream has.
    static std::optional<FlacStreamInfo> parse(const std::uint8_t* bytes);

    // More than any frame of such a stream takes.
    std::int64_t mostBytes() const;
};

struct FlacFrameHeader {
    static constexpr std::size_t kMostBytes = 16;

    bool countsFrames = false;  // `number` is a frame of sound; otherwise it counts FLAC frames
    std::int64_t number = 0;
    int blockSize = 0;  // frames of sound

    // Reads from `available` bytes; none where they begin with no header that fits the stream, by its fields and its
    // checksum.
    static std::optional<FlacFrameHeader> parse(const std::uint8_t* bytes, std::size_t available,
                                                const FlacStreamInfo& stream);
};

// Whether these bytes are a whole FLAC frame, by the checksum at its end.
bool isWholeFlacFrame(const std::uint8_t* bytes, std::size_t count);

}  // namespace qm
