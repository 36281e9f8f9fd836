#include "engine/render/RenderThread.h"

#include <cassert>
#include <chrono>
#include <cmath>

#include "engine/api/Log.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr std::chrono::microseconds kCoalescing{400};
// How long it sleeps when everything is done. A request wakes it; the lane, a fifth of which is played meanwhile,
// waits.
constexpr std::chrono::milliseconds kPlayingNap{30};
constexpr std::chrono::milliseconds kPlayOutNap{10};  // a device that has played out is silent until it is looked at
constexpr std::chrono::milliseconds kRestingNap{500};

std::size_t framesOf(double seconds, int sampleRate) {
    return static_cast<std::size_t>(std::llround(seconds * sampleRate));
}

}  // namespace

RenderThread::RenderThread(std::unique_ptr<SoundReader> reader, OutputFactory openOutput)
    : m_cache(std::move(reader)),
      m_output(framesOf(2 * Reserve::mostLaneSeconds(), m_cache.sampleRate()), m_cache.sampleRate()),
      m_writer(m_cache, m_output),
      m_device(m_output, std::move(openOutput), m_cache.sampleRate()),
      m_thread([this] { run(); }) {}

RenderThread::~RenderThread() {
    close();
    m_thread.join();
}

void RenderThread::close() {
    m_output.setRunning(false);
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
        m_cache.close();
    }
    m_requested.notify_one();
}

void RenderThread::request(const Request& request) {
    assert(m_mainThread.isHere());
    {
        const std::lock_guard lock(m_mutex);
        if (request == m_request) return;
        m_request = request;
        ++m_requestCount;
        if (!request.moves()) m_output.setRunning(false);
        m_cache.interrupt();
    }
    m_requested.notify_one();
}

// The sound is looked at first: a seek that comes in between is then one that is not heard yet.
double RenderThread::heard() const {
    const auto heard = m_device.heard();
    const std::lock_guard lock(m_mutex);
    const std::uint64_t seekHeard = heard ? heard->lane.request : 0;
    if (seekHeard != m_request.seek) return static_cast<double>(m_request.seekTarget);
    return heard ? heard->lane.playhead.positionAt(heard->step) : 0;
}

RenderThread::Request RenderThread::newestRequest() const {
    const std::lock_guard lock(m_mutex);
    return m_request;
}

std::uint64_t RenderThread::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requestCount;
}

bool RenderThread::isCaughtUp() const {
    const std::lock_guard lock(m_mutex);
    return m_caughtUpWith == m_requestCount;
}

std::size_t RenderThread::framesAhead() const {
    return framesOf(m_device.laneSeconds(), sampleRate());
}

void RenderThread::run() {
    preferThisThread(Urgency::Soon);
    Request request;
    m_device.open();
    while (waitForWork(request)) {
        m_device.watch();
        if (m_device.rendererIsTooLate() && m_writer.lighten())
            qmLog(
                "time stretch: the machine cannot keep up; going on with the "
                "lighter setting");
        if (!m_device.isStarted()) m_output.settleWhileStopped();
        m_writer.follow(request);
        if (m_writer.isInForce()) applyRunning(request);
        if (m_writer.waitsForSplice() && !m_writer.canWriteOn(framesAhead()))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        m_writer.writeOn(framesAhead());
        if (!m_device.isStarted()) m_output.settleWhileStopped();
    }
    m_device.close();
}

// Takes the newest request. Waits while there is nothing to do; false when the thread is to end.
bool RenderThread::waitForWork(Request& request) {
    std::unique_lock lock(m_mutex);
    if (!isBusy() && m_requestCount == m_seenRequests && !m_closing) {
        m_caughtUpWith = m_seenRequests;
        const auto nap = !m_device.isStarted() ? kRestingNap : m_device.isPlayingOut() ? kPlayOutNap : kPlayingNap;
        m_requested.wait_for(lock, nap, [&] { return m_closing || m_requestCount != m_seenRequests; });
    }
    // One action of the user is often several requests in a row: they are rendered as one.
    while (m_requestCount != m_seenRequests && !m_closing) {
        m_seenRequests = m_requestCount;
        lock.unlock();
        std::this_thread::sleep_for(kCoalescing);
        lock.lock();
    }
    request = m_request;
    if (!m_closing) m_cache.resume();
    return !m_closing;
}

bool RenderThread::isBusy() const {
    const bool starting = m_request.moves() && !m_output.isRunning();
    return !m_writer.isInForce() || m_writer.canWriteOn(framesAhead()) || starting;
}

// Opens the gate to play, and lets the device rest after a while of silence. The device may have to wait for a sound
// server: no lock is held then.
void RenderThread::applyRunning(const Request& request) {
    if (!request.moves()) return m_device.leaveAlone();
    if (m_device.startToPlay()) openGate();
}

// Unless a newer request has closed it meanwhile.
void RenderThread::openGate() {
    const std::lock_guard lock(m_mutex);
    if (m_requestCount == m_seenRequests) m_output.setRunning(true);
}

}  // namespace qm
