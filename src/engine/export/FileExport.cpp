#include "engine/export/FileExport.h"

#include <chrono>

#include "engine/api/Aside.h"
#include "engine/api/Log.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr std::chrono::milliseconds kLongestRemoval{200};
const std::string kCancelled = "cancelled";

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

// The file is gone when this returns, unless its folder does not answer in time.
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
    m_failure = write(source, target, preferredRate);
    if (!m_failure.empty()) qmLog("cannot export to " + target + ": " + m_failure);
    m_finished = true;
}

// Returns why the file could not be written, or an empty text when it is there.
std::string FileExport::write(const std::shared_ptr<const FileBytes>& source, const std::string& target,
                              float preferredRate) {
    const auto made = makeTarget(target);
    if (!made) return made.error().message;
    auto failure = exportMovie(source, *made.value(), preferredRate, m_monitor);
    if (!failure) failure = made.value()->commit();
    if (!failure) return {};
    made.value()->abandon();
    return m_monitor.cancelled ? kCancelled : failure->message;
}

Result<std::shared_ptr<TargetFile>> FileExport::makeTarget(const std::string& target) {
    const std::lock_guard lock(m_making->mutex);
    if (m_monitor.cancelled) return Error{ErrorCategory::GivenUp, kCancelled};
    auto created = TargetFile::create(target);
    if (!created) return created.error();
    m_making->target = std::move(created.value());
    return m_making->target;
}

}  // namespace qm
