#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "engine/output/AudioOutput.h"

namespace qm {

namespace {

class NullOutput : public AudioOutput {
public:
    NullOutput(int sampleRate, OutputSource& source) : m_sampleRate(sampleRate), m_source(source) {}
    ~NullOutput() override { stop(); }

    bool start() override {
        if (m_thread.joinable()) return true;
        m_running = true;
        m_thread = std::thread([this] { run(); });
        return true;
    }

    void stop() override {
        m_running = false;
        if (m_thread.joinable()) m_thread.join();
    }

    std::int64_t framesPlayed() const override { return m_played; }
    bool isSilent() const override { return true; }

private:
    void run() {
        using Clock = std::chrono::steady_clock;
        const auto begin = Clock::now();
        std::int64_t played = 0;
        std::array<StereoFrame, 1024> block;
        while (m_running) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            const std::chrono::duration<double> elapsed = Clock::now() - begin;
            const auto due = static_cast<std::int64_t>(elapsed.count() * m_sampleRate);
            while (played < due && m_running) {
                const auto count = std::min<std::int64_t>(due - played, std::int64_t(block.size()));
                m_source.fill({block.data(), static_cast<std::size_t>(count)});
                played += count;
                m_played += count;
            }
        }
    }

    const int m_sampleRate;
    OutputSource& m_source;
    std::atomic<bool> m_running{false};
    std::atomic<std::int64_t> m_played{0};
    std::thread m_thread;
};

}  // namespace

Result<std::unique_ptr<AudioOutput>> openNullOutput(int sampleRate, OutputSource& source) {
    return std::unique_ptr<AudioOutput>(std::make_unique<NullOutput>(sampleRate, source));
}

}  // namespace qm
