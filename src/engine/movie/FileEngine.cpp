#include "engine/movie/FileEngine.h"

#include <cassert>
#include <cstdio>
#include <cstring>
#include <future>
#include <limits>

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

}  // namespace

FileEngine::FileEngine(OutputFactory openOutput, Patience patience)
    : m_openOutput(std::move(openOutput)),
      m_patience(std::move(patience)),
      m_registry(std::make_shared<MovieRegistry>()) {}

FileEngine::~FileEngine() = default;

// Most files are open in a moment; one without an index is read to its end.
Result<OpenedMedia> FileEngine::open(const std::string& path) const {
    if (!m_patience) return openMedia(path);
    auto opening = std::async(std::launch::async, openMedia, path);
    m_patience(
        [&](std::chrono::milliseconds longest) { return opening.wait_for(longest) == std::future_status::ready; });
    return opening.get();
}

Result<std::unique_ptr<QTMovie>> FileEngine::movieWithFile(const std::string& path) {
    auto opened = open(path);
    if (!opened) {
        qmLog("cannot open " + path + ": " + opened.error().message);
        return opened.error();
    }
    const SoundReader* sound = opened.value().sound.get();
    if (sound && sound->length() > kMostFrames) return Error{ErrorCategory::TooLong, tooLong(sound->sampleRate())};
    return std::unique_ptr<QTMovie>(
        std::make_unique<FileMovie>(++m_lastHandle, m_registry, std::move(opened.value()), m_openOutput));
}

FileMovie* FileEngine::find(Movie movie) const {
    assert(m_mainThread.isHere());
    const auto found = m_registry->find(movie);
    return found == m_registry->end() ? nullptr : found->second;
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
