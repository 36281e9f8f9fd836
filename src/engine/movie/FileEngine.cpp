#include "engine/movie/FileEngine.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cstdio>
#include <cstring>
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

FileEngine::FileEngine(OutputFactory openOutput, Patience patience)
    : m_openOutput(std::move(openOutput)),
      m_patience(std::move(patience)),
      m_registry(std::make_shared<MovieRegistry>()) {}

FileEngine::~FileEngine() = default;

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
    m_registry->reaper.end(std::move(opening));
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
        m_registry->reaper.end(std::move(opened));
        return error;
    }
    return std::unique_ptr<QTMovie>(
        std::make_unique<FileMovie>(++m_lastHandle, m_registry, std::move(opened.value()), m_openOutput));
}

// The worst of the movies that live: most of the time there is one.
std::optional<SoundOutput> FileEngine::soundOutput() const {
    std::optional<SoundOutput> worst;
    for (const auto& [handle, movie] : m_registry->movies)
        if (const auto state = movie->renderThread().soundOutput())
            worst = std::max(worst.value_or(SoundOutput::Works), *state);
    return worst;
}

FileMovie* FileEngine::find(Movie movie) const {
    assert(m_mainThread.isHere());
    const auto found = m_registry->movies.find(movie);
    return found == m_registry->movies.end() ? nullptr : found->second;
}

std::int32_t FileEngine::GetMovieDuration(Movie movie) {
    const FileMovie* found = find(movie);
    return found ? static_cast<std::int32_t>(found->duration().timeValue) : 0;
}

std::int32_t FileEngine::GetMovieTime(Movie movie) {
    const FileMovie* found = find(movie);
    return found ? static_cast<std::int32_t>(found->currentTime().timeValue) : 0;
}

void FileEngine::SetMovieTimeValue(Movie movie, std::int32_t time) {
    if (FileMovie* found = find(movie)) found->seekTo(time);
}

bool FileEngine::IsMovieDone(Movie movie) {
    const FileMovie* found = find(movie);
    return found && found->isDone();
}

OSErr FileEngine::QTSetMovieProperty(Movie movie, std::uint32_t propertyClass, std::uint32_t propertyId,
                                     std::uint32_t size, const void* value) {
    FileMovie* found = find(movie);
    if (!found) return kInvalidMovie;
    if (propertyClass != kQTPropertyClass_Audio || propertyId != kQTAudioPropertyID_Pitch || size != sizeof(float))
        return kUnknownProperty;
    float cents = 0;
    std::memcpy(&cents, value, sizeof cents);
    found->setPitch(cents);
    return kNoErr;
}

OSErr FileEngine::SetMovieAudioBalance(Movie movie, float balance, std::uint32_t) {
    FileMovie* found = find(movie);
    if (!found) return kInvalidMovie;
    found->setBalance(balance);
    return kNoErr;
}

int FileEngine::soundTrackCount(Movie movie) {
    const FileMovie* found = find(movie);
    return found && found->hasSound() ? 1 : 0;
}

OSErr FileEngine::MediaSetSoundBassAndTreble(Movie movie, int soundTrack, std::int16_t bass, std::int16_t treble) {
    FileMovie* found = find(movie);
    if (!found || soundTrack != 0 || !found->hasSound()) return kInvalidMovie;
    found->setTone({bass, treble});
    return kNoErr;
}

}  // namespace qm
