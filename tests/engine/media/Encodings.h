// Files that the ffmpeg program encodes from one coded signal, and what must be so of each of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "MediaFiles.h"

namespace qm::test {

constexpr std::int64_t kEncodedFrames = 150011;  // of the signal, at 44100 Hz

struct Encoded {
    std::string arguments;  // SOURCE stands for the signal, which is the only input otherwise
    std::string name;
};

class Encodings {
public:
    Encodings();

    std::string make(const Encoded& encoded) const;  // the file's path
    const TemporaryFolder& folder() const { return m_folder; }

private:
    TemporaryFolder m_folder;
};

// Any stretch of it is the same however it is reached.
void checkExact(const std::string& path);

// What we read is what the program decodes, but for an overshoot at its end of at most `overshoot` frames.
void checkAgainstProgram(const std::string& path, std::int64_t overshoot = 0);

// Cut at many places, or with bytes of its beginning changed, it is shorter or refused, and never harmful.
void checkSurvivesSpoiling(const Encodings& encodings, const std::string& path);

}  // namespace qm::test
