// A movie file that grows by sound and is a whole movie at every moment: the sound is appended, and twice a second the
// header in front of it is written over in place. Before the header counts a frame, the frame is on the disk, so that a
// machine that stops leaves a movie, too. Its memory does not grow. One thread at a time, which waits for the disk.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "engine/api/Result.h"
#include "engine/sound/StereoFrame.h"

namespace qm {

class MovieFileWriter {
public:
    // Makes the file anew. `path` is in the file system's own encoding; sampleRate in frames a second, up to 65535.
    static Result<std::unique_ptr<MovieFileWriter>> create(const std::string& path, int sampleRate);

    ~MovieFileWriter();  // finishes the file
    MovieFileWriter(const MovieFileWriter&) = delete;
    MovieFileWriter& operator=(const MovieFileWriter&) = delete;

    // As 16-bit samples; what exceeds -1 to 1 is clipped. After an error nothing more can be appended, and the frames
    // that reached the file count.
    std::optional<Error> append(std::span<const StereoFrame> frames);

    // Ends the file with the last frame that reached it. The last of it goes to the disk on a thread that nobody waits
    // for.
    void finish();

    std::uint32_t frames() const { return m_frames; }

private:
    MovieFileWriter(int descriptor, int sampleRate, std::string folder)
        : m_descriptor(descriptor), m_folder(std::move(folder)), m_sampleRate(sampleRate) {}

    std::optional<Error> appendBlock(std::span<const StereoFrame> frames);
    bool writeHeader(bool finished);
    void syncSound();

    int m_descriptor;
    std::string m_folder;  // whose entry of the file is not on the disk yet; empty when it is
    const int m_sampleRate;
    std::int64_t m_soundBegins = 0;
    std::uint32_t m_frames = 0;
    std::uint32_t m_framesInHeader = 0;
};

}  // namespace qm
