#include "engine/video/VideoThread.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "engine/api/Log.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr auto kNever = std::chrono::steady_clock::time_point::max();
constexpr double kLongestNap = 0.25;  // seconds, while the clock runs
constexpr double kShortestNap = 0.0003;
constexpr double kStanding = 0.005;   // seconds without a movement: the clock is not running
constexpr double kLongestStep = 0.2;  // or goes on in steps, up to so many seconds
constexpr double kLook = 0.01;        // seconds between looks at a clock that does not do yet as it was told
constexpr int kLooks = 40;            // until it surely does
constexpr double kLateLook = 0.1;     // between looks at one that should run and stands still

bool hasEnded(const VideoMoment& moment) {
    constexpr double kRounding = 0.001;
    if (moment.loops) {
        return false;
    }
    return moment.rate > 0 ? moment.seconds > moment.rangeEnd - kRounding : moment.seconds < kRounding;
}

}  // namespace

VideoThread::VideoThread(VideoOpener open, VideoClock clock)
    : m_clock(std::move(clock)),
      m_server(std::move(open), kBudget),
      m_decoder([this] { decode(); }),
      m_presenter([this] { present(); }) {}

VideoThread::~VideoThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
        m_viewer.reset();
    }
    m_decode.notify_one();
    m_present.notify_one();
    m_presenter.join();
    m_decoder.join();
}

void VideoThread::setViewer(std::optional<PictureViewer> viewer) {
    {
        const std::lock_guard lock(m_mutex);
        m_viewer = std::move(viewer);
        m_clockChanged = m_decodingWanted = true;
        if (!m_viewer) {
            m_schedule.pictures.clear();
        }
    }
    m_decode.notify_one();
    m_present.notify_one();
}

void VideoThread::clockChanged() {
    {
        const std::lock_guard lock(m_mutex);
        m_clockChanged = m_decodingWanted = true;
    }
    m_decode.notify_one();
    m_present.notify_one();
}

std::shared_ptr<const VideoPicture> VideoThread::picture() const {
    const std::lock_guard lock(m_mutex);
    return m_picture;
}

void VideoThread::decode() {
    PictureSize place;
    while (awaitDecoding(place)) {
        if (!m_server.isReadable()) {
            qmLog("the pictures of the film cannot be read");
            return;
        }
        m_server.setPlace(place);
        const VideoMoment moment = m_clock();
        if (!m_server.prepare(moment)) {
            if (m_server.work(moment)) {
                const std::lock_guard lock(m_mutex);
                m_decodingWanted = true;
            }
            continue;
        }
        {
            const std::lock_guard lock(m_mutex);
            m_decodingWanted = true;
            m_schedule = m_server.schedule();
            m_scheduleChanged = true;
        }
        m_present.notify_one();
    }
}

// Sleeps until there may be something to do; while nobody watches, for as long as that lasts. False when the thread is
// to end.
bool VideoThread::awaitDecoding(PictureSize& place) {
    std::unique_lock lock(m_mutex);
    m_decode.wait(lock, [this] { return m_closing || m_decodingWanted; });
    while (!m_viewer && !m_closing) {
        lock.unlock();
        m_server.forget();
        lock.lock();
        m_decode.wait(lock, [this] { return m_closing || m_viewer; });
    }
    m_decodingWanted = false;
    if (m_viewer) {
        place = {m_viewer->width, m_viewer->height};
    }
    return !m_closing;
}

void VideoThread::present() {
    preferThisThread(Urgency::Soon);
    Instant due = kNever;
    while (awaitDue(due)) {
        const Instant asked = std::chrono::steady_clock::now();
        due = show(m_clock(), asked);
    }
}

// Sleeps until then, or until something is different. False when the thread is to end.
bool VideoThread::awaitDue(Instant due) {
    std::unique_lock lock(m_mutex);
    const auto changed = [this] { return m_closing || (m_viewer && (m_clockChanged || m_scheduleChanged)); };
    if (due == kNever || !m_viewer) {
        m_present.wait(lock, changed);
    } else {
        m_present.wait_until(lock, due, changed);
    }
    if (m_clockChanged) {
        m_looksLeft = kLooks;
    }
    m_clockChanged = m_scheduleChanged = false;
    return !m_closing;
}

// Shows what is due at the moment, which was asked for at that instant, and says when to come again.
VideoThread::Instant VideoThread::show(const VideoMoment& moment, Instant asked) {
    const bool moves = moment.seconds != m_lastMoment.seconds;
    m_lastMoment = moment;
    m_lastMoved = moves ? asked : m_lastMoved;
    const double stands = Seconds(asked - m_lastMoved).count();
    m_looksLeft = std::max(m_looksLeft - 1, 0);
    double nap = kLongestNap;
    {
        const std::lock_guard lock(m_mutex);
        const ReadyPicture* ready = m_schedule.at(moment);
        if (ready && ready->picture && ready->picture != m_picture) {
            m_picture = ready->picture;
            if (m_viewer && m_viewer->changed) {
                m_viewer->changed();
            }
        }
        m_decodingWanted = m_decodingWanted || moves;
        nap = std::clamp(m_schedule.secondsToChange(moment), kShortestNap, kLongestNap);
    }
    if (moves) {
        m_decode.notify_one();
    } else if (stands > kStanding) {
        if (m_looksLeft == 0 && (moment.rate == 0 || hasEnded(moment))) {
            return kNever;
        }
        // The clock of some devices goes on in steps that are longer than a picture.
        nap = m_looksLeft > 0 || stands < kLongestStep ? kLook : std::max(nap, kLateLook);
    }
    if (moment.rate == 0) {
        nap = kLook;
    }
    return asked + std::chrono::duration_cast<std::chrono::steady_clock::duration>(Seconds(nap));
}

}  // namespace qm
