// Which thread may call: the one that asks first takes the role and keeps it. Wrap the question in an assertion, so
// that it costs nothing where assertions are off. Any thread; never blocks.
#pragma once

#include <atomic>
#include <thread>

namespace qm {

class ThreadRole {
public:
    bool isHere() const noexcept {
        std::thread::id owner;
        const std::thread::id self = std::this_thread::get_id();
        return m_owner.compare_exchange_strong(owner, self) || owner == self;
    }

private:
    mutable std::atomic<std::thread::id> m_owner{};
};

}  // namespace qm
