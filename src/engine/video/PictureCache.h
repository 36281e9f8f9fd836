// Decoded pictures of several stretches of a film, each with the time it is shown. A value type without a thread of its
// own. Times are seconds.
#pragma once

#include <cstddef>
#include <limits>
#include <map>
#include <vector>

#include "engine/media/VideoReader.h"

namespace qm {

struct Span {
    double begin = 0;
    double end = 0;  // not part of it

    bool empty() const { return begin >= end; }
    bool touches(double from, double to) const { return from < end && to > begin; }
};

class PictureCache {
public:
    struct Shown {
        RawPicture picture;
        double begin = 0;  // the film's first picture is shown from ever on
        double end = 0;    // and its last one for ever
    };

    void add(Shown shown);
    const Shown* at(double seconds) const;          // null if that picture is not here
    const Shown* before(const Shown& shown) const;  // the one that ends where this one begins

    // The earliest time in the span that no picture covers, seen from its begin; the span's end if all are here.
    // Those that are kept with fewer pixels than so many do not count.
    double coveredFrom(const Span& span, std::int64_t leastPixels = 0) const;
    // The same seen from the end: all from there to the end are here.
    double coveredBackFrom(const Span& span) const;

    void remove(double begin);
    void keepOnly(const std::vector<Span>& spans);  // those shown within one of them

    // One that is shown only within the span and has more pixels than so many.
    const Shown* largerThan(std::int64_t pixels, const Span& span) const;
    // Removes pictures shown within the span, first the ones at its end, or at its begin, until no more than so many
    // bytes of it are left.
    void trim(const Span& span, std::size_t bytes, bool fromBegin);
    void clear();
    std::size_t bytes() const { return m_bytes; }
    std::size_t bytesIn(const Span& span) const;

private:
    std::map<double, Shown> m_pictures;  // by begin
    std::size_t m_bytes = 0;
};

}  // namespace qm
