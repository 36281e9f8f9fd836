#include "engine/video/VideoThread.h"

#include <algorithm>
#include <chrono>

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr double kLongestNap = 0.25;  // seconds, while the clock runs
constexpr double kLook = 0.01;        // seconds between looks at a clock that has been told to stop
constexpr int kLooks = 40;            // until it surely stands still

}  // namespace

VideoThread::VideoThread(VideoOpener open, VideoClock clock)
    : m_clock(std::move(clock)), m_server(std::move(open), kBudget), m_thread([this] { run(); }) {}

VideoThread::~VideoThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void VideoThread::setWatched(bool watched) {
    {
        const std::lock_guard lock(m_mutex);
        m_watched = watched;
        m_clockChanged = true;
    }
    m_changed.notify_one();
}

void VideoThread::clockChanged() {
    {
        const std::lock_guard lock(m_mutex);
        m_clockChanged = true;
    }
    m_changed.notify_one();
}

std::shared_ptr<const VideoPicture> VideoThread::picture() const {
    const std::lock_guard lock(m_mutex);
    return m_picture;
}

// Sleeps for so long at most, until something changes; while nobody watches, for as long as that lasts. False when the
// thread is to end.
bool VideoThread::awaitWork(double seconds) {
    std::unique_lock lock(m_mutex);
    const auto changed = [this] { return m_closing || m_clockChanged; };
    if (seconds > kLongestNap) {
        m_changed.wait(lock, changed);
    } else if (seconds > 0) {
        m_changed.wait_for(lock, std::chrono::duration<double>(seconds), changed);
    }
    while (!m_watched && !m_closing) {
        lock.unlock();
        m_server.forget();
        lock.lock();
        m_changed.wait(lock, [this] { return m_closing || m_watched; });
    }
    if (m_clockChanged) {
        m_restless = kLooks;
        m_clockChanged = false;
    }
    return !m_closing;
}

void VideoThread::run() {
    constexpr double kUntilChanged = 2 * kLongestNap;
    double nap = kUntilChanged;
    while (awaitWork(nap)) {
        if (!m_server.isReadable()) {
            qmLog("the pictures of the film cannot be read");
            return;
        }
        const VideoMoment moment = m_clock();
        serve();
        if (m_server.work(moment)) {
            nap = 0;
        } else if (moment.rate != 0) {
            nap = std::min(m_server.secondsToChange(m_clock()) + 0.0005, kLongestNap);
        } else {
            nap = m_restless-- > 0 ? kLook : kUntilChanged;
        }
    }
}

void VideoThread::serve() {
    auto picture = m_server.pictureAt(m_clock());
    if (!picture) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_picture = std::move(picture);
}

}  // namespace qm
