#include "Line.h"

namespace qm::measure {

Line fitLine(const std::vector<double>& values) {
    const double n = double(values.size());
    double sy = 0, sxy = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        sy += values[i];
        sxy += double(i) * values[i];
    }
    const double meanX = (n - 1) / 2;
    const double slope = (sxy - meanX * sy) / (n * (n * n - 1) / 12);
    return {sy / n - slope * meanX, slope};
}

}  // namespace qm::measure
