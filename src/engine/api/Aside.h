// Work on a thread of its own, for which nobody has to wait: a device or a file may never answer. Any thread. Whoever
// gives up waiting for it lets go of the future; what the work comes to then ends with its thread.
#pragma once

#include <future>
#include <thread>
#include <utility>

namespace qm {

template <typename Work>
auto aside(Work work) -> std::future<decltype(work())> {
    std::packaged_task<decltype(work())()> task(std::move(work));
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    return result;
}

}  // namespace qm
