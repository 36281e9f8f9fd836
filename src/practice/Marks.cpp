#include "practice/Marks.h"

#include <algorithm>
#include <cstdlib>

namespace qm {

namespace {

constexpr std::int64_t kSnapMilliseconds = 150;

std::optional<Marks> ifOther(Marks marks, Marks before) {
    return marks == before ? std::nullopt : std::optional(marks);
}

// How far from `from` a mark may go that wants to go by `frames` and has to stay in the track.
std::int64_t within(std::int64_t frames, std::int64_t first, std::int64_t last, std::int64_t length) {
    return std::clamp(frames, std::min<std::int64_t>(-first, 0), std::max<std::int64_t>(length - last, 0));
}

std::optional<Marks> shifted(Marks marks, Mark which, std::int64_t frames, const MarkedTrack& track) {
    const auto [first, last] = std::minmax(marks.a, marks.b);
    const std::int64_t room = std::max<std::int64_t>(marks.b - marks.a - track.leastLoop(), 0);
    const bool isCrossed = marks.a >= marks.b;
    Marks after = marks;
    switch (which) {
        case Mark::A:
            after.a += within(isCrossed ? frames : std::min(frames, room), marks.a, marks.a, track.length);
            break;
        case Mark::B:
            after.b += within(isCrossed ? frames : std::max(frames, -room), marks.b, marks.b, track.length);
            break;
        case Mark::Both: {
            const std::int64_t both = within(frames, first, last, track.length);
            after = {marks.a + both, marks.b + both};
            break;
        }
    }
    return ifOther(after, marks);
}

std::optional<Marks> ifInTrack(Marks marks, const MarkedTrack& track) {
    return track.holdsLoop(marks) ? std::optional(marks) : std::nullopt;
}

}  // namespace

std::int64_t MarkedTrack::frames(std::int64_t milliseconds) const {
    const std::int64_t thousandths = std::abs(milliseconds) * scale;
    const std::int64_t rounded = (thousandths + 500) / 1000;
    return milliseconds < 0 ? -rounded : rounded;
}

bool MarkedTrack::isAtRest(Marks marks) const {
    return marks == Marks{0, length};
}

bool MarkedTrack::holdsLoop(Marks marks) const {
    return marks.a >= 0 && marks.a < marks.b && marks.b <= length;
}

std::optional<Marks> nudged(Marks marks, Mark which, std::int64_t milliseconds, const MarkedTrack& track) {
    return shifted(marks, which, track.frames(milliseconds), track);
}

std::optional<Marks> moved(Marks marks, Mark which, std::int64_t frame, const MarkedTrack& track) {
    return shifted(marks, which, frame - (which == Mark::B ? marks.b : marks.a), track);
}

std::optional<Marks> halved(Marks marks, const MarkedTrack& track) {
    if (!track.holdsLoop(marks)) return std::nullopt;
    const std::int64_t length = marks.b - marks.a;
    const std::int64_t half = std::max((length + 1) / 2, track.leastLoop());
    return half < length ? std::optional(Marks{marks.a, marks.a + half}) : std::nullopt;
}

std::optional<Marks> doubled(Marks marks, const MarkedTrack& track) {
    if (!track.holdsLoop(marks)) return std::nullopt;
    return ifOther({marks.a, std::min(marks.b + (marks.b - marks.a), track.length)}, marks);
}

std::optional<Marks> nextPassage(Marks marks, const MarkedTrack& track) {
    return track.holdsLoop(marks) ? ifInTrack({marks.b, 2 * marks.b - marks.a}, track) : std::nullopt;
}

std::optional<Marks> previousPassage(Marks marks, const MarkedTrack& track) {
    return track.holdsLoop(marks) ? ifInTrack({2 * marks.a - marks.b, marks.a}, track) : std::nullopt;
}

std::optional<std::int64_t> nearestAttack(const std::vector<std::int64_t>& attacks, std::int64_t frame,
                                          std::int64_t scale) {
    std::optional<std::int64_t> nearest;
    for (const std::int64_t attack : attacks)
        if (std::abs(attack - frame) * 1000 <= kSnapMilliseconds * scale &&
            (!nearest || std::abs(attack - frame) < std::abs(*nearest - frame)))
            nearest = attack;
    return nearest;
}

}  // namespace qm
