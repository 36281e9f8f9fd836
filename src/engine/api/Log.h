// The program's log: one line on standard error, and a hook through which tests read the lines. Any thread but the
// sound callback.
#pragma once

#include <functional>
#include <string_view>

namespace qm {

void qmLog(std::string_view line);

// Receives every line instead of standard error until it is set back to an empty function.
void setLogSink(std::function<void(std::string_view)> sink);

}  // namespace qm
