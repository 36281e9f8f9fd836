#include "engine/movie/FileEngine.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <limits>

#include "engine/api/Aside.h"
#include "engine/api/Log.h"

namespace qm {

namespace {

// The times of the low-level calls are signed 32-bit counts of frames.
constexpr std::int32_t kMostFrames = std::numeric_limits<std::int32_t>::max();

// In words that end a sentence about the movie.
std::string tooLong(int sampleRate) {
    const int minutes = kMostFrames / sampleRate / 60;
    const auto counted = [](int count, const char* what) {
        return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
    };
    const std::string hours = minutes >= 60 ? counted(minutes / 60, "hour") + " and " : "";
    char rate[32];
    std::snprintf(rate, sizeof rate, "%g", sampleRate / 1000.0);
    return "is too long to be played: " + hours + counted(minutes % 60, "minute") + " is the most at " + rate + " kHz";
}

// Watches whether a file is still being read.
class Silence {
public:
    explicit Silence(const std::atomic<std::uint64_t>& reads) : m_reads(reads) {}

    bool isLong() {
        const auto now = std::chrono::steady_clock::now();
        if (const std::uint64_t reads = m_reads; reads != m_seen) {
            m_seen = reads;
            m_since = now;
        }
        return now - m_since > kLongest;
    }

private:
    static constexpr std::chrono::seconds kLongest{5};

    const std::atomic<std::uint64_t>& m_reads;
    std::uint64_t m_seen = 0;
    std::chrono::steady_clock::time_point m_since = std::chrono::steady_clock::now();
};

}  // namespace

FileEngine::FileEngine(MovieRegistry& movies, OutputFactory openOutput, Patience patience)
    : m_movies(movies),
      m_openOutput(std::move(openOutput)),
      m_patience(std::move(patience)),
      m_reaper(std::make_shared<Reaper>()) {}

// Most files are open in a moment; one without an index is read to its end. What is given up may hang for ever.
Result<OpenedMedia> FileEngine::open(const std::string& path) {
    if (!m_patience) return openMedia(path);
    m_isGivenUp = false;
    const auto reads = std::make_shared<std::atomic<std::uint64_t>>(0);
    auto opening = aside([path, reads] { return openMedia(path, reads); });
    Silence silence(*reads);
    m_patience([&](std::chrono::milliseconds longest) {
        return m_isGivenUp || opening.wait_for(longest) == std::future_status::ready || silence.isLong();
    });
    if (opening.wait_for(std::chrono::seconds(0)) == std::future_status::ready) return opening.get();
    m_reaper->end(std::move(opening));
    if (m_isGivenUp) return Error{ErrorCategory::GivenUp, path + ": not wanted any more"};
    return Error{ErrorCategory::NoAnswer, path + ": does not answer"};
}

Result<std::unique_ptr<QTMovie>> FileEngine::movieWithFile(const std::string& path) {
    auto opened = open(path);
    if (!opened) {
        qmLog("cannot open " + path + ": " + opened.error().message);
        return opened.error();
    }
    const SoundReader* sound = opened.value().sound.get();
    if (sound && sound->length() > kMostFrames) {
        Error error{ErrorCategory::TooLong, tooLong(sound->sampleRate())};
        m_reaper->end(std::move(opened));
        return error;
    }
    return std::unique_ptr<QTMovie>(
        std::make_unique<FileMovie>(m_movies, m_reaper, std::move(opened.value()), m_openOutput));
}

}  // namespace qm
