// Numbers as text and as integers, the same in every locale. Pure functions, any thread; none fails.
#pragma once

#include <QString>
#include <cstdint>

namespace qm {

// "%.<decimals>f" with the point as decimal sign whatever the locale.
QString fixedText(double value, int decimals);

// The value title of a speed, "%1f.2": six decimals, then the two characters ".2" as they stand.
QString rateTitle(float rate);

// Toward zero; values outside the range go to its nearer end, not-a-number to 0.
std::int32_t truncToInt32(double value);

}  // namespace qm
