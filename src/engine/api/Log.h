// The program's log: one line on standard error, and a hook through which tests read the lines. Any thread but the
// sound callback. Nobody ever waits for whoever reads standard error: a thread of the log's own writes the lines in
// their order, and when too many of them wait there, the next ones are counted instead.
#pragma once

#include <chrono>
#include <functional>
#include <string_view>

namespace qm {

void qmLog(std::string_view line);

// Waits until every line so far has been written, so long at most. False if some have not. A program that ends
// ordinarily does it by itself.
bool flushLog(std::chrono::milliseconds longest);

// Receives every line instead of standard error until it is set back to an empty function.
void setLogSink(std::function<void(std::string_view)> sink);

}  // namespace qm
