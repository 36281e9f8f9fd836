#include "engine/export/FileExport.h"

#include <chrono>

#include "engine/api/Aside.h"
#include "engine/api/Log.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr std::chrono::milliseconds kLongestRemoval{200};

}  // namespace

FileExport::FileExport(std::shared_ptr<const FileBytes> source, const std::string& target, float preferredRate) {
    m_thread =
        std::thread([this, source = std::move(source), target, preferredRate] { run(source, target, preferredRate); });
}

FileExport::~FileExport() {
    cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

// When this returns there is no file any more, nor will there be, unless its folder does not answer.
void FileExport::cancel() {
    m_monitor.cancelled = true;
    if (m_finished) return;
    aside([making = m_making] {
        const std::lock_guard lock(making->mutex);
        if (making->target) making->target->abandon();
    }).wait_for(kLongestRemoval);
}

void FileExport::run(std::shared_ptr<const FileBytes> source, const std::string& target, float preferredRate) {
    preferThisThread(Urgency::Idle);
    if (const auto made = makeTarget(target)) {
        auto failure = exportMovie(source, *made, preferredRate, m_monitor);
        if (!failure) {
            failure = made->commit();
        }
        if (failure) {
            made->abandon();
            const std::string reason = m_monitor.cancelled ? "cancelled" : failure->message;
            qmLog("cannot export to " + target + ": " + reason);
        }
        m_written = !failure;
    }
    m_finished = true;
}

std::shared_ptr<TargetFile> FileExport::makeTarget(const std::string& target) {
    const std::lock_guard lock(m_making->mutex);
    if (m_monitor.cancelled) {
        qmLog("cannot export to " + target + ": cancelled");
        return nullptr;
    }
    auto created = TargetFile::create(target);
    if (!created) {
        qmLog("cannot export to " + target + ": " + created.error().message);
        return nullptr;
    }
    m_making->target = std::move(created.value());
    return m_making->target;
}

}  // namespace qm
