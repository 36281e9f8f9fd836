#include "engine/video/LookAhead.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr double kRounding = 0.001;    // seconds
constexpr double kAhead = 0.5;         // seconds of real time decoded ahead, forward
constexpr double kAheadBackward = 20;  // more than there are between the key pictures of most films

void addPassed(LookAhead& look, Span span) {
    if (!span.empty()) {
        look.passed.push_back(span);
    }
}

LookAhead lookForward(const VideoMoment& moment, double speed) {
    const double now = moment.shownTime();
    const bool inLoop = moment.isInLoop();
    const double passed = LookAhead::kPassed * speed;
    LookAhead look;
    look.speed = speed;
    look.ahead = kAhead * speed;
    const double last = inLoop ? moment.rangeEnd : now + std::max(look.ahead, passed);
    look.next = {now, std::min(now + look.ahead, last)};
    look.following = {look.next.end, std::min(now + passed, last)};
    if (!moment.loops) {
        addPassed(look, {now - passed, now});
        return look;
    }
    const double farthest = std::min(moment.rangeBegin + look.ahead, moment.rangeEnd);
    look.beyondSeam = {moment.rangeBegin, inLoop ? std::min(farthest, now) : farthest};
    look.parks = look.beyondSeam.end == farthest && farthest < moment.rangeEnd;
    if (inLoop) {
        addPassed(look, {std::max(now - passed, look.beyondSeam.end), now});
        const double beforeSeam = passed - (now - moment.rangeBegin);
        addPassed(look, {std::max(moment.rangeEnd - beforeSeam, look.following.end), moment.rangeEnd});
    }
    return look;
}

LookAhead lookBackward(const VideoMoment& moment, double speed) {
    const double now = moment.shownTime();
    const bool inLoop = moment.isInLoop();
    LookAhead look;
    look.speed = speed;
    look.ahead = kAheadBackward * speed;
    const double first = now - look.ahead;
    look.next = {inLoop ? std::max(first, moment.rangeBegin) : first, now + kRounding};
    double kept = now + LookAhead::kPassed * speed;
    if (moment.loops) {
        const double farthest = std::max(moment.rangeEnd - look.ahead, moment.rangeBegin);
        look.beyondSeam = {inLoop ? std::max(farthest, look.next.end) : farthest, moment.rangeEnd};
        kept = std::min(kept, look.beyondSeam.begin);
    }
    addPassed(look, {look.next.end, kept});
    return look;
}

}  // namespace

LookAhead lookAhead(const VideoMoment& moment, bool backward) {
    const double speed = std::max(std::abs(moment.rate), 1.0);
    return backward ? lookBackward(moment, speed) : lookForward(moment, speed);
}

}  // namespace qm
