#include "engine/video/PictureSchedule.h"

#include <algorithm>
#include <limits>

namespace qm {

namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();
constexpr double kShownLate = 0.25;  // seconds: a picture later than this is no help while decoding is too slow

}  // namespace

const ReadyPicture* PictureSchedule::at(const VideoMoment& moment) const {
    const double now = moment.shownTime();
    const ReadyPicture* late = nullptr;
    for (const ReadyPicture& ready : pictures) {
        if (ready.begin <= now && now < ready.end) {
            return &ready;
        }
        if (ready.begin <= now && (!late || ready.begin > late->begin)) {
            late = &ready;
        }
    }
    return moment.rate > 0 && late && late->begin > now - kShownLate ? late : nullptr;
}

double PictureSchedule::secondsToChange(const VideoMoment& moment) const {
    const ReadyPicture* shown = at(moment);
    const double now = moment.shownTime();
    if (moment.rate == 0 || !shown || shown->end <= now) {
        return kForever;
    }
    double change = moment.rate > 0 ? shown->end : shown->begin;
    if (moment.isInLoop()) {
        change = moment.rate > 0 ? std::min(change, moment.rangeEnd) : std::max(change, moment.rangeBegin);
    }
    return std::max((change - now) / moment.rate, 0.0);
}

}  // namespace qm
