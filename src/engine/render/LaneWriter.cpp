#include "engine/render/LaneWriter.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "engine/render/Alignment.h"

namespace qm {

namespace {

constexpr std::size_t kBlock = 512;
constexpr double kFirstSeconds = 0.017;          // ready before a splice is published
constexpr double kStretchFirstSeconds = 0.025;   // the same while stretching, which is slower
constexpr double kStretchMarginSeconds = 0.035;  // played on while a stretched splice is prepared
constexpr double kNeutralMarginSeconds = 0.006;
constexpr double kFadeSeconds = 0.010;         // cross-fade between two renderings of the same sound
constexpr double kTurnSeconds = 0.005;         // cross-fade into the other direction
constexpr std::int64_t kLead = Gate::kFrames;  // frames played before the target of a jump

}  // namespace

LaneWriter::LaneWriter(PcmCache& cache, OutputCallback& output)
    : m_cache(cache),
      m_output(output),
      m_renderer(cache, chosenStretcher()),
      m_block(frames(kStretchFirstSeconds + kFadeSeconds) + 2 * kAlignmentReach + kBlock),
      m_heardOn(frames(kFadeSeconds)) {}

std::size_t LaneWriter::frames(double seconds) const {
    return static_cast<std::size_t>(std::llround(seconds * m_cache.sampleRate()));
}

std::size_t LaneWriter::firstFrames(const Shape& shape) const {
    return frames(shape.settings.stretches() ? kStretchFirstSeconds : kFirstSeconds);
}

LaneWriter::Shape LaneWriter::shapeOf(const RenderRequest& wanted) const {
    Shape shape;
    shape.backward = wanted.rate != 0 ? wanted.rate < 0 : m_shape.backward;
    shape.settings = {wanted.rate != 0 ? std::abs(wanted.rate) : m_shape.settings.speed, wanted.cents, wanted.tone,
                      m_light};
    shape.loops = wanted.loops;
    shape.rangeBegin = wanted.rangeBegin;
    shape.rangeEnd = wanted.rangeEnd;
    shape.seek = wanted.seek;
    return shape;
}

bool LaneWriter::needsSplice(const RenderRequest& wanted, const Shape& shape) const {
    if (!m_shapeValid || !(shape == m_shape)) return true;
    return m_outsideRange && wanted.moves();
}

void LaneWriter::follow(const RenderRequest& wanted) {
    assert(m_renderThread.isHere());
    const Shape shape = shapeOf(wanted);
    m_spliceWaits = false;
    if (!needsSplice(wanted, shape)) return;
    Lane* idle = m_output.lanes().idle();
    m_spliceWaits = idle == nullptr;
    if (m_spliceWaits) return;

    const Lane& lane = m_output.lanes().beingWritten();
    if (m_output.gateIsClosed()) m_output.setRunning(false);  // nothing is heard yet: nothing is to be continued
    const bool seeks = shape.seek != lane.header.request;
    const bool continues = !m_output.gateIsClosed() && !seeks;
    const std::uint64_t atFrame = continues ? frameToChangeAt(shape) : lane.consumed();
    const std::int64_t position = seeks ? std::clamp<std::int64_t>(wanted.seekTarget, 0, m_cache.length())
                                        : std::llround(lane.header.playhead.positionAt(lane.header.stepOf(atFrame)));
    const Playhead playhead = playheadFrom(position, shape, wanted.moves());
    const bool entersRange = playhead.start != position;
    m_shapeValid = continues && !entersRange ? startContinuous(*idle, playhead, shape, atFrame)
                                             : startJump(*idle, playhead, shape);
    if (m_shapeValid) m_shape = shape;
}

// Where the device will be when the change is ready, as long as the lane has sound to fade from.
std::uint64_t LaneWriter::frameToChangeAt(const Shape& shape) const {
    const Lane& lane = m_output.lanes().beingWritten();
    const auto margin = frames(shape.settings.stretches() ? kStretchMarginSeconds : kNeutralMarginSeconds);
    const auto fade = frames(kFadeSeconds);
    const std::uint64_t last = lane.written() > fade ? lane.written() - fade : 0;
    const std::uint64_t consumed = lane.consumed();
    return std::max(consumed, std::min(consumed + margin, last));
}

// A range that lies elsewhere is entered when play begins, not while standing still.
Playhead LaneWriter::playheadFrom(std::int64_t position, const Shape& shape, bool moves) {
    const Playhead inRange =
        makePlayhead(position, shape.backward, shape.loops, shape.rangeBegin, shape.rangeEnd, m_cache.length());
    m_outsideRange = inRange.start != position && !moves;
    return m_outsideRange ? makePlayhead(position, shape.backward, false, 0, 0, m_cache.length()) : inRange;
}

// The sound goes on elsewhere: what leads up to the target fades in, the target itself is whole.
bool LaneWriter::startJump(Lane& lane, const Playhead& playhead, const Shape& shape) {
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
bool LaneWriter::startContinuous(Lane& lane, const Playhead& playhead, const Shape& shape, std::uint64_t atFrame) {
    const bool turns = shape.backward != m_shape.backward;
    const bool aligned = !shape.settings.stretches() && !m_shape.settings.stretches() && !turns;
    const bool same = aligned && shape.settings == m_shape.settings;
    const std::int64_t reach = turns || aligned ? 0 : kAlignmentReach;
    const std::int64_t step = -std::llround(static_cast<double>(reach) * shape.settings.speed);
    const std::size_t fade = same ? 0 : frames(turns ? kTurnSeconds : kFadeSeconds);
    const std::span<StereoFrame> first(m_block.data(), fade + firstFrames(shape) + 2 * static_cast<std::size_t>(reach));
    if (!m_renderer.begin(playhead, shape.settings, true, step) || !m_renderer.render(first)) return false;

    const std::size_t lag = reach > 0 ? alignedTo(atFrame, first) : 0;
    lane.header = {playhead, static_cast<double>(step) + static_cast<double>(lag) * shape.settings.speed,
                   shape.settings.speed, shape.seek};
    lane.base = lane.frames.writePosition();
    lane.frames.write(first.subspan(lag));
    publish(lane, {atFrame, static_cast<std::uint32_t>(fade), turns}, shape);
    return true;
}

// The lag at which a new rendering fits best what the playing lane has from a frame on.
std::size_t LaneWriter::alignedTo(std::uint64_t atFrame, std::span<const StereoFrame> candidate) {
    const Lane& old = m_output.lanes().beingWritten();
    const std::uint64_t available = old.written() > atFrame ? old.written() - atFrame : 0;
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(available, m_heardOn.size()));
    for (std::size_t i = 0; i < count; ++i) m_heardOn[i] = old.frames.peek(old.base + atFrame + i);
    return bestAlignment({m_heardOn.data(), count}, candidate, static_cast<std::size_t>(kAlignmentReach));
}

void LaneWriter::publish(Lane& lane, const Splice& splice, const Shape& shape) {
    const double steps = static_cast<double>(lane.header.playhead.stepsToBoundary()) - lane.header.firstStep;
    m_laneFrames = lane.header.playhead.loops ? -1 : static_cast<std::int64_t>(std::ceil(steps / shape.settings.speed));
    lane.ended = m_laneFrames >= 0 && static_cast<std::int64_t>(lane.written()) >= m_laneFrames;
    m_output.lanes().splice(splice);
}

bool LaneWriter::wantsFrames(std::size_t ahead) const {
    const Lane& lane = m_output.lanes().beingWritten();
    return !lane.ended && lane.frames.available() < ahead;
}

void LaneWriter::writeOn(std::size_t ahead) {
    assert(m_renderThread.isHere());
    if (!canWriteOn(ahead)) return;
    Lane& lane = m_output.lanes().beingWritten();
    const std::span<StereoFrame> block(m_block.data(), kBlock);
    if (!m_renderer.render(block)) {
        m_shapeValid = false;
        return;
    }
    lane.frames.write(block);
    if (m_laneFrames >= 0 && static_cast<std::int64_t>(lane.written()) >= m_laneFrames) lane.ended = true;
}

bool LaneWriter::lighten() {
    if (m_light || !m_shape.settings.stretches()) return false;
    m_light = true;
    return true;
}

}  // namespace qm
