#include "engine/video/VideoMoment.h"

#include <algorithm>

namespace qm {

namespace {

constexpr double kRounding = 0.001;  // seconds

}  // namespace

double VideoMoment::shownTime() const {
    const double time = seconds + kRounding;
    const bool beforeSeam = loops && seconds < rangeEnd;
    return beforeSeam ? std::min(time, std::max(rangeEnd - kRounding, seconds)) : time;
}

bool VideoMoment::isInLoop() const {
    const double time = shownTime();
    return loops && time >= rangeBegin && time < rangeEnd;
}

}  // namespace qm
