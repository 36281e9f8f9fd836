#include "engine/capture/MovieFileOutput.h"

#include <chrono>

#include "engine/api/Log.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr std::size_t kBlockFrames = 4096;
constexpr auto kPause = std::chrono::milliseconds(50);
constexpr std::chrono::seconds kLongestEnd{3};

}  // namespace

MovieFileOutput::MovieFileOutput(Patience patience)
    : m_patience(std::move(patience)), m_ring(kRingFrames), m_block(kBlockFrames) {}

MovieFileOutput::~MovieFileOutput() {
    finish();
    if (m_thread.joinable()) m_thread.join();
}

void MovieFileOutput::recordToOutputFileURL(const std::optional<std::string>& path) {
    finish();
    if (path) begin(*path);
}

std::optional<Error> MovieFileOutput::error() const {
    const std::lock_guard lock(m_mutex);
    return m_error;
}

void MovieFileOutput::begin(const std::string& path) {
    if (m_thread.joinable()) return endWith({ErrorCategory::NoAnswer, "the last recording is not finished"});
    m_error.reset();
    if (m_sampleRate == 0) return endWith({ErrorCategory::Device, "there is no sound input"});
    auto file = MovieFileWriter::create(path, m_sampleRate);
    if (!file) return endWith(file.error());
    m_ring.handOverProducer();  // nobody uses it now: the next device, and the next writer, may be other threads
    m_ring.discard();
    m_ring.handOverConsumer();
    m_lostFrames = 0;
    m_inputLost = false;
    m_stop = false;
    m_ended = false;
    m_recording = true;
    m_thread = std::thread([this, writer = std::move(file.value())] { write(*writer); });
}

void MovieFileOutput::finish() {
    if (!m_thread.joinable()) return;
    m_recording = false;
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_stopped.notify_all();
    const auto end = std::chrono::steady_clock::now() + kLongestEnd;
    if (m_patience) {
        m_patience([&](std::chrono::milliseconds longest) {
            return hasEnded(longest) || std::chrono::steady_clock::now() > end;
        });
        if (!hasEnded(std::chrono::milliseconds(0))) return qmLog("recording: the file does not answer");
    }
    m_thread.join();
    m_ring.handOverConsumer();
}

bool MovieFileOutput::hasEnded(std::chrono::milliseconds longest) {
    std::unique_lock lock(m_mutex);
    return m_stopped.wait_for(lock, longest, [this] { return m_ended; });
}

void MovieFileOutput::take(std::span<const StereoFrame> frames) noexcept {
    if (!m_recording) return;
    const std::size_t taken = m_ring.write(frames);
    if (taken < frames.size()) m_lostFrames += static_cast<int>(frames.size() - taken);
}

void MovieFileOutput::write(MovieFileWriter& file) {
    preferThisThread(Urgency::Soon);
    int lostFramesLogged = 0;
    bool more = true;
    while (more) {
        more = waitForMore();
        more = writeWhatCame(file) && more;
        logLostFrames(lostFramesLogged);
    }
    m_recording = false;
    file.finish();
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_stopped.notify_all();
}

// False when the next frames are the last.
bool MovieFileOutput::waitForMore() {
    {
        std::unique_lock lock(m_mutex);
        if (m_stopped.wait_for(lock, kPause, [this] { return m_stop; })) return false;
    }
    if (!m_inputLost) return true;
    endWith({ErrorCategory::Device, "the sound input has vanished"});
    return false;
}

bool MovieFileOutput::writeWhatCame(MovieFileWriter& file) {
    while (const std::size_t count = m_ring.read(m_block)) {
        if (const auto error = file.append({m_block.data(), count})) {
            endWith(*error);
            return false;
        }
    }
    return true;
}

void MovieFileOutput::logLostFrames(int& logged) const {
    const int lost = m_lostFrames;
    if (lost == logged) return;
    logged = lost;
    qmLog("recording: " + std::to_string(lost) + " frames lost, the file could not be written in time");
}

void MovieFileOutput::endWith(Error error) {
    qmLog("recording ended: " + error.message);
    const std::lock_guard lock(m_mutex);
    m_error = std::move(error);
}

}  // namespace qm
