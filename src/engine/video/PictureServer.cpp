#include "engine/video/PictureServer.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr double kRounding = 0.001;               // seconds
constexpr double kParkedWithin = 0.3;             // seconds before the place where reading is to go on
constexpr double kHurry = 0.35;                   // seconds by which more is left out while decoding lags behind
constexpr std::size_t kReady = 4;                 // pictures that are ready to be painted
constexpr std::int64_t kLeastPixels = 480 * 270;  // of a picture that is made smaller for memory's sake
constexpr double kMuchLarger = 1.25;              // worth the work of making it smaller
constexpr double kAboutAsLarge = 0.9;

}  // namespace

PictureServer::PictureServer(VideoOpener open, std::size_t budget) : m_open(std::move(open)), m_budget(budget) {}

void PictureServer::setPlace(PictureSize place) {
    if (place != m_place) {
        m_place = place;
        m_schedule.pictures.clear();
    }
}

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

void PictureServer::forget() {
    m_cache.clear();
    m_schedule.pictures.clear();
    for (Lane& lane : m_lanes) {
        lane = {};
    }
}

bool PictureServer::prepare(const VideoMoment& moment) {
    PictureSchedule schedule;
    const Shown* fresh = nullptr;
    const auto isKnown = [&](const RawPicture& picture, double begin) {
        for (const ReadyPicture& known : m_schedule.pictures) {
            if (known.begin == begin && known.madeOf == picture.pixels) {
                schedule.pictures.push_back(known);
                return true;
            }
        }
        return false;
    };
    for (const Shown* shown : upcoming(moment)) {
        if (isKnown(shown->picture, shown->begin)) {
            schedule.pictures.back().end = shown->end;
        } else if (!fresh) {
            fresh = shown;
        }
    }
    const RawPicture* late = schedule.pictures.empty() && !fresh ? lateButNew(moment) : nullptr;
    if (fresh) {
        schedule.pictures.push_back(ready(fresh->begin, fresh->end, fresh->picture));
    } else if (late && !isKnown(*late, late->seconds)) {
        schedule.pictures.push_back(ready(late->seconds, late->seconds, *late));
    } else {
        return false;
    }
    m_schedule = std::move(schedule);
    return true;
}

ReadyPicture PictureServer::ready(double begin, double end, const RawPicture& picture) {
    return {begin, end, picture.pixels, m_lanes[0].cursor->reader().convert(picture, m_place)};
}

std::vector<const PictureServer::Shown*> PictureServer::upcoming(const VideoMoment& moment) const {
    std::vector<const Shown*> all;
    const std::size_t most = moment.rate == 0 ? 1 : kReady;
    const Shown* shown = m_cache.at(moment.shownTime());
    while (shown && all.size() < most && std::find(all.begin(), all.end(), shown) == all.end()) {
        all.push_back(shown);
        shown = following(*shown, moment);
    }
    return all;
}

const PictureServer::Shown* PictureServer::following(const Shown& shown, const VideoMoment& moment) const {
    const bool inLoop = moment.isInLoop();
    if (moment.rate > 0) {
        return m_cache.at(inLoop && shown.end >= moment.rangeEnd ? moment.rangeBegin + kRounding : shown.end);
    }
    return inLoop && shown.begin <= moment.rangeBegin ? m_cache.at(moment.rangeEnd - kRounding) : m_cache.before(shown);
}

// Forward, the newest picture there is stands in for one that is not decoded in time.
const RawPicture* PictureServer::lateButNew(const VideoMoment& moment) const {
    const PictureCursor* cursor = m_lanes[0].cursor.get();
    const RawPicture* newest = cursor ? cursor->pending() : nullptr;
    if (!newest) {
        return nullptr;
    }
    const PictureSchedule asReady{{{newest->seconds, newest->seconds, newest->pixels, nullptr}}};
    return asReady.at(moment) ? newest : nullptr;
}

bool PictureServer::work(const VideoMoment& moment) {
    m_plays = moment.rate != 0;
    const bool turns = m_plays && m_backward != (moment.rate < 0);
    if (turns) {
        m_backward = !m_backward;
        m_lanes[0].group.reset();
        m_lanes[1].group.reset();
    }
    m_look = lookAhead(moment, m_backward);
    keepWanted();
    if (!isReady(m_lanes[0])) {
        return false;
    }
    if (moment.rate == 0) {  // only what is to be seen now, and as sharp as can be
        const double now = moment.shownTime();
        m_look.next = {now, now + kRounding};
        m_look.beyondSeam = m_look.following = {};
    }
    const bool forward = !m_backward || moment.rate == 0;
    return (forward ? workForward() : workBackward()) || makePassedSmaller();
}

void PictureServer::keepWanted() {
    std::vector<Span> wanted = m_look.passed;
    wanted.insert(wanted.end(), {m_look.next, m_look.beyondSeam, m_look.following});
    m_cache.keepOnly(wanted);
    // One picture may lie across both stretches.
    m_cache.trim(m_look.beyondSeam, m_budget / 4 - std::min(m_lastBytes, m_budget / 4), m_backward);
    m_cache.trim(m_look.following, m_budget / 8, false);
    for (const Span& span : m_look.passed) {
        m_cache.trim(span, (m_backward ? m_budget / 8 : m_budget / 4) / m_look.passed.size(), !m_backward);
    }
}

// Pictures that were kept smaller than they are shown are decoded again when there is time.
bool PictureServer::workForward() {
    const Span& span = m_look.next;
    const double missing = m_cache.coveredFrom(span, leastPixels());
    if (missing >= span.end || (missing > span.begin && !fits(span, m_budget / 4))) {
        return (!m_look.beyondSeam.empty() && workBeyondSeam(m_look.beyondSeam, m_budget / 4)) || approach();
    }
    m_lanes[0].group.reset();
    crossSeam(missing);
    stepForward(m_lanes[0], span, missing);
    return true;
}

// What has waited beyond the seam goes on from there, once it is crossed.
void PictureServer::crossSeam(double missing) {
    const PictureCursor* beyond = m_lanes[1].cursor.get();
    if (beyond && !beyond->needsSeek(missing) && m_lanes[0].cursor->needsSeek(missing)) {
        std::swap(m_lanes[0], m_lanes[1]);
    }
}

// The pictures behind the seam, and then a cursor that waits where they end.
bool PictureServer::workBeyondSeam(const Span& span, std::size_t allowance) {
    Lane& lane = m_lanes[1];
    if (!isReady(lane)) {
        return false;
    }
    const double missing = m_cache.coveredFrom(span, leastPixels());
    if (missing < span.end && fits(span, allowance - std::min(m_lastBytes, allowance))) {
        stepForward(lane, span, missing);
        return true;
    }
    return m_look.parks && park(lane, {span.begin, missing});
}

// Where there are pictures for a while, because they were played before: a cursor that waits where they end.
bool PictureServer::approach() {
    const Span& span = m_look.following;
    const double missing = m_cache.coveredFrom({m_look.next.begin, span.end}, leastPixels());
    if (missing <= m_look.next.end || missing >= span.end) {
        return false;
    }
    crossSeam(missing);
    return park(m_lanes[0], {m_look.next.begin, missing});
}

// Brings the cursor to the end of the span; false if it is there.
bool PictureServer::park(Lane& lane, const Span& span) {
    const std::optional<double> position = lane.cursor->position();
    if (position && *position <= span.end && *position > span.end - kParkedWithin) {
        return false;
    }
    stepForward(lane, span, span.end - kRounding);
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
    // Decoding that lags behind leaves out more, so that it does not lag for good by more than is shown.
    const bool lags = m_plays && missing <= m_look.next.begin && !m_cache.at(missing);
    std::optional<Shown> finished;
    lane.cursor->read(lags ? missing + kHurry : missing, VideoReader::kAllPixels, finished);
    if (finished && span.touches(finished->begin, finished->end)) {
        m_lastBytes = finished->picture.bytes;
        m_bytesPerPixel = double(m_lastBytes) / double(std::max<std::int64_t>(finished->picture.pixels, 1));
        m_cache.add(std::move(*finished));
    }
}

bool PictureServer::workBackward() {
    const bool loops = !m_look.beyondSeam.empty();
    const std::size_t share = loops ? m_budget / 4 : m_budget / 8 * 3;
    const std::optional<GroupJob>& beyond = m_lanes[1].group;
    const Span& span = m_look.next;
    const bool late = m_cache.coveredBackFrom(span) >= span.end;
    if (late && !m_lanes[0].group && beyond && beyond->span.touches(span.end - kRounding, span.end)) {
        std::swap(m_lanes[0], m_lanes[1]);  // the seam came before what lies beyond it was ready
    }
    return workOnGroups(m_lanes[0], span, share, share) ||
           (loops && isReady(m_lanes[1]) && workOnGroups(m_lanes[1], m_look.beyondSeam, m_budget / 4, 1));
}

// A group is begun long before it is needed: as soon as it fits beside what is still to be shown of the one after it.
bool PictureServer::workOnGroups(Lane& lane, const Span& span, std::size_t allowance, std::size_t startBelow) {
    if (lane.group && !span.touches(lane.group->span.begin, lane.group->span.end)) {
        lane.group.reset();
    }
    if (!lane.group) {
        const double missing = m_cache.coveredBackFrom(span);
        const bool late = missing >= span.end;
        const bool enough = span.end - missing > m_look.ahead / 2 || m_cache.bytesIn(span) >= startBelow;
        if (missing <= span.begin || (!late && enough)) {
            return false;
        }
        lane.group.emplace(
            GroupJob{{span.begin, missing}, allowance - std::min(m_lastBytes, allowance / 2), 0, {}, {}});
        lane.cursor->seek(missing - kRounding);
        return true;
    }
    stepGroup(lane, span);
    return true;
}

// What has been passed while the group was decoded need not be reached any more.
void PictureServer::stepGroup(Lane& lane, const Span& span) {
    GroupJob& group = *lane.group;
    if (!group.first && lane.cursor->position()) {
        group.first = std::max(*lane.cursor->position(), group.span.begin);
        m_groupPixels = pixelsFor(group.allowance, group.span.end - *group.first);
    }
    std::optional<Shown> finished;
    const bool goesOn = lane.cursor->read(group.span.begin, m_groupPixels, finished);
    if (finished && finished->end > group.span.begin && finished->begin < group.span.end) {
        keepOfGroup(group, std::move(*finished));
    }
    const double enough = std::min(group.span.end, std::max(span.end, group.span.begin));
    const std::optional<double> position = lane.cursor->position();
    if (!goesOn || (position && *position >= enough)) {
        lane.group.reset();
    }
}

void PictureServer::keepOfGroup(GroupJob& group, Shown shown) {
    const Shown* known = m_cache.at(shown.begin);
    if (known && known->begin == shown.begin) {
        return;
    }
    group.bytes += shown.picture.bytes;
    group.kept.push_back(shown);
    m_cache.add(std::move(shown));
    while (group.bytes > group.allowance && group.kept.size() > 1) {
        const Shown& oldest = group.kept.front();
        group.bytes -= oldest.picture.bytes;
        m_cache.remove(oldest.begin);
        group.kept.pop_front();
    }
}

bool PictureServer::makePassedSmaller() {
    const std::int64_t pixels = pixelsFor(m_budget / 8, 0);
    for (const Span& span : m_look.passed) {
        const auto tooLarge = static_cast<std::int64_t>(kMuchLarger * static_cast<double>(pixels));
        const Shown* found = m_cache.largerThan(tooLarge, span);
        if (!found) {
            continue;
        }
        Shown smaller{m_lanes[0].cursor->reader().reduced(found->picture, pixels), found->begin, found->end};
        m_cache.remove(smaller.begin);
        if (smaller.picture.pixels <= tooLarge) {
            m_cache.add(std::move(smaller));
        }
        return true;
    }
    return false;
}

// How large each picture of so many seconds, but of no less than are kept for a turn, may be within that memory.
std::int64_t PictureServer::pixelsFor(std::size_t bytes, double seconds) const {
    const double longest = std::max(seconds, LookAhead::kPassed * m_look.speed);
    const double count = std::max(longest / m_lanes[0].cursor->reader().secondsPerPicture(), 1.0);
    const auto fitting = static_cast<std::int64_t>(double(bytes) / count / m_bytesPerPixel);
    return std::min(std::max(fitting, kLeastPixels), std::int64_t{m_place.width} * m_place.height);
}

std::int64_t PictureServer::leastPixels() const {
    return static_cast<std::int64_t>(kAboutAsLarge * m_place.width * m_place.height);
}

}  // namespace qm
