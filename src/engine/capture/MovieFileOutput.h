// Takes a session's sound on the device's thread and writes it to a movie file on one of its own. Between the two
// stands a ring of some seconds; frames that find it full are lost, counted and logged.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "engine/api/Patience.h"
#include "engine/api/QTCapture.h"
#include "engine/capture/MovieFileWriter.h"
#include "engine/capture/SoundInput.h"
#include "engine/realtime/SpscRing.h"

namespace qm {

class MovieFileOutput : public QTCaptureMovieFileOutput, public InputSink {
public:
    static constexpr std::size_t kRingFrames = 1 << 19;  // 10.9 s at 48000

    // With `patience`, a file that does not answer for three seconds is left to finish by itself.
    explicit MovieFileOutput(Patience patience = {});
    ~MovieFileOutput() override;  // finishes the file, however long that takes

    // Main thread.
    void recordToOutputFileURL(const std::optional<std::string>& path) override;
    std::optional<Error> error() const override;
    void setSampleRate(int sampleRate) {
        m_sampleRate = sampleRate;
    }  // while no sound comes; before a recording begins

    // The device's threads.
    void take(std::span<const StereoFrame> frames) noexcept override;
    void inputLost() noexcept override { m_inputLost.store(true); }

private:
    void begin(const std::string& path);
    void finish();
    bool hasEnded(std::chrono::milliseconds longest);
    void write(MovieFileWriter& file);
    bool waitForMore();
    bool writeWhatCame(MovieFileWriter& file);
    void logLostFrames(int& logged) const;
    void endWith(Error error);

    const Patience m_patience;
    int m_sampleRate = 0;  // 0 while no input is known

    // Device to writer thread.
    SpscRing<StereoFrame> m_ring;
    std::atomic<bool> m_recording{false};
    std::atomic<bool> m_inputLost{false};
    std::atomic<int> m_lostFrames{0};

    mutable std::mutex m_mutex;
    std::condition_variable m_stopped;
    bool m_stop = false;
    bool m_ended = true;  // the thread has done what it had to do
    std::optional<Error> m_error;
    std::vector<StereoFrame> m_block;  // writer thread
    std::thread m_thread;
};

}  // namespace qm
