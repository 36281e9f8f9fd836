// The version of this program: the one place that says it.
#pragma once

#include <QString>
#include <cstdint>

namespace qm {

inline constexpr std::int32_t kCurrentMajorVersion = 5;
inline constexpr std::int32_t kCurrentMinorVersion = 91;
inline constexpr std::int32_t kCurrentBuildVersion = 82;

// "5.91.82"
inline QString currentVersionText() {
    return QStringLiteral("%1.%2.%3").arg(kCurrentMajorVersion).arg(kCurrentMinorVersion).arg(kCurrentBuildVersion);
}

}  // namespace qm
