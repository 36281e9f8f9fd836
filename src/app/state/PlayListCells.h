// What a cell of the play list shows, as pure functions. Any thread.
#pragma once

#include <QString>
#include <cstdint>

#include "engine/api/MediaKinds.h"

namespace qm {

// A time of `value` units at `scale` units per second, cut short for a narrow column: "03:25.5", "01:02:15.0". Empty if
// the scale is not positive.
QString shortTimeString(std::int64_t value, std::int32_t scale);

// By the extension of the file, ignoring case; none without an extension.
TrackIcon iconForTrack(const QString& path);

// "1 Track", otherwise the number and "items".
QString trackTotalText(int count);

}  // namespace qm
