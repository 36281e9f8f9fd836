// The sound system's devices by their names, and the watch over one of them. Not for the sound callback.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/output/CubebHandles.h"

namespace qm {

struct CubebDevice {
    std::string id;
    int sampleRate;  // its own, in frames a second
    bool preferred;  // the user's choice
};

// Those that are ready for use; any thread that may wait for the sound system. Empty when that does not answer.
std::vector<CubebDevice> devicesOf(cubeb* context, cubeb_device_type type);

// Calls `gone` once, on a thread of its own, when an input has left the system; as long as it lives. It looks only when
// the system says that its devices have changed.
class InputWatch {
public:
    InputWatch(cubeb* context, std::string id, std::function<void()> gone);
    ~InputWatch();
    InputWatch(const InputWatch&) = delete;
    InputWatch& operator=(const InputWatch&) = delete;

private:
    static void devicesChanged(cubeb*, void* user) { static_cast<InputWatch*>(user)->m_changed = true; }
    void watch();
    bool isGone() const;

    cubeb* const m_context;
    const std::string m_id;
    const std::function<void()> m_gone;
    std::atomic<bool> m_changed{false};
    std::mutex m_mutex;
    std::condition_variable m_ending;
    bool m_end = false;
    std::thread m_thread;
};

}  // namespace qm
