// What becomes of the two marks of a loop when they are moved. Values and pure functions, any thread; positions are
// frames of the track's time scale, which is frames per second. No answer: the act changes nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace qm {

struct Marks {
    std::int64_t a = 0;
    std::int64_t b = 0;
    friend bool operator==(const Marks&, const Marks&) = default;
};

enum class Mark { A, B, Both };

// The track they lie in.
struct MarkedTrack {
    std::int64_t length = 0;
    std::int64_t scale = 0;

    std::int64_t frames(std::int64_t milliseconds) const;  // rounded
    std::int64_t leastLoop() const { return frames(5); }   // the nearest that A comes to B
    bool isAtRest(Marks marks) const;                      // nobody has set them
    bool holdsLoop(Marks marks) const;                     // A before B, both within the track
};

// By so many milliseconds, negative is earlier; no further than the track's ends, and A stays before B, unless they are
// crossed already. Both move by the same number of frames.
std::optional<Marks> nudged(Marks marks, Mark which, std::int64_t milliseconds, const MarkedTrack& track);

// A mark is put to a frame, as when it is held in the hand: like nudged(), by as much as that takes.
std::optional<Marks> moved(Marks marks, Mark which, std::int64_t frame, const MarkedTrack& track);

// B moves: A to half as far, or to twice as far but not beyond the end.
std::optional<Marks> halved(Marks marks, const MarkedTrack& track);
std::optional<Marks> doubled(Marks marks, const MarkedTrack& track);

// The passage of the same length that begins where this one ends, or ends where it begins.
std::optional<Marks> nextPassage(Marks marks, const MarkedTrack& track);
std::optional<Marks> previousPassage(Marks marks, const MarkedTrack& track);

// Of attacks in ascending order the nearest one within 150 ms, the earlier of two as near.
std::optional<std::int64_t> nearestAttack(const std::vector<std::int64_t>& attacks, std::int64_t frame,
                                          std::int64_t scale);

}  // namespace qm
