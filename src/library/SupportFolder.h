// Where the program keeps its files: below the home folder, under the same names on every system.
#pragma once

#include <QString>

namespace qm {

// The home folder as the system gives it, without a trailing slash; empty if the user has none.
QString homeFolder();

inline constexpr char16_t kSupportFolder[] = u"/Library/Application Support/Quillmere";

}  // namespace qm
