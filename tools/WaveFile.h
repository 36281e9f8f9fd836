// The wave file that quillmere-render writes.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "engine/export/TargetFile.h"
#include "engine/render/Renderer.h"

namespace qm {

// Why nothing is to be written under this name; none if something may be.
std::optional<std::string> objectionTo(const std::string& output, const std::string& input);

// A wave file of 32-bit floats that has its name when it is complete, after close(), and leaves nothing otherwise.
class WaveFile {
public:
    WaveFile(const std::string& path, int sampleRate, std::int64_t frames);
    ~WaveFile() {
        if (m_file != nullptr) std::fclose(m_file);
    }
    WaveFile(const WaveFile&) = delete;
    WaveFile& operator=(const WaveFile&) = delete;

    bool isOpen() const { return m_file != nullptr; }
    bool write(std::span<const StereoFrame> frames) {
        return std::fwrite(frames.data(), sizeof(StereoFrame), frames.size(), m_file) == frames.size();
    }
    bool close() {
        const bool closed = std::fclose(std::exchange(m_file, nullptr)) == 0;
        return closed && !m_target->commit();
    }

private:
    void writeHeader(int sampleRate, std::int64_t frames);

    std::unique_ptr<TargetFile> m_target;
    std::FILE* m_file = nullptr;
};

}  // namespace qm
