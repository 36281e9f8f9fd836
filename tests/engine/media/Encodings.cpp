#include "Encodings.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>

namespace qm::test {

namespace {

// A gliding tone with noise in it: the coders have to work, and no two places are alike.
std::vector<std::uint8_t> sourceWave(int channels, std::int64_t frames) {
    auto bytes = waveFile(channels, 44100, frames, SampleFormat::Int16);
    for (std::int64_t n = 0; n < frames; ++n) {
        for (int c = 0; c < channels; ++c) {
            const double t = static_cast<double>(n) / 44100;
            const double tone = 9000 * std::sin(2 * M_PI * (200 + 500 * t + 90 * c) * t);
            const auto sample = static_cast<std::int16_t>(tone + codedSample(n, c) / 16);
            const auto at = static_cast<std::size_t>(44 + 2 * (n * channels + c));
            bytes[at] = static_cast<std::uint8_t>(sample);
            bytes[at + 1] = static_cast<std::uint8_t>(sample >> 8);
        }
    }
    return bytes;
}

}  // namespace

Encodings::Encodings() {
    m_folder.write("source.wav", sourceWave(2, kEncodedFrames));
}

std::string Encodings::make(const Encoded& encoded) const {
    const std::string path = m_folder.file(encoded.name);
    std::string arguments = encoded.arguments;
    const std::size_t place = arguments.find("SOURCE");
    const std::string input = "-i '" + m_folder.file("source.wav") + "'";
    arguments = place == std::string::npos ? input + " " + arguments : arguments.replace(place, 6, input);
    CAPTURE(arguments);
    REQUIRE(encode(arguments, path));
    return path;
}

void checkExact(const std::string& path) {
    CAPTURE(path);
    const auto sound = openSound(path);
    REQUIRE(sound);
    const auto whole = readLinearly(*sound);
    CHECK(countWrongSeeks(*sound, whole) == 0);
    CHECK(countWrongChunksBackward(*sound, whole) == 0);
}

void checkAgainstProgram(const std::string& path, std::int64_t overshoot) {
    CAPTURE(path);
    const auto sound = openSound(path);
    REQUIRE(sound);
    const auto channels = static_cast<std::size_t>(sound->channels());
    const auto theirs = decodedByProgram(path);
    const auto whole = readLinearly(*sound);
    const auto theirLength = static_cast<std::int64_t>(theirs.size() / channels);
    CHECK(sound->length() <= theirLength);
    CHECK(sound->length() >= theirLength - overshoot);
    std::int64_t wrong = 0;
    for (std::size_t n = 0; n < std::min(whole.size() / 2, theirs.size() / channels); ++n) {
        wrong +=
            whole[2 * n] != theirs[channels * n] || whole[2 * n + 1] != theirs[channels * n + channels - 1] ? 1 : 0;
    }
    CHECK(wrong == 0);
}

void checkSurvivesSpoiling(const Encodings& encodings, const std::string& path) {
    CAPTURE(path);
    std::ifstream in(path, std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
    for (std::size_t i = 1; i <= 24; ++i) {
        auto spoilt = bytes;
        if (i % 2 == 0) {
            spoilt.resize(bytes.size() * i / 25);
        } else {
            for (std::size_t k = 0; k < 40; ++k) {
                spoilt[(k * k * 977 + i * 131) % std::min<std::size_t>(spoilt.size(), 3000)] ^= 0x5a;
            }
        }
        if (const auto sound = openSound(encodings.folder().write("spoilt", spoilt))) {
            CHECK(sound->length() < 100 * kEncodedFrames);
            std::vector<float> part(2 * 3000);
            sound->read(0, part.data(), 3000);
            sound->read(sound->length() - 3000, part.data(), 3000);
        }
    }
}

}  // namespace qm::test
