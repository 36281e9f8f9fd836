// A straight line through measured values.
#pragma once

#include <vector>

namespace qm::measure {

struct Line {
    double start;
    double slope;

    double at(double x) const { return start + slope * x; }
};

// The line through the values at 0, 1, 2 ... with the least squares of error; at least two values.
Line fitLine(const std::vector<double>& values);

}  // namespace qm::measure
