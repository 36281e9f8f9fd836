#include <doctest/doctest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "MediaFiles.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::int64_t kFrames = 50021;

struct Written {
    std::string name;
    std::vector<std::uint8_t> bytes;
    int channels;
};

std::vector<Written> sixteenBitFiles() {
    return {{"stereo.wav", waveFile(2, 44100, kFrames, SampleFormat::Int16), 2},
            {"mono.wav", waveFile(1, 48000, kFrames, SampleFormat::Int16), 1},
            {"stereo.aiff", aiffFile(2, 44100, kFrames), 2},
            {"mono.aif", aiffFile(1, 22050, kFrames), 1},
            {"stereo.caf", cafFile(2, 96000, kFrames), 2},
            {"mono.caf", cafFile(1, 44100, kFrames), 1}};
}

float expected(std::int64_t frame, int channel, int channels) {
    return static_cast<float>(codedSample(frame, channel % channels)) / 32768.0f;
}

std::vector<std::uint8_t> floatWave(int channels, const std::vector<std::uint8_t>& data) {
    const auto block = static_cast<std::uint64_t>(4 * channels);
    Bytes file;
    file.text("RIFF").little(36 + data.size(), 4).text("WAVEfmt ").little(16, 4).little(3, 2);
    file.little(static_cast<std::uint64_t>(channels), 2).little(44100, 4).little(44100 * block, 4).little(block, 2);
    return file.little(32, 2).text("data").little(data.size(), 4).add(data).get();
}

// Sixteen bits at 48000, with a chunk of odd length in front of the sound.
std::vector<std::uint8_t> bigEndianWave(int channels, bool extensible) {
    const auto block = static_cast<std::uint64_t>(2 * channels);
    Bytes format;
    format.big(extensible ? 0xfffe : 1, 2).big(static_cast<std::uint64_t>(channels), 2).big(48000, 4);
    format.big(48000 * block, 4).big(block, 2).big(16, 2);
    if (extensible) {
        format.big(22, 2).big(16, 2).big(channels == 1 ? 4 : 3, 4).big(1, 4).big(0x10, 4).big(0x800000aa00389b71, 8);
    }
    Bytes data;
    for (std::int64_t n = 0; n < kFrames; ++n) {
        for (int c = 0; c < channels; ++c) {
            data.big(static_cast<std::uint16_t>(codedSample(n, c)), 2);
        }
    }
    Bytes file;
    file.text("RIFX").big(4 + 8 + format.get().size() + 12 + 8 + data.get().size(), 4).text("WAVE");
    file.text("fmt ").big(format.get().size(), 4).add(format.get()).text("junk").big(3, 4).repeat(9, 4);
    return file.text("data").big(data.get().size(), 4).add(data.get()).get();
}

}  // namespace

TEST_CASE("sixteen-bit samples are read as what was written, divided by 32768, mono in both channels") {
    const TemporaryFolder folder;
    for (const Written& written : sixteenBitFiles()) {
        CAPTURE(written.name);
        const auto sound = openSound(folder.write(written.name, written.bytes));
        REQUIRE(sound);
        CHECK(sound->length() == kFrames);
        CHECK(sound->channels() == written.channels);
        const auto whole = readLinearly(*sound);
        std::int64_t wrong = 0;
        for (std::int64_t n = 0; n < kFrames; ++n) {
            for (int c = 0; c < 2; ++c) {
                wrong += whole[static_cast<std::size_t>(2 * n + c)] != expected(n, c, written.channels) ? 1 : 0;
            }
        }
        CHECK(wrong == 0);
    }
}

TEST_CASE("any stretch of an uncompressed file is the same however it is reached") {
    const TemporaryFolder folder;
    for (const Written& written : sixteenBitFiles()) {
        CAPTURE(written.name);
        const auto sound = openSound(folder.write(written.name, written.bytes));
        REQUIRE(sound);
        const auto whole = readLinearly(*sound, 777);
        CHECK(countWrongSeeks(*sound, whole) == 0);
        CHECK(countWrongChunksBackward(*sound, whole) == 0);
    }
}

TEST_CASE("the sample rate is the file's") {
    const TemporaryFolder folder;
    const auto sound = openSound(folder.write("a.wav", waveFile(2, 88200, 1000, SampleFormat::Int16)));
    REQUIRE(sound);
    CHECK(sound->sampleRate() == 88200);
}

TEST_CASE("24-bit samples keep all their bits") {
    const TemporaryFolder folder;
    const auto sound = openSound(folder.write("a.wav", waveFile(2, 48000, 5000, SampleFormat::Int24)));
    REQUIRE(sound);
    const auto whole = readLinearly(*sound);
    for (std::int64_t n = 0; n < 5000; n += 7) {
        CHECK(whole[static_cast<std::size_t>(2 * n)] ==
              static_cast<float>((codedSample(n, 0) * 256 + 77) * 256) / 2147483648.0f);
    }
}

TEST_CASE("8-bit samples are unsigned: 128 is silence") {
    const TemporaryFolder folder;
    const auto sound = openSound(folder.write("a.wav", waveFile(1, 44100, 3000, SampleFormat::Int8)));
    REQUIRE(sound);
    const auto whole = readLinearly(*sound);
    for (std::int64_t n = 0; n < 3000; n += 11) {
        CHECK(whole[static_cast<std::size_t>(2 * n)] == static_cast<float>(codedSample(n, 0) >> 8) / 128.0f);
    }
}

TEST_CASE("float samples beyond full scale are not touched") {
    const TemporaryFolder folder;
    const auto sound = openSound(folder.write("a.wav", waveFile(2, 44100, 3000, SampleFormat::Float32)));
    REQUIRE(sound);
    const auto whole = readLinearly(*sound);
    float loudest = 0;
    for (std::int64_t n = 0; n < 3000; ++n) {
        const float sample = whole[static_cast<std::size_t>(2 * n + 1)];
        loudest = std::max(loudest, sample);
        CHECK(sample == static_cast<float>(codedSample(n, 1)) / 20000.0f);
    }
    CHECK(loudest > 1.0f);
}

TEST_CASE("samples that are no numbers or no sound are silent, and their neighbours are untouched") {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInf = std::numeric_limits<float>::infinity();
    const std::vector<float> spoilt = {kNan, -kNan, kInf, -kInf, 16.001f, -1e30f, 3e38f};
    const std::vector<float> sound = {16.0f, -16.0f, 1e-40f, -0.0f, 1.5f};
    for (const int channels : {1, 2, 6}) {
        CAPTURE(channels);
        Bytes data;
        for (std::size_t n = 0; n < 1000; ++n) {
            const float sample = n % 3 == 1 ? spoilt[n % spoilt.size()] : sound[n % sound.size()];
            for (int c = 0; c < channels; ++c) {
                data.little(std::bit_cast<std::uint32_t>(sample), 4);
            }
        }
        const TemporaryFolder folder;
        const auto reader = openSound(folder.write("a.wav", floatWave(channels, data.get())));
        REQUIRE(reader);
        const auto whole = readLinearly(*reader);
        int wrong = 0;
        for (std::size_t n = 0; n < 1000; ++n) {
            const float wanted = n % 3 == 1 ? 0.0f : sound[n % sound.size()];
            const float read = whole[2 * n];
            const bool exact = std::bit_cast<std::uint32_t>(read) == std::bit_cast<std::uint32_t>(wanted);
            wrong += channels <= 2 ? !exact : !(std::abs(read - wanted) < 1e-5f);
        }
        CHECK(wrong == 0);
    }
}

TEST_CASE("samples of double precision that are no sound are silent") {
    Bytes data;
    for (const double sample : {0.5, std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300, 17.0, -0.25}) {
        data.little(std::bit_cast<std::uint64_t>(sample), 8);
    }
    Bytes file;
    file.text("RIFF").little(36 + data.get().size(), 4).text("WAVEfmt ").little(16, 4).little(3, 2).little(1, 2);
    file.little(44100, 4).little(44100 * 8, 4).little(8, 2).little(64, 2).text("data");
    file.little(data.get().size(), 4).add(data.get());
    const TemporaryFolder folder;
    const auto reader = openSound(folder.write("a.wav", file.get()));
    REQUIRE(reader);
    CHECK(readLinearly(*reader) == std::vector<float>{0.5, 0.5, 0, 0, 0, 0, 0, 0, 0, 0, -0.25, -0.25});
}

TEST_CASE("a wave file with its numbers big-endian is read as what was written") {
    const TemporaryFolder folder;
    for (const int channels : {1, 2}) {
        for (const bool extensible : {false, true}) {
            CAPTURE(channels);
            CAPTURE(extensible);
            const std::string path = folder.write("a.wav", bigEndianWave(channels, extensible));
            const auto sound = openSound(path);
            REQUIRE(sound);
            CHECK(sound->length() == kFrames);
            CHECK(sound->sampleRate() == 48000);
            CHECK(sound->channels() == channels);
            const auto whole = readLinearly(*sound, 777);
            std::int64_t wrong = 0;
            for (std::int64_t n = 0; n < kFrames; ++n) {
                for (int c = 0; c < 2; ++c) {
                    wrong += whole[static_cast<std::size_t>(2 * n + c)] != expected(n, c, channels) ? 1 : 0;
                }
            }
            CHECK(wrong == 0);
            CHECK(countWrongSeeks(*sound, whole) == 0);
            const auto media = openMedia(path);
            REQUIRE(media);
            CHECK(media.value().description.trackFormats.size() == 1);
            CHECK(media.value().description.displayName == "a.wav");
        }
    }
}

TEST_CASE("six channels at full scale fold to stereo without clipping") {
    const TemporaryFolder folder;
    Bytes file;
    constexpr int kCount = 1000;
    file.text("RIFF").little(36 + 12 * kCount, 4).text("WAVEfmt ").little(16, 4).little(1, 2).little(6, 2);
    file.little(44100, 4).little(44100 * 12, 4).little(12, 2).little(16, 2).text("data").little(12 * kCount, 4);
    for (int i = 0; i < 6 * kCount; ++i) {
        file.little(0x7fff, 2);
    }
    const auto sound = openSound(folder.write("six.wav", file.get()));
    REQUIRE(sound);
    CHECK(sound->channels() == 6);
    for (const float sample : readLinearly(*sound)) {
        CHECK(sample > 0.9f);
        CHECK(sample <= 1.0f);
    }
}

TEST_CASE("a front left channel folds to the left only") {
    const TemporaryFolder folder;
    Bytes file;
    file.text("RIFF").little(36 + 800, 4).text("WAVEfmt ").little(16, 4).little(1, 2).little(4, 2);
    file.little(44100, 4).little(44100 * 8, 4).little(8, 2).little(16, 2).text("data").little(800, 4);
    for (int i = 0; i < 100; ++i) {
        file.little(0x4000, 2).little(0, 6);
    }
    const auto sound = openSound(folder.write("four.wav", file.get()));
    REQUIRE(sound);
    const auto whole = readLinearly(*sound);
    CHECK(whole[0] > 0.1f);
    CHECK(whole[1] == 0.0f);
}

TEST_CASE("frames outside the track are zero and are no failure") {
    const TemporaryFolder folder;
    const auto sound = openSound(folder.write("a.wav", waveFile(2, 44100, 1000, SampleFormat::Int16)));
    REQUIRE(sound);
    std::vector<float> part(2 * 100, 9.0f);
    CHECK(sound->read(-50, part.data(), 100));
    CHECK(part[0] == 0.0f);
    CHECK(part[99] == 0.0f);
    CHECK(part[100] == expected(0, 0, 2));
    CHECK(sound->read(990, part.data(), 100));
    CHECK(part[0] == expected(990, 0, 2));
    CHECK(part[20] == 0.0f);
    CHECK(part[199] == 0.0f);
    CHECK(sound->read(std::int64_t{1} << 50, part.data(), 100));
    CHECK(part[0] == 0.0f);
}

TEST_CASE("bytes behind the sound of a wav file are not played") {
    const TemporaryFolder folder;
    auto bytes = waveFile(2, 44100, 1000, SampleFormat::Int16);
    bytes.insert(bytes.end(), 5000, 0x55);
    const auto sound = openSound(folder.write("a.wav", bytes));
    REQUIRE(sound);
    CHECK(sound->length() == 1000);
}

TEST_CASE("a wav file whose size was never filled in plays to its end") {
    const TemporaryFolder folder;
    auto bytes = waveFile(2, 44100, 1000, SampleFormat::Int16);
    std::fill(bytes.begin() + 40, bytes.begin() + 44, 0xff);
    const auto sound = openSound(folder.write("a.wav", bytes));
    REQUIRE(sound);
    CHECK(sound->length() == 1000);
}

TEST_CASE("a wav file that is cut plays what is there") {
    const TemporaryFolder folder;
    auto bytes = waveFile(2, 44100, 1000, SampleFormat::Int16);
    bytes.resize(44 + 4 * 300 + 3);
    const auto sound = openSound(folder.write("a.wav", bytes));
    REQUIRE(sound);
    CHECK(sound->length() == 300);
}

TEST_CASE("a file that is cut while it is open reads as silence and says so") {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.wav", waveFile(2, 44100, 100000, SampleFormat::Int16));
    const auto sound = openSound(path);
    REQUIRE(sound);
    std::filesystem::resize_file(path, 1000);
    std::vector<float> part(2 * 100, 9.0f);
    CHECK_FALSE(sound->read(50000, part.data(), 100));
    CHECK(part == std::vector<float>(200, 0.0f));
}
