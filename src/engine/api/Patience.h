// How the main thread waits for work that another thread does for it: asks `isDone`, which waits so long at most, until
// it is, and may do something else in between.
#pragma once

#include <chrono>
#include <functional>

namespace qm {

using IsDone = std::function<bool(std::chrono::milliseconds longest)>;
using Patience = std::function<void(const IsDone& isDone)>;

}  // namespace qm
