#include "engine/capture/CubebDevices.h"

#include <algorithm>
#include <chrono>

namespace qm {

namespace {

constexpr auto kPause = std::chrono::milliseconds(200);

}  // namespace

std::vector<CubebDevice> devicesOf(cubeb* context, cubeb_device_type type) {
    std::vector<CubebDevice> devices;
    cubeb_device_collection found{};
    if (cubeb_enumerate_devices(context, type, &found) != CUBEB_OK) return devices;
    for (std::size_t i = 0; i < found.count; ++i) {
        const cubeb_device_info& device = found.device[i];
        if (device.state != CUBEB_DEVICE_STATE_ENABLED || !device.device_id) continue;
        devices.push_back(
            {device.device_id, static_cast<int>(device.default_rate), device.preferred != CUBEB_DEVICE_PREF_NONE});
    }
    cubeb_device_collection_destroy(context, &found);
    return devices;
}

InputWatch::InputWatch(cubeb* context, std::string id, std::function<void()> gone)
    : m_context(context), m_id(std::move(id)), m_gone(std::move(gone)) {
    if (cubeb_register_device_collection_changed(context, CUBEB_DEVICE_TYPE_INPUT, devicesChanged, this) == CUBEB_OK)
        m_thread = std::thread([this] { watch(); });
}

InputWatch::~InputWatch() {
    if (!m_thread.joinable()) return;
    cubeb_register_device_collection_changed(m_context, CUBEB_DEVICE_TYPE_INPUT, nullptr, nullptr);
    {
        const std::lock_guard lock(m_mutex);
        m_end = true;
    }
    m_ending.notify_one();
    m_thread.join();
}

void InputWatch::watch() {
    std::unique_lock lock(m_mutex);
    while (!m_ending.wait_for(lock, kPause, [this] { return m_end; })) {
        if (!m_changed.exchange(false)) continue;
        lock.unlock();
        const bool gone = isGone();
        if (gone) m_gone();
        lock.lock();
        if (gone) return;
    }
}

bool InputWatch::isGone() const {
    const auto devices = devicesOf(m_context, CUBEB_DEVICE_TYPE_INPUT);
    return std::none_of(devices.begin(), devices.end(),
                        [this](const CubebDevice& device) { return device.id == m_id; });
}

}  // namespace qm
