#include "engine/render/RenderThread.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "engine/api/Log.h"
#include "engine/realtime/ThreadPriority.h"
#include "engine/render/Alignment.h"

namespace qm {

namespace {

constexpr std::size_t kBlock = 512;
constexpr double kFirstSeconds = 0.017;          // ready before a splice is published
constexpr double kStretchFirstSeconds = 0.025;   // the same while stretching, which is slower
constexpr double kStretchMarginSeconds = 0.035;  // played on while a stretched splice is prepared
constexpr double kNeutralMarginSeconds = 0.006;
constexpr double kFadeSeconds = 0.010;                       // cross-fade between two renderings of the same sound
constexpr double kTurnSeconds = 0.005;                       // cross-fade into the other direction
constexpr std::int64_t kLead = OutputCallback::kGateFrames;  // frames played before the target of a jump
constexpr std::chrono::microseconds kCoalescing{400};
// How long it sleeps when everything is done. A request wakes it; the lane, a fifth of which is played meanwhile,
// waits.
constexpr std::chrono::milliseconds kPlayingNap{30};
constexpr std::chrono::milliseconds kPlayOutNap{10};  // a device that has played out is silent until it is looked at
constexpr std::chrono::milliseconds kRestingNap{500};
constexpr std::int64_t kIdleMilliseconds = 3000;       // of silence before the device is stopped
constexpr std::int64_t kUnderrunMilliseconds = 10000;  // underruns are counted within
constexpr std::uint32_t kUnderrunsTolerated = 4;
constexpr std::int64_t kRetryMilliseconds = 500;    // between attempts to open a device
constexpr std::int64_t kPlayOutMilliseconds = 500;  // for a device to play what it holds
constexpr std::int64_t kAnswerMilliseconds = 1000;  // within which a device that works has done something

std::int64_t nowMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

// Whatever asks something of the device may have to wait for a sound server.
template <typename Call>
auto RenderThread::onDevice(Call call) {
    struct Watch {
        explicit Watch(std::atomic<std::int64_t>& callSince) : since(callSince) { since = nowMilliseconds(); }
        ~Watch() { since = 0; }
        std::atomic<std::int64_t>& since;
    };
    const Watch watch(m_callSince);
    return call();
}

RenderThread::RenderThread(std::unique_ptr<SoundReader> reader, OutputFactory openOutput)
    : m_cache(std::move(reader)),
      m_output(frames(2 * Reserve::mostLaneSeconds()), m_cache.sampleRate()),
      m_openOutput(std::move(openOutput)),
      m_renderer(m_cache, chosenStretcher()),
      m_block(frames(kStretchFirstSeconds + kFadeSeconds) + 2 * kAlignmentReach + kBlock),
      m_heardOn(frames(kFadeSeconds)),
      m_gaps(m_cache.sampleRate()),
      m_callSince(nowMilliseconds()),
      m_thread([this] { run(); }) {}

std::size_t RenderThread::frames(double seconds) const {
    return static_cast<std::size_t>(std::llround(seconds * sampleRate()));
}

std::size_t RenderThread::firstFrames(const Shape& shape) const {
    return frames(shape.settings.stretches() ? kStretchFirstSeconds : kFirstSeconds);
}

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
    {
        const std::lock_guard lock(m_mutex);
        m_request = request;
        ++m_requestCount;
        if (!request.playing || request.rate == 0) m_output.setRunning(false);
        m_cache.interrupt();
    }
    m_requested.notify_one();
}

RenderThread::Heard RenderThread::heard() const {
    std::int64_t played = 0;
    std::optional<Stamp> stamp;
    {
        const std::lock_guard lock(m_deviceMutex);
        if (m_device) played = m_device->framesPlayed();
        stamp = m_output.stampAt(played);
    }
    if (!stamp) return {};
    const auto since = static_cast<double>(std::clamp<std::int64_t>(played - stamp->deviceFrame, 0, stamp->frames));
    const double steps = stamp->step + since * stamp->stepsPerFrame;
    return {stamp->lane.playhead.positionAt(steps), stamp->lane.request};
}

bool RenderThread::isCaughtUp() const {
    const std::lock_guard lock(m_mutex);
    return m_caughtUpWith == m_requestCount;
}

void RenderThread::run() {
    preferThisThread(Urgency::Soon);
    Request request;
    openDevice();
    while (waitForWork(request)) {
        watchDevice();
        watchPulse();
        watchUnderruns();
        watchForGaps();
        const Shape shape = shapeOf(request);
        m_spliceWaits = false;
        if (needsSplice(request, shape)) spliceTo(request, shape);
        if (m_shapeValid && !m_spliceWaits) applyRunning(request);
        fillLane();
        if (!m_deviceStarted) m_output.settleWhileStopped();
    }
    setDevice(nullptr);
}

// Takes the newest request. Waits while there is nothing to do; false when the thread is to end.
bool RenderThread::waitForWork(Request& request) {
    std::unique_lock lock(m_mutex);
    const bool starting = m_request.playing && m_request.rate != 0 && !m_output.isRunning();
    const bool busy = !m_shapeValid || m_spliceWaits || wantsFrames() || starting;
    if (!busy && m_requestCount == m_seenRequests && !m_closing) {
        m_caughtUpWith = m_seenRequests;
        const auto nap = !m_deviceStarted ? kRestingNap : m_growBy != 0 ? kPlayOutNap : kPlayingNap;
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

RenderThread::Shape RenderThread::shapeOf(const Request& request) {
    Shape shape;
    shape.backward = request.rate != 0 ? request.rate < 0 : m_shape.backward;
    shape.settings = {request.rate != 0 ? std::abs(request.rate) : m_shape.settings.speed, request.cents, request.tone,
                      m_light};
    shape.loops = request.loops;
    shape.rangeBegin = request.rangeBegin;
    shape.rangeEnd = request.rangeEnd;
    shape.seek = request.seek;
    return shape;
}

bool RenderThread::needsSplice(const Request& request, const Shape& shape) const {
    if (!m_shapeValid || !(shape == m_shape)) return true;
    return m_outsideRange && request.playing && request.rate != 0;
}

void RenderThread::spliceTo(const Request& request, const Shape& shape) {
    if (!m_deviceStarted) m_output.settleWhileStopped();
    Lane* idle = m_output.idleLane();
    m_spliceWaits = idle == nullptr;
    if (m_spliceWaits) {  // for the one before it; what that one plays is kept filled meanwhile
        if (!m_shapeValid || !wantsFrames()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return;
    }
    const Lane& lane = m_output.activeLane();
    const LaneHeader& header = lane.header;
    if (m_output.gateIsClosed()) m_output.setRunning(false);  // nothing is heard yet: nothing is to be continued
    const bool moving = !m_output.gateIsClosed();
    const bool seeks = shape.seek != header.request;

    std::uint64_t atFrame = lane.consumed();
    if (moving && !seeks) {
        const auto margin = frames(shape.settings.stretches() ? kStretchMarginSeconds : kNeutralMarginSeconds);
        const auto fade = frames(kFadeSeconds);
        const std::uint64_t last = lane.written() > fade ? lane.written() - fade : 0;
        atFrame = std::max(atFrame, std::min(atFrame + margin, last));
    }
    const double step = header.firstStep + static_cast<double>(atFrame) * header.speed;
    const std::int64_t position = seeks ? std::clamp<std::int64_t>(request.seekTarget, 0, length())
                                        : std::llround(header.playhead.positionAt(step));

    Playhead playhead = makePlayhead(position, shape.backward, shape.loops, shape.rangeBegin, shape.rangeEnd, length());
    const bool entersRange = playhead.start != position;
    // A range that lies elsewhere is entered when play begins, not while standing still.
    m_outsideRange = entersRange && !(request.playing && request.rate != 0);
    if (m_outsideRange) playhead = makePlayhead(position, shape.backward, false, 0, 0, length());

    const bool jump = seeks || !moving || (entersRange && !m_outsideRange);
    m_shapeValid = jump ? startJump(*idle, playhead, shape) : startContinuous(*idle, playhead, shape, atFrame);
    if (m_shapeValid) m_shape = shape;
}

// The sound goes on elsewhere: what leads up to the target fades in, the target itself is whole.
bool RenderThread::startJump(Lane& lane, const Playhead& playhead, const Shape& shape) {
    const bool atEnd = !playhead.loops && playhead.stepsToBoundary() == 0;
    const std::int64_t step = atEnd ? 0 : -std::llround(static_cast<double>(kLead) * shape.settings.speed);
    const std::span<StereoFrame> first(m_block.data(), firstFrames(shape));
    if (!m_renderer.begin(playhead, shape.settings, true, step) || !m_renderer.render(first)) return false;
    lane.header = {playhead, static_cast<double>(step), shape.settings.speed, shape.seek};
    lane.base = lane.frames.writePosition();
    lane.frames.write(first);
    publish(lane, {0, static_cast<std::uint32_t>(kLead), true}, shape);
    return true;
}

// The sound goes on where it is, rendered differently.
bool RenderThread::startContinuous(Lane& lane, Playhead playhead, const Shape& shape, std::uint64_t atFrame) {
    const Lane& old = m_output.activeLane();
    const bool turns = shape.backward != m_shape.backward;
    const bool aligned = !shape.settings.stretches() && !m_shape.settings.stretches() && !turns;
    const bool same = aligned && shape.settings == m_shape.settings;
    const std::int64_t reach = turns || aligned ? 0 : kAlignmentReach;
    const std::int64_t step = -std::llround(static_cast<double>(reach) * shape.settings.speed);
    const std::size_t fade = same ? 0 : frames(turns ? kTurnSeconds : kFadeSeconds);
    const std::span<StereoFrame> first(m_block.data(), fade + firstFrames(shape) + 2 * static_cast<std::size_t>(reach));
    if (!m_renderer.begin(playhead, shape.settings, true, step) || !m_renderer.render(first)) return false;

    std::size_t lag = 0;
    if (reach > 0) {
        const std::uint64_t available = old.written() > atFrame ? old.written() - atFrame : 0;
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(available, m_heardOn.size()));
        for (std::size_t i = 0; i < count; ++i) m_heardOn[i] = old.frames.peek(old.base + atFrame + i);
        lag = bestAlignment({m_heardOn.data(), count}, first, static_cast<std::size_t>(reach));
    }
    lane.header = {playhead, static_cast<double>(step) + static_cast<double>(lag) * shape.settings.speed,
                   shape.settings.speed, shape.seek};
    lane.base = lane.frames.writePosition();
    lane.frames.write(first.subspan(lag));
    publish(lane, {atFrame, static_cast<std::uint32_t>(fade), turns}, shape);
    return true;
}

void RenderThread::publish(Lane& lane, const OutputCallback::Splice& splice, const Shape& shape) {
    const double steps = static_cast<double>(lane.header.playhead.stepsToBoundary()) - lane.header.firstStep;
    m_laneFrames = lane.header.playhead.loops ? -1 : static_cast<std::int64_t>(std::ceil(steps / shape.settings.speed));
    lane.ended = m_laneFrames >= 0 && static_cast<std::int64_t>(lane.written()) >= m_laneFrames;
    m_output.splice(splice);
}

bool RenderThread::wantsFrames() const {
    const Lane& lane = m_output.activeLane();
    return !lane.ended && lane.frames.available() < frames(m_reserve.laneSeconds());
}

// One block at most, so that requests are seen to between blocks.
void RenderThread::fillLane() {
    if (!m_shapeValid || !wantsFrames()) return;
    Lane& lane = m_output.activeLane();
    const std::span<StereoFrame> block(m_block.data(), kBlock);
    if (!m_renderer.render(block)) {
        m_shapeValid = false;
        return;
    }
    lane.frames.write(block);
    if (m_laneFrames >= 0 && static_cast<std::int64_t>(lane.written()) >= m_laneFrames) lane.ended = true;
}

// Opens the gate to play, and lets the device rest after a while of silence. The device may have to wait for a sound
// server: no lock is held then.
void RenderThread::applyRunning(const Request& request) {
    if (request.playing && request.rate != 0) {
        m_idleSince = 0;
        if (m_deviceStarted)
            openGate();
        else
            m_deviceStarted = startDevice();
        return;
    }
    if (!m_deviceStarted || !m_output.gateIsClosed()) return;
    const std::int64_t now = nowMilliseconds();
    if (m_idleSince == 0) m_idleSince = now;
    if (now - m_idleSince >= kIdleMilliseconds) restDevice();
}

bool RenderThread::startDevice() {
    m_gaps.restart();
    const bool started = onDevice([this] { return m_device->start(); });
    m_takenAt = nowMilliseconds();  // it may have been waited for
    return started;
}

void RenderThread::restDevice() {
    onDevice([this] { m_device->stop(); });
    m_deviceStarted = false;
    if (m_reserve.rest(nowMilliseconds())) onDevice([this] { m_device->setReserve(m_reserve.deviceSeconds()); });
}

// Unless a newer request has closed it meanwhile.
void RenderThread::openGate() {
    const std::lock_guard lock(m_mutex);
    if (m_requestCount == m_seenRequests) m_output.setRunning(true);
}

// A machine that cannot keep up with the full stretch goes on with the lighter one.
void RenderThread::watchUnderruns() {
    const std::uint32_t underruns = m_output.underruns();
    if (underruns == m_knownUnderruns) return;
    const std::int64_t now = nowMilliseconds();
    m_reserve.laneRanDry(now);
    if (now - m_underrunsSince > kUnderrunMilliseconds) {
        m_underrunsSince = now;
        m_underrunsBefore = m_knownUnderruns;
    }
    m_knownUnderruns = underruns;
    const bool tooMany = underruns - m_underrunsBefore >= kUnderrunsTolerated;
    if (m_light || !m_shape.settings.stretches() || !tooMany) return;
    qmLog("time stretch: the machine cannot keep up; going on with the lighter setting");
    m_light = true;
}

// A device that has nothing left to play while other programs hold up the sound server is to hold more. It plays out
// first, so that no frame is lost.
void RenderThread::watchForGaps() {
    if (!m_deviceStarted || !m_device->keepsTime()) return;
    const std::int64_t now = nowMilliseconds();
    if (m_growBy != 0) {
        if (m_device->hasFinished() || now >= m_growBy) growReserve();
        return;
    }
    if (!m_gaps.sees(static_cast<double>(now) / 1000, m_device->framesPlayed()) || !m_reserve.deviceRanDry(now)) return;
    m_growBy = now + kPlayOutMilliseconds;
    m_device->finish();
}

void RenderThread::growReserve() {
    qmLog("sound output: the device ran dry; it is to hold " +
          std::to_string(std::lround(1000 * m_reserve.deviceSeconds())) + " ms from now on");
    m_growBy = 0;
    onDevice([this] {
        m_device->stop();
        m_device->setReserve(m_reserve.deviceSeconds());
    });
    m_deviceStarted = startDevice();
}

void RenderThread::openDevice() {
    auto opened = onDevice([this] { return m_openOutput(sampleRate(), m_output); });
    if (!opened) {
        qmLog("sound output: " + opened.error().message + "; playing on silently");
        opened = openNullOutput(sampleRate(), m_output);
    }
    m_silentDevice = opened.value()->isSilent();
    m_retryAt = nowMilliseconds() + kRetryMilliseconds;
    setDevice(std::move(opened.value()));
}

// A device that has vanished is replaced, by silence if need be; silence is replaced as soon as there is a device.
void RenderThread::watchDevice() {
    const bool failed = m_device->failed();
    if (!failed && (!m_silentDevice || nowMilliseconds() < m_retryAt)) return;
    if (failed) {
        qmLog("sound output: the device has gone");
        openDevice();
    } else {
        m_retryAt = nowMilliseconds() + kRetryMilliseconds;
        auto opened = onDevice([this] { return m_openOutput(sampleRate(), m_output); });
        if (!opened || opened.value()->isSilent()) return;
        qmLog("sound output: a device is there again");
        m_silentDevice = false;
        setDevice(std::move(opened.value()));
    }
    if (m_output.isRunning()) m_deviceStarted = startDevice();
}

void RenderThread::setDevice(std::unique_ptr<AudioOutput> device) {
    if (m_device) onDevice([this] { m_device->stop(); });
    if (device) onDevice([&] { device->setReserve(m_reserve.deviceSeconds()); });
    m_deviceStarted = false;
    m_growBy = 0;
    std::unique_ptr<AudioOutput> old;
    {
        const std::lock_guard lock(m_deviceMutex);
        old = std::exchange(m_device, std::move(device));
        m_output.restartDeviceCount();
    }
    onDevice([&old] { old.reset(); });
}

// A device that is started takes frames all the time, also behind a closed gate.
void RenderThread::watchPulse() {
    const std::int64_t now = nowMilliseconds();
    const std::int64_t taken = m_output.framesTaken();
    if (!m_deviceStarted || taken != m_takenByDevice) {
        m_takenByDevice = taken;
        m_takenAt = now;
    }
    m_deviceStands = now - m_takenAt > kAnswerMilliseconds;
}

// A movie that is opened while the sound server hangs must not say that it works, as long as nobody knows.
std::optional<SoundOutput> RenderThread::soundOutput() const {
    const std::int64_t since = m_callSince;
    if (m_deviceStands || (since != 0 && nowMilliseconds() - since > kAnswerMilliseconds))
        return SoundOutput::DoesNotAnswer;
    if (since != 0) return std::nullopt;
    return m_silentDevice ? SoundOutput::Absent : SoundOutput::Works;
}

}  // namespace qm
