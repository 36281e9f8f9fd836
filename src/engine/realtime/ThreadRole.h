// Which thread may call: the one that asks first takes the role and keeps it until the role is handed over. Wrap the
// question in an assertion, so that it costs nothing where assertions are off. Any thread; never blocks.
#pragma once

#include <atomic>
#include <thread>

namespace qm {

class ThreadRole {
public:
    bool isHere() const noexcept {
        const std::thread::id self = std::this_thread::get_id();
        std::thread::id owner = m_owner.load();
        return owner == self || (owner == std::thread::id() && m_owner.compare_exchange_strong(owner, self));
    }

    // The next thread that asks takes the role. To be called when the one that has it is known to have done with it.
    void handOver() noexcept { m_owner.store({}); }

private:
    mutable std::atomic<std::thread::id> m_owner{};
};

}  // namespace qm
