// Media files for the tests: written here byte by byte, or encoded by the ffmpeg program.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/media/SoundReader.h"

namespace qm::test {

class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(const std::string& name) const { return (m_path / name).string(); }
    std::string write(const std::string& name, const std::vector<std::uint8_t>& bytes) const;

private:
    std::filesystem::path m_path;
};

// Bytes in the order they are added.
class Bytes {
public:
    Bytes& text(const std::string& text);
    Bytes& little(std::uint64_t value, int bytes);
    Bytes& big(std::uint64_t value, int bytes);
    Bytes& add(const std::vector<std::uint8_t>& bytes);
    Bytes& repeat(std::uint8_t value, std::size_t count);
    const std::vector<std::uint8_t>& get() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

// A sample that says where it came from: no two places within hundreds of frames sound alike.
std::int16_t codedSample(std::int64_t frame, int channel);

enum class SampleFormat { Int8, Int16, Int24, Float32 };
std::vector<std::uint8_t> waveFile(int channels, int rate, std::int64_t frames, SampleFormat format);
std::vector<std::uint8_t> aiffFile(int channels, int rate, std::int64_t frames);  // 16 bits
std::vector<std::uint8_t> cafFile(int channels, int rate, std::int64_t frames);   // 16 bits

// A box of a movie file around its content.
std::vector<std::uint8_t> box(const std::string& type, const std::vector<std::uint8_t>& content);

// Runs it; `arguments` go between the general options and the output file.
bool encode(const std::string& arguments, const std::string& output);
// What it decodes the first sound track to, interleaved in its own channels.
std::vector<float> decodedByProgram(const std::string& path);

std::vector<float> readLinearly(SoundReader& sound, std::size_t step = 5000);
std::unique_ptr<SoundReader> openSound(const std::string& path);  // null when it does not open or has none

// The number of random reads, and of chunks read backward, that differ from the whole.
int countWrongSeeks(SoundReader& sound, const std::vector<float>& whole);
int countWrongChunksBackward(SoundReader& sound, const std::vector<float>& whole);

}  // namespace qm::test
