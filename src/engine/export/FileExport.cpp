#include "engine/export/FileExport.h"

#include "engine/api/Log.h"
#include "engine/realtime/ThreadPriority.h"

namespace qm {

FileExport::FileExport(std::shared_ptr<const FileBytes> source, const std::string& target, float preferredRate) {
    auto created = TargetFile::create(target);
    if (!created) {
        qmLog("cannot export to " + target + ": " + created.error().message);
        m_finished = true;
        return;
    }
    m_target = std::move(created.value());
    m_thread = std::thread([this, source = std::move(source), preferredRate] { run(source, preferredRate); });
}

FileExport::~FileExport() {
    cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void FileExport::cancel() {
    m_monitor.cancelled = true;
    if (m_target) {
        m_target->abandon();
    }
}

void FileExport::run(std::shared_ptr<const FileBytes> source, float preferredRate) {
    preferThisThread(Urgency::Idle);
    auto failure = exportMovie(source, *m_target, preferredRate, m_monitor);
    if (!failure) {
        failure = m_target->commit();
    }
    if (failure) {
        m_target->abandon();
        const std::string reason = m_monitor.cancelled ? "cancelled" : failure->message;
        qmLog("cannot export to " + m_target->name() + ": " + reason);
    }
    m_written = !failure;
    m_finished = true;
}

}  // namespace qm
