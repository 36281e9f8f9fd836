// Four floats that are reckoned with side by side: one machine instruction where the compiler has vectors.
#pragma once

#include <cmath>

namespace qm {

#if defined(__GNUC__)

using FourFloats = float __attribute__((vector_size(16)));

inline FourFloats largerSize(FourFloats peaks, FourFloats x) {
    x = x < 0 ? -x : x;
    return peaks < x ? x : peaks;
}

#else

struct FourFloats {
    float lanes[4];

    float& operator[](int i) { return lanes[i]; }
    float operator[](int i) const { return lanes[i]; }
    friend FourFloats operator+(FourFloats a, FourFloats b) {
        return {a[0] + b[0], a[1] + b[1], a[2] + b[2], a[3] + b[3]};
    }
    friend FourFloats operator-(FourFloats a, FourFloats b) {
        return {a[0] - b[0], a[1] - b[1], a[2] - b[2], a[3] - b[3]};
    }
    friend FourFloats operator*(FourFloats a, FourFloats b) {
        return {a[0] * b[0], a[1] * b[1], a[2] * b[2], a[3] * b[3]};
    }
};

inline FourFloats largerSize(FourFloats peaks, FourFloats x) {
    for (int i = 0; i < 4; ++i)
        if (peaks[i] < std::abs(x[i])) peaks[i] = std::abs(x[i]);
    return peaks;
}

#endif

}  // namespace qm
