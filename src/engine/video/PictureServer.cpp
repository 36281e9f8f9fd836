#include "engine/video/PictureServer.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();
constexpr double kRounding = 0.001;  // seconds: positions are whole frames of sound, pictures begin between them
constexpr double kAhead = 0.5;       // seconds of real time decoded ahead, forward
constexpr double kAheadBackward = 6;
constexpr double kShownLate = 0.25;    // seconds: a picture later than this is no help while decoding is too slow
constexpr double kParkedWithin = 0.3;  // seconds before the place where reading is to go on

// The time whose picture is shown: a picture that begins within the rounding has begun.
double shownTime(const VideoMoment& moment) {
    const double time = moment.seconds + kRounding;
    const bool inLoop = moment.loops && moment.seconds < moment.rangeEnd;
    return inLoop ? std::min(time, std::max(moment.rangeEnd - kRounding, moment.seconds)) : time;
}

}  // namespace

PictureServer::PictureServer(VideoOpener open, std::size_t budget) : m_open(std::move(open)), m_budget(budget) {}

bool PictureServer::isReadable() {
    isReady(m_lanes[0]);
    return m_lanes[0].cursor != nullptr;
}

bool PictureServer::isReady(Lane& lane) {
    if (!lane.cursor) {
        auto reader = m_open();
        if (!reader) {
            return false;
        }
        lane.cursor = std::make_unique<PictureCursor>(std::move(reader));
    }
    return !lane.cursor->isDead();
}

std::shared_ptr<const VideoPicture> PictureServer::pictureAt(const VideoMoment& moment) {
    const double now = shownTime(moment);
    const PictureCache::Shown* shown = m_cache.at(now);
    const RawPicture* picture = shown ? &shown->picture : lateButNew(now);
    if (!picture) {
        return nullptr;
    }
    if (!m_shown || m_shownBegin != picture->seconds) {
        if (auto converted = m_lanes[0].cursor->convert(*picture)) {
            m_shown = std::move(converted);
            m_shownBegin = picture->seconds;
        }
    }
    return m_shown;
}

// Forward, the newest picture there is stands in for one that is not decoded in time.
const RawPicture* PictureServer::lateButNew(double now) const {
    const PictureCursor* cursor = m_lanes[0].cursor.get();
    const RawPicture* newest = cursor && !m_backward ? cursor->pending() : nullptr;
    return newest && newest->seconds <= now && newest->seconds > now - kShownLate ? newest : nullptr;
}

double PictureServer::secondsToChange(const VideoMoment& moment) const {
    if (moment.rate == 0) {
        return kForever;
    }
    const double time = shownTime(moment);
    const PictureCache::Shown* shown = m_cache.at(time);
    double change = moment.rate > 0 ? kForever : -kForever;
    if (shown) {
        change = moment.rate > 0 ? shown->end : shown->begin;
    }
    if (moment.loops) {
        change = moment.rate > 0 ? std::min(change, moment.rangeEnd) : std::max(change, moment.rangeBegin);
    }
    return std::max((change - time) / moment.rate, 0.0);
}

void PictureServer::forget() {
    m_cache.clear();
    m_shown.reset();
    for (Lane& lane : m_lanes) {
        lane = {};
    }
}

void PictureServer::lookAhead(const VideoMoment& moment) {
    const double now = shownTime(moment);
    const double speed = std::max(std::abs(moment.rate), 1.0);
    const bool inRange = moment.loops && now >= moment.rangeBegin && now < moment.rangeEnd;
    m_wanted.clear();
    m_backward = moment.rate < 0;
    if (m_backward) {
        m_ahead = kAheadBackward * speed;
        const double first = inRange ? std::max(now - m_ahead, moment.rangeBegin) : now - m_ahead;
        m_wanted.push_back({first, now + kRounding});
        if (moment.loops) {
            const double farthest = std::max(moment.rangeEnd - m_ahead, moment.rangeBegin);
            m_wanted.push_back({inRange ? std::max(farthest, now + kRounding) : farthest, moment.rangeEnd});
        }
        return;
    }
    m_ahead = moment.rate == 0 ? kRounding : kAhead * speed;
    m_wanted.push_back({now, inRange ? std::min(now + m_ahead, moment.rangeEnd) : now + m_ahead});
    if (moment.loops && moment.rate > 0) {
        const double farthest = std::min(moment.rangeBegin + m_ahead, moment.rangeEnd);
        m_wanted.push_back({moment.rangeBegin, inRange ? std::min(farthest, now) : farthest});
        m_parks = m_wanted[1].end == farthest && farthest < moment.rangeEnd;
    }
}

bool PictureServer::work(const VideoMoment& moment) {
    const bool wasBackward = m_backward;
    lookAhead(moment);
    if (wasBackward != m_backward) {
        m_lanes[0].group.reset();
        m_lanes[1].group.reset();
    }
    if (!m_backward && m_cache.hasReduced()) {
        m_cache.clear();
        m_shown.reset();
    }
    m_cache.keepOnly(m_wanted);
    if (!isReady(m_lanes[0])) {
        return false;
    }
    const bool loops = m_wanted.size() > 1;
    const std::size_t share = m_backward ? m_budget / 4 : m_budget / 2;
    const std::size_t beyondSeam = share - std::min(m_lastBytes, share);  // one picture may lie across both stretches
    if (loops) {
        m_cache.trim(m_wanted[1], beyondSeam, m_backward);
    }
    if (!m_backward) {
        return workForward(share) || (loops && workBeyondSeam(m_wanted[1], beyondSeam));
    }
    const std::optional<GroupJob>& beyond = m_lanes[1].group;
    const Span& span = m_wanted[0];
    const bool late = m_cache.coveredBackFrom(span) >= span.end;
    if (late && !m_lanes[0].group && beyond && beyond->span.touches(span.end - kRounding, span.end)) {
        std::swap(m_lanes[0], m_lanes[1]);  // the seam came before what lies beyond it was ready
    }
    return workBackward(m_lanes[0], span, 2 * share, share) ||
           (loops && isReady(m_lanes[1]) && workBackward(m_lanes[1], m_wanted[1], beyondSeam, 1));
}

bool PictureServer::workForward(std::size_t allowance) {
    const Span& span = m_wanted[0];
    const double missing = m_cache.coveredFrom(span);
    if (missing >= span.end || (missing > span.begin && !fits(span, allowance))) {
        return false;
    }
    const PictureCursor* beyond = m_lanes[1].cursor.get();
    if (beyond && !beyond->needsSeek(missing) && m_lanes[0].cursor->needsSeek(missing)) {
        std::swap(m_lanes[0], m_lanes[1]);
    }
    stepForward(m_lanes[0], span, missing);
    return true;
}

// The pictures behind the seam, and then a cursor that waits where they end.
bool PictureServer::workBeyondSeam(const Span& span, std::size_t allowance) {
    Lane& lane = m_lanes[1];
    if (!isReady(lane)) {
        return false;
    }
    const double missing = m_cache.coveredFrom(span);
    if (missing < span.end && fits(span, allowance)) {
        stepForward(lane, span, missing);
        return true;
    }
    const std::optional<double> position = lane.cursor->position();
    const bool parked = position && *position <= missing && *position > missing - kParkedWithin;
    if (parked || !m_parks) {
        return false;
    }
    stepForward(lane, {span.begin, missing}, missing - kRounding);
    return true;
}

bool PictureServer::fits(const Span& span, std::size_t allowance) const {
    return m_cache.bytesIn(span) + m_lastBytes <= allowance;
}

void PictureServer::stepForward(Lane& lane, const Span& span, double missing) {
    if (lane.cursor->needsSeek(missing)) {
        lane.cursor->seek(missing);
        return;
    }
    std::optional<PictureCache::Shown> finished;
    lane.cursor->read(missing, false, finished);
    if (finished && span.touches(finished->begin, finished->end)) {
        m_lastBytes = finished->picture.bytes;
        m_cache.add(std::move(*finished));
    }
}

bool PictureServer::workBackward(Lane& lane, const Span& span, std::size_t allowance, std::size_t startBelow) {
    if (lane.group && !span.touches(lane.group->span.begin, lane.group->span.end)) {
        lane.group.reset();
    }
    if (!lane.group) {
        const double missing = m_cache.coveredBackFrom(span);
        const bool late = missing >= span.end;
        const bool enough = span.end - missing > m_ahead / 2 || m_cache.bytesIn(span) >= startBelow;
        if (missing <= span.begin || (!late && enough)) {
            return false;
        }
        lane.group.emplace(GroupJob{{span.begin, missing}, allowance, 0, {}});
        lane.cursor->seek(missing - kRounding);
        return true;
    }
    stepGroup(lane, span);
    return true;
}

// What has been passed while the group was decoded need not be reached any more.
void PictureServer::stepGroup(Lane& lane, const Span& span) {
    GroupJob& group = *lane.group;
    std::optional<PictureCache::Shown> finished;
    const bool goesOn = lane.cursor->read(group.span.begin, true, finished);
    if (finished && finished->end > group.span.begin && finished->begin < group.span.end) {
        keepOfGroup(group, std::move(*finished));
    }
    const double enough = std::min(group.span.end, std::max(span.end, group.span.begin));
    const std::optional<double> position = lane.cursor->position();
    if (!goesOn || (position && *position >= enough)) {
        lane.group.reset();
    }
}

void PictureServer::keepOfGroup(GroupJob& group, PictureCache::Shown shown) {
    const PictureCache::Shown* known = m_cache.at(shown.begin);
    if (known && known->begin == shown.begin) {
        return;
    }
    group.bytes += shown.picture.bytes;
    group.kept.push_back(shown);
    m_cache.add(std::move(shown));
    while (group.bytes > group.allowance && group.kept.size() > 1) {
        const PictureCache::Shown& oldest = group.kept.front();
        group.bytes -= oldest.picture.bytes;
        m_cache.remove(oldest.begin);
        group.kept.pop_front();
    }
}

}  // namespace qm
