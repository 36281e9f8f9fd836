#include "SoundFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace qm::measure {

static_assert(std::endian::native == std::endian::little, "files are written in the machine's byte order");

namespace {

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes.push_back(char(value >> (8 * i)));
    }
}

std::string wavHeader(std::size_t frames) {
    const auto dataBytes = std::uint32_t(frames * 4);
    std::string h = "RIFF";
    append(h, 36 + dataBytes, 4);
    h += "WAVEfmt ";
    append(h, 16, 4);               // size of the format chunk
    append(h, 1, 2);                // PCM
    append(h, 2, 2);                // channels
    append(h, kSampleRate, 4);      // frames a second
    append(h, kSampleRate * 4, 4);  // bytes a second
    append(h, 4, 2);                // bytes a frame
    append(h, 16, 2);               // bits a sample
    h += "data";
    append(h, dataBytes, 4);
    return h;
}

std::uint32_t sample16(float value) {
    const long rounded = std::lround(value * 32768.0);
    return std::uint32_t(std::clamp(rounded, -32768L, 32767L)) & 0xffff;
}

}  // namespace

Sound Sound::from(std::size_t frame) const {
    const auto skip = std::ptrdiff_t(std::min(frame, frames()));
    return {{left.begin() + skip, left.end()}, {right.begin() + skip, right.end()}};
}

std::size_t Sound::soundingFrames(std::size_t begin, std::size_t end) const {
    std::size_t count = 0;
    for (std::size_t i = begin; i < end; ++i) {
        count += !silentAt(i);
    }
    return count;
}

Sound Sound::withoutSilence() const {
    Sound rest;
    for (std::size_t i = 0; i < frames(); ++i) {
        if (!silentAt(i)) {
            rest.left.push_back(left[i]);
            rest.right.push_back(right[i]);
        }
    }
    return rest;
}

void writeWav(const std::string& path, const Sound& sound) {
    std::string bytes = wavHeader(sound.frames());
    for (std::size_t i = 0; i < sound.frames(); ++i) {
        append(bytes, sample16(sound.left[i]), 2);
        append(bytes, sample16(sound.right[i]), 2);
    }
    std::ofstream file(path, std::ios::binary);
    if (!file.write(bytes.data(), std::streamsize(bytes.size()))) {
        throw std::runtime_error("cannot write " + path);
    }
}

Sound readRecording(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    const std::size_t frames = bytes.size() / 8;
    Sound sound{std::vector<float>(frames), std::vector<float>(frames)};
    for (std::size_t i = 0; i < frames; ++i) {
        std::memcpy(&sound.left[i], &bytes[8 * i], 4);
        std::memcpy(&sound.right[i], &bytes[8 * i + 4], 4);
    }
    return sound;
}

}  // namespace qm::measure
