// Where the program keeps its files: below the home folder, under the same names on every system.
#pragma once

#include <QString>

namespace qm {

// The home folder as the system gives it, without a trailing slash; empty if the user has none.
QString homeFolder();

// Below the home folder.
inline constexpr QLatin1StringView kSupportFolder{"/Library/Application Support/Quillmere"};

}  // namespace qm
