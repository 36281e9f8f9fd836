#include "engine/waiting/Reaper.h"

#include <string>
#include <thread>

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr std::chrono::seconds kSoon{5};  // an end that takes longer hangs

}  // namespace

Reaper::Reaper() : m_census(std::make_shared<Census>()) {}

Reaper::~Reaper() {
    std::unique_lock lock(m_census->mutex);
    if (!m_census->changed.wait_for(lock, kSoon, [this] { return m_census->begun.empty(); }))
        qmLog(std::to_string(m_census->begun.size()) + " closed things have not ended and are left behind");
}

std::size_t Reaper::ending() const {
    const std::lock_guard lock(m_census->mutex);
    return m_census->begun.size();
}

void Reaper::run(std::function<void()> end) {
    const auto now = Clock::now();
    {
        const std::lock_guard lock(m_census->mutex);
        logWhatHangs(now);
        m_census->begun.insert(now);
    }
    std::thread([census = m_census, now, end = std::move(end)]() mutable {
        end();
        end = nullptr;
        const std::lock_guard lock(census->mutex);
        census->begun.erase(census->begun.find(now));
        census->changed.notify_all();
    }).detach();
}

// Said when the next one is handed over: a pile grows only so.
void Reaper::logWhatHangs(Clock::time_point now) const {
    const auto hanging = std::distance(m_census->begun.begin(), m_census->begun.lower_bound(now - kSoon));
    if (hanging > 0)
        qmLog(std::to_string(hanging) + " closed things do not end: a sound device or a file does not answer");
}

}  // namespace qm
