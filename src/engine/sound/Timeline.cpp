#include "engine/sound/Timeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace qm {

namespace {

constexpr double kSeamFadeSeconds = 0.005;
constexpr std::size_t kSeamContext = 64;  // frames looked at on either side of a seam

float stepBetween(StereoFrame a, StereoFrame b) {
    return std::max(std::abs(a.left - b.left), std::abs(a.right - b.right));
}

float bend(StereoFrame a, StereoFrame b, StereoFrame c) {
    return std::max(std::abs(a.left - 2 * b.left + c.left), std::abs(a.right - 2 * b.right + c.right));
}

}  // namespace

Timeline::Timeline(PcmCache& cache) : m_cache(cache), m_settling(Tone::kSettleFrames) {}

void Timeline::begin(const Playhead& playhead, bool seamFade, const ToneSettings& tone) {
    m_playhead = playhead;
    m_tone.set(tone, sampleRate());
    m_toneStep.reset();
    m_seamFade = seamFade && playhead.loops;
    m_fadeLength = std::min<std::int64_t>(std::llround(kSeamFadeSeconds * sampleRate()), playhead.period() / 4);
    m_seamJumps.reset();
    m_leadIn.resize(static_cast<std::size_t>(std::max<std::int64_t>(m_fadeLength, 0)));
    m_cache.setOutlook(
        {playhead.backward, playhead.loops ? playhead.rangeBegin : 0, playhead.loops ? playhead.rangeEnd : 0});
}

bool Timeline::read(std::int64_t step, std::span<StereoFrame> out) {
    if (m_tone.neutral()) return readPlain(step, out, PcmCache::Part::All);
    if (m_toneStep != step && !settleTone(step)) return false;
    m_toneStep.reset();
    if (!readWithTone(step, out)) return false;
    m_toneStep = step + static_cast<std::int64_t>(out.size());
    return true;
}

bool Timeline::readUnfaded(std::int64_t step, std::span<StereoFrame> out) {
    const bool fades = std::exchange(m_seamFade, false);
    const bool done = read(step, out);
    m_seamFade = fades;
    return done;
}

// Tone concerns the first sound track only: the others are taken out and put back.
bool Timeline::readWithTone(std::int64_t step, std::span<StereoFrame> out) {
    if (!readPlain(step, out, PcmCache::Part::All)) return false;
    if (!m_cache.hasOtherTracks()) {
        m_tone.process(out);
        return true;
    }
    m_otherTracks.resize(out.size());
    if (!readPlain(step, m_otherTracks, PcmCache::Part::OtherTracks)) return false;
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = out[i] + m_otherTracks[i] * -1;
    m_tone.process(out);
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = out[i] + m_otherTracks[i];
    return true;
}

// The filters hear what lies before a step that they did not expect.
bool Timeline::settleTone(std::int64_t step) {
    m_tone.reset();
    return readWithTone(step - Tone::kSettleFrames, m_settling);
}

bool Timeline::readPlain(std::int64_t step, std::span<StereoFrame> out, PcmCache::Part part) {
    while (!out.empty()) {
        const auto run = static_cast<std::size_t>(
            std::min<std::int64_t>(m_playhead.runFrom(step), static_cast<std::int64_t>(out.size())));
        if (!readRun(step, out.first(run), part)) return false;
        if (m_seamFade && !fadeSeam(step, out.first(run), part)) return false;
        step += static_cast<std::int64_t>(run);
        out = out.subspan(run);
    }
    return true;
}

bool Timeline::readRun(std::int64_t step, std::span<StereoFrame> out, PcmCache::Part part) {
    const std::int64_t frame = m_playhead.frameAt(step);
    const bool done = m_playhead.backward ? readBackward(frame, out, part) : m_cache.read(frame, out, part);
    if (!done) return false;
    if (m_playhead.loops) return true;
    // Past the end of a range that does not loop there is silence, whatever the track holds there.
    const std::int64_t played = std::max<std::int64_t>(m_playhead.stepsToBoundary() - step, 0);
    if (played < static_cast<std::int64_t>(out.size())) std::fill(out.begin() + played, out.end(), StereoFrame{});
    return true;
}

bool Timeline::readBackward(std::int64_t lastFrame, std::span<StereoFrame> out, PcmCache::Part part) {
    if (!m_cache.read(lastFrame + 1 - static_cast<std::int64_t>(out.size()), out, part)) return false;
    std::reverse(out.begin(), out.end());
    return true;
}

bool Timeline::fadeSeam(std::int64_t step, std::span<StereoFrame> out, PcmCache::Part part) {
    const auto count = static_cast<std::int64_t>(out.size());
    const std::int64_t last = step + count - 1;
    if (last < 0 || m_fadeLength <= 0) return true;
    const std::int64_t wrap = last + m_playhead.stepsToWrap(last);  // the first step after this run's seam
    const std::int64_t fadeBegin = wrap - m_fadeLength;
    if (last < fadeBegin) return true;
    const auto jumps = seamJumps();
    if (!jumps) return false;
    if (!*jumps) return true;

    const Playhead after =
        makePlayhead(m_playhead.backward ? m_playhead.rangeEnd : m_playhead.rangeBegin, m_playhead.backward, false,
                     m_playhead.rangeBegin, m_playhead.rangeEnd, m_cache.length());
    const std::int64_t leadFrame = after.frameAt(-m_fadeLength);
    if (!(after.backward ? readBackward(leadFrame, m_leadIn, part) : m_cache.read(leadFrame, m_leadIn, part)))
        return false;
    for (std::int64_t s = std::max(step, std::max<std::int64_t>(fadeBegin, 0)); s <= last; ++s) {
        const auto into = static_cast<double>(s - fadeBegin) + 0.5;
        const double angle = into / static_cast<double>(m_fadeLength) * std::numbers::pi / 2;
        StereoFrame& frame = out[static_cast<std::size_t>(s - step)];
        frame = frame * static_cast<float>(std::cos(angle)) +
                m_leadIn[static_cast<std::size_t>(s - fadeBegin)] * static_cast<float>(std::sin(angle));
    }
    return true;
}

// True when the step across the seam, or the bend in it, is larger than any of the signal's own on either side.
std::optional<bool> Timeline::seamJumps() {
    if (m_seamJumps) return m_seamJumps;
    const auto context = static_cast<std::size_t>(std::min<std::int64_t>(kSeamContext, m_playhead.period()));
    std::array<StereoFrame, 2 * kSeamContext> frames;
    const std::span<StereoFrame> before(frames.data(), context);
    const std::span<StereoFrame> after(frames.data() + context, context);
    const auto half = static_cast<std::int64_t>(context);
    const bool done =
        m_playhead.backward
            ? readBackward(m_playhead.rangeBegin + half - 1, before, PcmCache::Part::All) &&
                  readBackward(m_playhead.rangeEnd - 1, after, PcmCache::Part::All)
            : m_cache.read(m_playhead.rangeEnd - half, before) && m_cache.read(m_playhead.rangeBegin, after);
    if (!done) return std::nullopt;
    float ownStep = 0, ownBend = 0, seamStep = 0, seamBend = 0;
    for (std::size_t i = 1; i < 2 * context; ++i) {
        float& largest = i == context ? seamStep : ownStep;
        largest = std::max(largest, stepBetween(frames[i - 1], frames[i]));
        if (i < 2) continue;
        float& sharpest = i == context || i == context + 1 ? seamBend : ownBend;
        sharpest = std::max(sharpest, bend(frames[i - 2], frames[i - 1], frames[i]));
    }
    constexpr float kInaudible = 1.0f / 32768;
    m_seamJumps = seamStep > ownStep + kInaudible || seamBend > 1.5f * ownBend + 2 * kInaudible;
    return m_seamJumps;
}

}  // namespace qm
