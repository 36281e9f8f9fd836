#include "MediaFiles.h"

#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>

namespace qm::test {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quillmere-media-XXXXXX").string();
    m_path = ::mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::vector<std::uint8_t>& bytes) const {
    std::ofstream out(m_path / name, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file(name);
}

Bytes& Bytes::text(const std::string& text) {
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
    return *this;
}

Bytes& Bytes::little(std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        m_bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    }
    return *this;
}

Bytes& Bytes::big(std::uint64_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) {
        m_bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    }
    return *this;
}

Bytes& Bytes::add(const std::vector<std::uint8_t>& bytes) {
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return *this;
}

Bytes& Bytes::repeat(std::uint8_t value, std::size_t count) {
    m_bytes.insert(m_bytes.end(), count, value);
    return *this;
}

std::int16_t codedSample(std::int64_t frame, int channel) {
    const auto mixed =
        (static_cast<std::uint64_t>(frame) * 2 + static_cast<std::uint64_t>(channel) + 1) * 0x9e3779b97f4a7c15ULL;
    return static_cast<std::int16_t>(mixed >> 40);
}

namespace {

int bytesOf(SampleFormat format) {
    switch (format) {
        case SampleFormat::Int8:
            return 1;
        case SampleFormat::Int16:
            return 2;
        case SampleFormat::Int24:
            return 3;
        case SampleFormat::Float32:
            return 4;
    }
    return 0;
}

void addSample(Bytes& bytes, std::int16_t value, SampleFormat format) {
    switch (format) {
        case SampleFormat::Int8:
            bytes.little(static_cast<std::uint64_t>((value >> 8) + 128), 1);
            break;
        case SampleFormat::Int16:
            bytes.little(static_cast<std::uint16_t>(value), 2);
            break;
        case SampleFormat::Int24:
            bytes.little(static_cast<std::uint32_t>(value * 256 + 77), 3);
            break;
        case SampleFormat::Float32: {
            const float sample = static_cast<float>(value) / 20000.0f;
            std::uint32_t bits = 0;
            std::memcpy(&bits, &sample, sizeof bits);
            bytes.little(bits, 4);
            break;
        }
    }
}

void addBigSamples(Bytes& bytes, int channels, std::int64_t frames) {
    for (std::int64_t n = 0; n < frames; ++n) {
        for (int c = 0; c < channels; ++c) {
            bytes.big(static_cast<std::uint16_t>(codedSample(n, c)), 2);
        }
    }
}

}  // namespace

std::vector<std::uint8_t> waveFile(int channels, int rate, std::int64_t frames, SampleFormat format) {
    const int width = bytesOf(format);
    const auto block = static_cast<std::uint64_t>(width * channels);
    Bytes data;
    for (std::int64_t n = 0; n < frames; ++n) {
        for (int c = 0; c < channels; ++c) {
            addSample(data, codedSample(n, c), format);
        }
    }
    Bytes file;
    file.text("RIFF").little(36 + data.get().size(), 4).text("WAVEfmt ").little(16, 4);
    file.little(format == SampleFormat::Float32 ? 3 : 1, 2).little(static_cast<std::uint64_t>(channels), 2);
    file.little(static_cast<std::uint64_t>(rate), 4).little(static_cast<std::uint64_t>(rate) * block, 4);
    file.little(block, 2).little(static_cast<std::uint64_t>(8 * width), 2);
    file.text("data").little(data.get().size(), 4).add(data.get());
    return file.get();
}

std::vector<std::uint8_t> aiffFile(int channels, int rate, std::int64_t frames) {
    Bytes common;
    common.big(static_cast<std::uint64_t>(channels), 2).big(static_cast<std::uint64_t>(frames), 4).big(16, 2);
    int exponent = 0;
    while ((rate >> exponent) > 1) {
        ++exponent;
    }
    common.big(static_cast<std::uint64_t>(16383 + exponent), 2)
        .big(static_cast<std::uint64_t>(rate) << (63 - exponent), 8);
    Bytes sound;
    sound.big(0, 8);
    addBigSamples(sound, channels, frames);
    Bytes file;
    file.text("FORM").big(4 + 26 + 8 + sound.get().size(), 4).text("AIFF");
    file.text("COMM").big(18, 4).add(common.get()).text("SSND").big(sound.get().size(), 4).add(sound.get());
    return file.get();
}

std::vector<std::uint8_t> cafFile(int channels, int rate, std::int64_t frames) {
    const auto frameBytes = static_cast<std::uint64_t>(2 * channels);
    const double exactRate = rate;
    std::uint64_t rateBits = 0;
    std::memcpy(&rateBits, &exactRate, sizeof rateBits);
    Bytes file;
    file.text("caff").big(1, 2).big(0, 2).text("desc").big(32, 8).big(rateBits, 8).text("lpcm").big(0, 4);
    file.big(frameBytes, 4).big(1, 4).big(static_cast<std::uint64_t>(channels), 4).big(16, 4);
    file.text("data").big(4 + frameBytes * static_cast<std::uint64_t>(frames), 8).big(0, 4);
    addBigSamples(file, channels, frames);
    return file.get();
}

std::vector<std::uint8_t> box(const std::string& type, const std::vector<std::uint8_t>& content) {
    return Bytes().big(8 + content.size(), 4).text(type).add(content).get();
}

bool encode(const std::string& arguments, const std::string& output) {
    const std::string command = "ffmpeg -v quiet -nostdin -y " + arguments + " '" + output + "'";
    return std::system(command.c_str()) == 0;
}

std::vector<float> decodedByProgram(const std::string& path) {
    const std::string command = "ffmpeg -v quiet -nostdin -i '" + path + "' -map 0:a:0 -f f32le -";
    std::vector<float> samples;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    std::vector<float> block(65536);
    while (const std::size_t got = pipe ? std::fread(block.data(), sizeof(float), block.size(), pipe) : 0) {
        samples.insert(samples.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(got));
    }
    if (pipe) {
        ::pclose(pipe);
    }
    return samples;
}

std::vector<float> readLinearly(SoundReader& sound, std::size_t step) {
    const auto length = static_cast<std::size_t>(sound.length());
    std::vector<float> whole(2 * length);
    for (std::size_t at = 0; at < length; at += step) {
        sound.read(static_cast<std::int64_t>(at), whole.data() + 2 * at, std::min(step, length - at));
    }
    return whole;
}

std::unique_ptr<SoundReader> openSound(const std::string& path) {
    auto opened = openMedia(path);
    return opened ? std::move(opened.value().sound) : nullptr;
}

namespace {

bool differs(SoundReader& sound, const std::vector<float>& whole, std::size_t first, std::size_t count) {
    std::vector<float> part(2 * count, 9.0f);
    return !sound.read(static_cast<std::int64_t>(first), part.data(), count) ||
           !std::equal(part.begin(), part.end(), whole.begin() + static_cast<std::ptrdiff_t>(2 * first));
}

}  // namespace

int countWrongSeeks(SoundReader& sound, const std::vector<float>& whole) {
    const std::size_t length = whole.size() / 2;
    std::mt19937 random(7);
    int wrong = 0;
    for (int i = 0; i < 40 && length > 0; ++i) {
        const std::size_t first = random() % length;
        wrong += differs(sound, whole, first, std::min<std::size_t>(length - first, 1 + random() % 6000)) ? 1 : 0;
    }
    return wrong + (length > 0 && differs(sound, whole, 0, std::min<std::size_t>(length, 100)) ? 1 : 0);
}

int countWrongChunksBackward(SoundReader& sound, const std::vector<float>& whole) {
    constexpr std::size_t kChunk = 16384;
    const std::size_t length = whole.size() / 2;
    int wrong = 0;
    for (std::size_t chunk = (length + kChunk - 1) / kChunk; chunk > 0; --chunk) {
        const std::size_t first = (chunk - 1) * kChunk;
        wrong += differs(sound, whole, first, std::min(kChunk, length - first)) ? 1 : 0;
    }
    return wrong;
}

}  // namespace qm::test
