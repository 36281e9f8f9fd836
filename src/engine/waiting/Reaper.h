// Ends what is not wanted any more, each thing on a thread of its own, because an end may have to wait for a sound
// device or a file that never answers. Whoever hands it over goes on at once. Any thread. What does not end stands in
// the log.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>

namespace qm {

class Reaper {
public:
    Reaper();
    ~Reaper();  // waits for what is still ending, but not for ever
    Reaper(const Reaper&) = delete;
    Reaper& operator=(const Reaper&) = delete;

    template <typename T>
    void end(T object) {
        auto held = std::make_shared<T>(std::move(object));
        run([held = std::move(held)]() mutable { held.reset(); });
    }

    std::size_t ending() const;  // what was handed over and has not ended yet

private:
    using Clock = std::chrono::steady_clock;

    // Shared with the threads, which may outlive the reaper.
    struct Census {
        std::mutex mutex;
        std::condition_variable changed;
        std::multiset<Clock::time_point> begun;
    };

    void run(std::function<void()> end);
    void logWhatHangs(Clock::time_point now) const;

    const std::shared_ptr<Census> m_census;
};

}  // namespace qm
