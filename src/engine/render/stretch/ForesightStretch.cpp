#include "engine/render/stretch/ForesightStretch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qm {

namespace {

constexpr double kTakeOverSeconds = 0.005;      // cross-fade from one pass to the next
constexpr double kPieceOverlapSeconds = 0.020;  // cross-fade between the pieces of backward play
constexpr double kFirstPieceSeconds = 0.1;      // of source
constexpr double kLongestPieceSeconds = 1.0;
constexpr std::size_t kPlaces = 4096;
constexpr std::int64_t kEdgeContext = 2048;  // of them, source frames that soft edges reach into
constexpr std::int64_t kContext = 16384;     // source frames that may be looked at before a run begins

// Cross-fades at equal power.
StereoFrame mix(StereoFrame from, StereoFrame to, std::size_t at, std::size_t length) {
    const double angle = (static_cast<double>(at) + 0.5) / static_cast<double>(length) * std::numbers::pi / 2;
    return from * static_cast<float>(std::cos(angle)) + to * static_cast<float>(std::sin(angle));
}

}  // namespace

ForesightStretch::ForesightStretch(int sampleRate)
    : m_rate(sampleRate),
      m_attacks(sampleRate),
      m_vocoder(sampleRate, m_attacks),
      m_tail(static_cast<std::size_t>(kTakeOverSeconds * sampleRate) + 2),
      m_lead(m_tail.size()),
      m_places(kPlaces + 2 * static_cast<std::size_t>(Resampler::reach(Resampler::kMostFactor)) + 8) {}

bool ForesightStretch::restart(Timeline& timeline, std::int64_t step, double speed, double pitchFactor) {
    m_playhead = timeline.playhead();
    m_step = step;
    m_speed = speed;
    m_pitch = pitchFactor;
    m_resampler.setFactor(pitchFactor);
    m_frame = 0;
    m_run = 0;
    m_tailSize = m_tailUsed = 0;
    while (m_playhead.loops && runEnd(m_run) <= 0) ++m_run;
    const auto slowest = 4 * kLongestPieceSeconds * pitchFactor / speed * m_rate;
    m_piece.reserve(static_cast<std::size_t>(slowest));
    m_coming.reserve(static_cast<std::size_t>(slowest));
    m_overlap.resize(static_cast<std::size_t>(kPieceOverlapSeconds * m_rate));
    m_fadesSeams = timeline.fadesSeams();
    beginRun(timeline, m_run);
    return renderRun(timeline, {m_lead.data(), static_cast<std::size_t>(takeOverFrames())});
}

// The output frame with which a run ends.
std::int64_t ForesightStretch::runEnd(std::int64_t run) const {
    const std::int64_t boundary = m_playhead.stepsToBoundary() + run * m_playhead.period();
    return std::llround(static_cast<double>(boundary - m_step) / m_speed);
}

// Backward, places count down from the run's beginning, as the source does.
void ForesightStretch::beginRun(Timeline& timeline, std::int64_t run) {
    m_run = run;
    const bool wrapped = run > 0;
    const std::int64_t lead = takeOverFrames();
    m_runFrame = -lead;
    m_course.speed = m_speed / m_pitch;
    // A loop begins as at an attack, and so does the track: what comes before is none of its sound.
    m_course.forced = m_playhead.loops ? m_playhead.rangeBegin : 0;
    const std::int64_t start = m_playhead.backward ? m_playhead.start - m_step : m_playhead.start + m_step;
    const std::int64_t reach = m_pitch == 1 ? 0 : Resampler::reach(m_pitch);
    m_firstPlace = std::llround(std::floor(static_cast<double>(-lead) * m_pitch)) - reach;
    m_placeCount = 0;
    m_course.first = m_firstPlace;
    // Source before the run that its beginning may use: the same for every run, whether or not it takes over.
    const auto behind =
        static_cast<std::int64_t>(std::ceil(static_cast<double>(takeOverFrames() + reach + 1) * m_speed)) +
        kEdgeContext;
    if (!m_playhead.backward) {
        m_course.origin = static_cast<double>(wrapped ? m_playhead.rangeBegin : start);
        m_course.end = m_playhead.rangeEnd;
        const bool fromRangeBegin = m_playhead.loops && m_course.origin == static_cast<double>(m_playhead.rangeBegin);
        m_sourceBegin = static_cast<std::int64_t>(m_course.origin) - (fromRangeBegin ? behind : kContext);
        m_vocoder.begin(timeline, m_course, m_sourceBegin, m_light);
        return;
    }
    m_course.origin = static_cast<double>(wrapped ? m_playhead.rangeEnd : start);
    m_course.end = static_cast<std::int64_t>(m_course.origin) + behind;
    m_sourceBegin = m_playhead.rangeBegin;
    m_pieceEnd = m_firstPlace;
    m_pieceUsed = m_pieceSize = 0;
    m_nextLength = std::llround(kFirstPieceSeconds * m_rate);
}

bool ForesightStretch::render(Timeline& timeline, std::span<StereoFrame> out) {
    while (!out.empty()) {
        std::size_t count = out.size();
        if (m_tailUsed < m_tailSize) {
            count = std::min(count, m_tailSize - m_tailUsed);
            std::copy_n(m_tail.begin() + static_cast<std::ptrdiff_t>(m_tailUsed), count, out.begin());
            m_tailUsed += count;
        } else {
            if (m_playhead.loops) {
                const std::int64_t left = runEnd(m_run) - m_frame - takeOverFrames();
                if (left <= 0) {
                    if (!takeOver(timeline)) return false;
                    continue;
                }
                count = std::min(count, static_cast<std::size_t>(left));
            }
            if (!renderRun(timeline, out.first(count))) return false;
        }
        m_frame += static_cast<std::int64_t>(count);
        out = out.subspan(count);
    }
    return true;
}

void ForesightStretch::lookAhead(Timeline& timeline, std::int64_t step) {
    const auto position = std::llround(timeline.playhead().positionAt(static_cast<double>(step)));
    m_vocoder.lookAround(timeline, position);
}

std::int64_t ForesightStretch::takeOverFrames() const {
    if (!m_playhead.loops || !m_fadesSeams) return 0;
    const auto pass = static_cast<double>(m_playhead.period()) / m_speed;
    return std::min(std::llround(kTakeOverSeconds * m_rate), std::llround(pass / 4));
}

// The end of a run cross-fades into what leads up to the next one, which then goes on.
bool ForesightStretch::takeOver(Timeline& timeline) {
    const auto whole = static_cast<std::size_t>(takeOverFrames());
    m_tailSize = std::min(whole, static_cast<std::size_t>(std::max<std::int64_t>(runEnd(m_run) - m_frame, 0)));
    m_tailUsed = 0;
    if (!renderRun(timeline, {m_tail.data(), m_tailSize})) return false;
    beginRun(timeline, m_run + 1);
    if (!renderRun(timeline, {m_lead.data(), whole})) return false;
    const StereoFrame* lead = m_lead.data() + (whole - m_tailSize);
    for (std::size_t i = 0; i < m_tailSize; ++i) m_tail[i] = mix(m_tail[i], lead[i], i, m_tailSize);
    return true;
}

// The next frames of the run, at the rate they are heard at.
bool ForesightStretch::renderRun(Timeline& timeline, std::span<StereoFrame> out) {
    if (m_pitch == 1) {
        m_runFrame += static_cast<std::int64_t>(out.size());
        return nextPlaces(timeline, out);
    }
    const std::int64_t reach = Resampler::reach(m_pitch);
    for (StereoFrame& frame : out) {
        const double place = static_cast<double>(m_runFrame) * m_pitch;
        const auto last = static_cast<std::int64_t>(std::floor(place)) + reach;
        if (last >= m_firstPlace + static_cast<std::int64_t>(m_placeCount)) {
            const std::int64_t drop =
                std::min<std::int64_t>(last - 2 * reach - m_firstPlace, static_cast<std::int64_t>(m_placeCount));
            if (drop > 0) {
                std::copy(m_places.begin() + drop, m_places.begin() + static_cast<std::ptrdiff_t>(m_placeCount),
                          m_places.begin());
                m_placeCount -= static_cast<std::size_t>(drop);
                m_firstPlace += drop;
            }
            const std::span<StereoFrame> more(m_places.data() + m_placeCount, kPlaces / 4);
            if (!nextPlaces(timeline, more)) return false;
            m_placeCount += more.size();
        }
        frame = m_resampler.at(place, {m_places.data(), m_placeCount}, m_firstPlace);
        ++m_runFrame;
    }
    return true;
}

// The next places of the run in the order of play.
bool ForesightStretch::nextPlaces(Timeline& timeline, std::span<StereoFrame> out) {
    if (!m_playhead.backward) return m_vocoder.render(out);
    while (!out.empty()) {
        if (m_pieceUsed == m_pieceSize && !nextPiece(timeline)) return false;
        const std::size_t count = std::min(out.size(), m_pieceSize - m_pieceUsed);
        std::copy_n(m_piece.begin() + static_cast<std::ptrdiff_t>(m_pieceUsed), count, out.begin());
        m_pieceUsed += count;
        out = out.subspan(count);
        // The piece after this one is made little by little while this one plays.
        const std::size_t due = (m_coming.size() * m_pieceUsed + m_pieceSize - 1) / m_pieceSize;
        if (!makeComing(due)) return false;
    }
    return true;
}

// Backward: begins to make the piece of the source that lies before the one made last, stretched forward.
void ForesightStretch::beginComing(Timeline& timeline) {
    const auto length = static_cast<std::int64_t>(std::ceil(static_cast<double>(m_nextLength) / m_course.speed));
    m_nextLength = std::min<std::int64_t>(2 * m_nextLength, std::llround(kLongestPieceSeconds * m_rate));
    // What is played M places after the beginning of the run is place -1 - M of the course.
    const std::int64_t from = m_pieceEnd;
    m_pieceEnd = std::max<std::int64_t>(from, 0) + length;
    Course course = m_course;
    course.first = -m_pieceEnd - static_cast<std::int64_t>(m_overlap.size());
    m_vocoder.begin(timeline, course, m_sourceBegin, m_light);
    m_coming.resize(static_cast<std::size_t>(-from - course.first));
    m_comingMade = 0;
}

bool ForesightStretch::makeComing(std::size_t until) {
    if (until <= m_comingMade) return true;
    const std::span<StereoFrame> part = std::span(m_coming).subspan(m_comingMade, until - m_comingMade);
    m_comingMade = until;
    return m_vocoder.render(part);
}

// Backward: the coming piece, turned around, becomes the one that is played.
bool ForesightStretch::nextPiece(Timeline& timeline) {
    const bool follows = m_pieceSize > 0;
    if (!follows) beginComing(timeline);
    if (!makeComing(m_coming.size())) return false;
    std::swap(m_piece, m_coming);
    std::reverse(m_piece.begin(), m_piece.end());
    const std::size_t overlap = m_overlap.size();
    if (follows)
        for (std::size_t i = 0; i < overlap; ++i) m_piece[i] = mix(m_overlap[i], m_piece[i], i, overlap);
    m_pieceUsed = 0;
    m_pieceSize = m_piece.size() - overlap;
    std::copy_n(m_piece.begin() + static_cast<std::ptrdiff_t>(m_pieceSize), overlap, m_overlap.begin());
    beginComing(timeline);
    return true;
}

}  // namespace qm
