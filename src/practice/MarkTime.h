// The time of a mark as text, as it is shown and as it may be typed. Pure functions, any thread.
#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "practice/Marks.h"

namespace qm {

// To the nearest millisecond: 1:12.000, and 1:02:03.004 from an hour on.
QString markText(std::int64_t frame, std::int64_t scale);

// To the microsecond, from which every frame is found again: 0:01:12.000000.
QString exactText(std::int64_t frame, std::int64_t scale);

// Of seconds, minutes:seconds or hours:minutes:seconds with up to six decimals behind a point or a comma, rounded to
// the frame; none where the text is no such time.
std::optional<std::int64_t> frameOfText(const QString& text, std::int64_t scale);

enum class Typed {
    Set,        // the marks are those of the answer
    Unchanged,  // the text is the one that is shown
    NoTime,     // nor anything like one
    OutOfTrack,
    NotBeforeB,  // A would not lie before B
};

struct TypedMark {
    Typed outcome = Typed::NoTime;
    Marks marks;  // as they were where nothing is set

    QString objection() const;  // as the field says it; empty where there is none
};

// A time as above; with a sign in front it is the way from where the mark stands. `which` is A or B.
TypedMark typedMark(const QString& text, Mark which, Marks marks, const MarkedTrack& track);

}  // namespace qm
