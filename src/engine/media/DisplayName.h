// The name a file is shown by. Pure.
#pragma once

#include <string>
#include <string_view>

namespace qm {

// The title unless it is blank, else the last component of the path. Always valid UTF-8: text that is none is taken for
// Windows-1252, as old tags and file names are.
std::string displayName(std::string_view title, std::string_view path);

}  // namespace qm
