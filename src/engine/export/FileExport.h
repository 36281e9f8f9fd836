// The export of a media file on a thread of its own, which runs at idle priority.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "engine/api/MovieExport.h"
#include "engine/api/Result.h"
#include "engine/export/ExportMovie.h"
#include "engine/waiting/Reaper.h"

namespace qm {

class FileExport : public MovieExport {
public:
    // The target may be the file that the source was opened from, which is read by its descriptor. Returns at once, and
    // its end waits for nothing: what is left then goes to the reaper.
    FileExport(std::shared_ptr<const FileBytes> source, const std::string& target, float preferredRate,
               std::shared_ptr<Reaper> reaper);
    ~FileExport() override;

    double progress() const override { return m_work->monitor.progress; }
    bool isFinished() const override { return m_work->finished; }
    std::string failure() const override { return m_work->finished ? m_work->failure : std::string(); }
    void cancel() override;

private:
    // Shared with the thread, and with whoever removes the file, which may take long.
    struct Work {
        void run(const std::shared_ptr<const FileBytes>& source, const std::string& path, float preferredRate);
        std::string write(const std::shared_ptr<const FileBytes>& source, const std::string& path, float preferredRate);
        Result<std::shared_ptr<TargetFile>> makeTarget(const std::string& path);

        ExportMonitor monitor;
        std::string failure;  // the thread's own until it has finished
        std::atomic<bool> finished = false;
        std::mutex mutex;
        std::shared_ptr<TargetFile> target;  // null until it is made, and where none could be made
    };

    const std::shared_ptr<Work> m_work = std::make_shared<Work>();
    const std::shared_ptr<Reaper> m_reaper;
    std::jthread m_thread;
};

}  // namespace qm
