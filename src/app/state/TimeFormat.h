// Times as the program shows them. Pure functions, any thread. A time that is indefinite or whose scale is not
// positive has no text.
#pragma once

#include <QString>
#include <optional>

#include "engine/api/QTTime.h"

namespace qm {

// Long form, "[-]days:hours:minutes:seconds" with the seconds rounded to two decimals and without a leading zero:
// 63.5 seconds read 0:00:01:3.50.
std::optional<QString> stringFromQTTime(QTTime time);

// Short form, "hours:minutes:seconds" with two digits each: no sign, no days, the seconds truncated.
std::optional<QString> stringFromQTTimeLite(QTTime time);

// The elapsed time cut out of the engine's time string: 0:00:01:23.45/600 reads 0:01:23.45.
QString elapsedText(const QString& timeString, QChar slash);

}  // namespace qm
