#include "engine/capture/MovieHeader.h"

namespace qm {

namespace {

constexpr std::uint32_t kSoundBoxHeader = 16;  // of the box that holds the sound
constexpr std::uint16_t kChannels = 2, kBits = 16;
constexpr std::uint32_t kOne = 0x10000;           // fixed point, 16.16
constexpr std::uint32_t kMatrixOne = 0x40000000;  // fixed point, 2.30
constexpr std::uint16_t kFullVolume = 0x100;      // fixed point, 8.8
constexpr std::uint32_t kTrackId = 1;
constexpr std::uint32_t kShownTrack = 7;  // enabled, in the movie, in the preview
constexpr std::uint16_t kNoLanguage = 0x7FFF;

// Numbers are big-endian.
class Bytes {
public:
    Bytes& u16(std::uint16_t value) { return number(value, 2); }
    Bytes& u32(std::uint32_t value) { return number(value, 4); }
    Bytes& u64(std::uint64_t value) { return number(value, 8); }
    Bytes& zeros(std::size_t count) {
        m_text.append(count, '\0');
        return *this;
    }
    Bytes& text(const std::string& text) {
        m_text += text;
        return *this;
    }
    const std::string& str() const { return m_text; }

private:
    Bytes& number(std::uint64_t value, int bytes) {
        for (int byte = bytes - 1; byte >= 0; --byte) m_text += static_cast<char>(value >> (8 * byte) & 0xFF);
        return *this;
    }

    std::string m_text;
};

std::string box(const char* type, const std::string& content) {
    return Bytes().u32(static_cast<std::uint32_t>(content.size() + 8)).text(type).text(content).str();
}

// A box that begins with a version and flags, all zero.
std::string plainBox(const char* type, const Bytes& content) {
    return box(type, Bytes().zeros(4).text(content.str()).str());
}

Bytes matrix() {
    return Bytes().u32(kOne).zeros(12).u32(kOne).zeros(12).u32(kMatrixOne);
}

std::string movieBox(const RecordedMovie& movie) {
    const auto rate = static_cast<std::uint32_t>(movie.sampleRate);
    return plainBox("mvhd", Bytes()
                                .zeros(8)
                                .u32(rate)
                                .u32(movie.frames)
                                .u32(kOne)
                                .u16(kFullVolume)
                                .zeros(10)
                                .text(matrix().str())
                                .zeros(24)
                                .u32(kTrackId + 1));
}

std::string trackBox(const RecordedMovie& movie) {
    return box("tkhd", Bytes()
                           .u32(kShownTrack)
                           .zeros(8)
                           .u32(kTrackId)
                           .zeros(4)
                           .u32(movie.frames)
                           .zeros(12)
                           .u16(kFullVolume)
                           .zeros(2)
                           .text(matrix().str())
                           .zeros(8)
                           .str());
}

std::string sampleDescription(const RecordedMovie& movie) {
    const std::string littleEndian = box("sowt", Bytes()
                                                     .zeros(6)
                                                     .u16(1)
                                                     .zeros(8)
                                                     .u16(kChannels)
                                                     .u16(kBits)
                                                     .zeros(4)
                                                     .u32(static_cast<std::uint32_t>(movie.sampleRate) << 16)
                                                     .str());
    return plainBox("stsd", Bytes().u32(1).text(littleEndian));
}

// Every frame is a sample of one unit, and all lie in one chunk.
std::string sampleTable(const RecordedMovie& movie, std::uint64_t soundBegins) {
    const std::uint32_t frames = movie.frames;
    return box("stbl", sampleDescription(movie) + plainBox("stts", Bytes().u32(1).u32(frames).u32(1)) +
                           plainBox("stsc", Bytes().u32(1).u32(1).u32(frames).u32(1)) +
                           plainBox("stsz", Bytes().u32(kRecordedFrameBytes).u32(frames)) +
                           plainBox("co64", Bytes().u32(1).u64(soundBegins)));
}

std::string handlerBox(const char* kind) {
    return plainBox("hdlr", Bytes().text(kind).zeros(13));
}

std::string mediaBox(const RecordedMovie& movie, std::uint64_t soundBegins) {
    const auto rate = static_cast<std::uint32_t>(movie.sampleRate);
    const std::string sameFile = box("url ", Bytes().u32(1).str());
    const std::string information = plainBox("smhd", Bytes().zeros(4)) + handlerBox("dhlrurl ") +
                                    box("dinf", plainBox("dref", Bytes().u32(1).text(sameFile))) +
                                    sampleTable(movie, soundBegins);
    return box("mdia", plainBox("mdhd", Bytes().zeros(8).u32(rate).u32(movie.frames).u16(kNoLanguage).zeros(2)) +
                           handlerBox("mhlrsoun") + box("minf", information));
}

std::string beforeSound(const RecordedMovie& movie, std::uint64_t soundBegins) {
    return box("ftyp", Bytes().text("qt  ").u32(0x20050300).text("qt  ").str()) +
           box("moov", movieBox(movie) + box("trak", trackBox(movie) + mediaBox(movie, soundBegins)));
}

// Of the same length either way: an empty box makes room for the long form of the size.
std::string soundBoxHeader(const RecordedMovie& movie) {
    if (!movie.finished) return Bytes().u32(8).text("wide").u32(0).text("mdat").str();
    const std::uint64_t soundBytes = std::uint64_t{movie.frames} * kRecordedFrameBytes;
    return Bytes().u32(1).text("mdat").u64(kSoundBoxHeader + soundBytes).str();
}

}  // namespace

std::string movieHeader(const RecordedMovie& movie) {
    const std::uint64_t soundBegins = beforeSound(movie, 0).size() + kSoundBoxHeader;
    return beforeSound(movie, soundBegins) + soundBoxHeader(movie);
}

}  // namespace qm
