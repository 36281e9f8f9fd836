// The export of a media file on a thread of its own, which runs at idle priority.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "engine/api/MovieExport.h"
#include "engine/api/Result.h"
#include "engine/export/ExportMovie.h"

namespace qm {

class FileExport : public MovieExport {
public:
    // The target may be the file that the source was opened from, which is read by its descriptor. Returns at once.
    FileExport(std::shared_ptr<const FileBytes> source, const std::string& target, float preferredRate);
    ~FileExport() override;

    double progress() const override { return m_monitor.progress; }
    bool isFinished() const override { return m_finished; }
    std::string failure() const override { return m_finished ? m_failure : std::string(); }
    void cancel() override;

private:
    void run(std::shared_ptr<const FileBytes> source, const std::string& target, float preferredRate);
    std::string write(const std::shared_ptr<const FileBytes>& source, const std::string& target, float preferredRate);
    Result<std::shared_ptr<TargetFile>> makeTarget(const std::string& target);

    // Shared with whoever removes the file, which may take long.
    struct Making {
        std::mutex mutex;
        std::shared_ptr<TargetFile> target;  // null until it is made, and where none could be made
    };

    const std::shared_ptr<Making> m_making = std::make_shared<Making>();
    ExportMonitor m_monitor;
    std::string m_failure;  // the thread's own until it has finished
    std::atomic<bool> m_finished = false;
    std::thread m_thread;
};

}  // namespace qm
