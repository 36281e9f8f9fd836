#include "engine/capture/MovieFileWriter.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <thread>
#include <utility>

#include "engine/capture/MovieHeader.h"

namespace qm {

namespace {

constexpr std::size_t kBlockFrames = 4096;
constexpr int kHeadersPerSecond = 2;

std::int16_t in16Bits(float sample) {
    if (std::isnan(sample)) return 0;
    return static_cast<std::int16_t>(std::lrint(std::clamp(sample * 32768.0f, -32768.0f, 32767.0f)));
}

void putLittleEndian(char*& target, std::int16_t sample) {
    const auto bits = static_cast<std::uint16_t>(sample);
    *target++ = static_cast<char>(bits & 0xFF);
    *target++ = static_cast<char>(bits >> 8);
}

Error systemError() {
    return {ErrorCategory::Unwritable, std::strerror(errno)};
}

// How many of the bytes were written; fewer than asked for when the system refuses the rest, which errno explains.
std::size_t writeAt(int descriptor, std::int64_t position, const char* bytes, std::size_t count) {
    std::size_t written = 0;
    while (written < count) {
        const ssize_t part = pwrite(descriptor, bytes + written, count - written,
                                    static_cast<off_t>(position + static_cast<std::int64_t>(written)));
        if (part < 0 && errno == EINTR) continue;
        if (part <= 0) break;
        written += static_cast<std::size_t>(part);
    }
    return written;
}

}  // namespace

Result<std::unique_ptr<MovieFileWriter>> MovieFileWriter::create(const std::string& path, int sampleRate) {
    const int descriptor = open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor < 0) return systemError();
    const std::string folder = std::filesystem::path(path).parent_path();
    std::unique_ptr<MovieFileWriter> writer(new MovieFileWriter(descriptor, sampleRate, folder.empty() ? "." : folder));
    writer->m_soundBegins = static_cast<std::int64_t>(movieHeader({sampleRate, 0, false}).size());
    if (!writer->writeHeader(false)) return systemError();
    return writer;
}

MovieFileWriter::~MovieFileWriter() {
    finish();
}

std::optional<Error> MovieFileWriter::append(std::span<const StereoFrame> frames) {
    while (!frames.empty()) {
        const auto block = frames.first(std::min(frames.size(), kBlockFrames));
        if (auto error = appendBlock(block)) return error;
        frames = frames.subspan(block.size());
    }
    const auto due = static_cast<std::uint32_t>(m_sampleRate / kHeadersPerSecond);
    if (m_frames - m_framesInHeader < due) return std::nullopt;
    syncSound();
    if (!writeHeader(false)) return systemError();
    return std::nullopt;
}

std::optional<Error> MovieFileWriter::appendBlock(std::span<const StereoFrame> frames) {
    const std::uint32_t room = std::numeric_limits<std::uint32_t>::max() - m_frames;
    if (frames.size() > room) return Error{ErrorCategory::Unwritable, "the recording is as long as a movie can be"};
    std::array<char, kBlockFrames* kRecordedFrameBytes> bytes = {};
    char* end = bytes.data();
    for (const StereoFrame& frame : frames) {
        putLittleEndian(end, in16Bits(frame.left));
        putLittleEndian(end, in16Bits(frame.right));
    }
    const auto count = static_cast<std::size_t>(end - bytes.data());
    const std::int64_t position = m_soundBegins + std::int64_t{m_frames} * kRecordedFrameBytes;
    const std::size_t written = writeAt(m_descriptor, position, bytes.data(), count);
    m_frames += static_cast<std::uint32_t>(written / kRecordedFrameBytes);
    if (written < count) return systemError();
    return std::nullopt;
}

bool MovieFileWriter::writeHeader(bool finished) {
    const std::string header = movieHeader({m_sampleRate, m_frames, finished});
    if (writeAt(m_descriptor, 0, header.data(), header.size()) < header.size()) return false;
    m_framesInHeader = m_frames;
    return true;
}

// A file system that cannot do it is no reason to stop recording.
void MovieFileWriter::syncSound() {
    fdatasync(m_descriptor);
    if (m_folder.empty()) return;
    const int folder = open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        fsync(folder);
        close(folder);
    }
    m_folder.clear();
}

void MovieFileWriter::finish() {
    if (m_descriptor < 0) return;
    writeHeader(true);
    const std::int64_t end = m_soundBegins + std::int64_t{m_frames} * kRecordedFrameBytes;
    [[maybe_unused]] const int cut = ftruncate(m_descriptor, static_cast<off_t>(end));
    const int descriptor = std::exchange(m_descriptor, -1);
    std::thread([descriptor] {
        fsync(descriptor);
        close(descriptor);
    }).detach();
}

}  // namespace qm
