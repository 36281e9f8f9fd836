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

FileExport::FileExport(std::shared_ptr<const FileBytes> source, const std::string& target, float preferredRate,
                       std::shared_ptr<Reaper> reaper)
    : m_reaper(std::move(reaper)), m_thread([work = m_work, source = std::move(source), target, preferredRate] {
          work->run(source, target, preferredRate);
      }) {}

FileExport::~FileExport() {
    cancel();
    m_reaper->end(std::move(m_thread));
}

// The file is gone when this returns, unless its folder does not answer in time.
void FileExport::cancel() {
    m_work->monitor.cancelled = true;
    if (m_work->finished) return;
    aside([work = m_work] {
        const std::lock_guard lock(work->mutex);
        if (work->target) work->target->abandon();
    }).wait_for(kLongestRemoval);
}

void FileExport::Work::run(const std::shared_ptr<const FileBytes>& source, const std::string& path,
                           float preferredRate) {
    preferThisThread(Urgency::Idle);
    failure = write(source, path, preferredRate);
    if (!failure.empty()) qmLog("cannot export to " + path + ": " + failure);
    finished = true;
}

// Returns why the file could not be written, or an empty text when it is there.
std::string FileExport::Work::write(const std::shared_ptr<const FileBytes>& source, const std::string& path,
                                    float preferredRate) {
    const auto made = makeTarget(path);
    if (!made) return made.error().message;
    auto failed = exportMovie(source, *made.value(), preferredRate, monitor);
    if (!failed) failed = made.value()->commit();
    if (!failed) return {};
    made.value()->abandon();
    return monitor.cancelled ? kCancelled : failed->message;
}

Result<std::shared_ptr<TargetFile>> FileExport::Work::makeTarget(const std::string& path) {
    const std::lock_guard lock(mutex);
    if (monitor.cancelled) return Error{ErrorCategory::GivenUp, kCancelled};
    auto created = TargetFile::create(path);
    if (!created) return created.error();
    target = std::move(created.value());
    return target;
}

}  // namespace qm
