// Writes a media file as one movie file that holds everything it needs: every track that is switched on, copied where
// the movie container truly holds it and coded anew where it does not. Blocks until it is done: on a thread of its own.
#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "engine/api/Result.h"
#include "engine/export/TargetFile.h"
#include "engine/media/FileBytes.h"

namespace qm {

// What the writer and those who watch it share; any thread.
struct ExportMonitor {
    std::atomic<double> progress = 0;  // 0 to 1
    std::atomic<bool> cancelled = false;
};

// `preferredRate` is signed; the movie says it of itself. The target is complete but not yet committed afterwards.
std::optional<Error> exportMovie(std::shared_ptr<const FileBytes> source, TargetFile& target, float preferredRate,
                                 ExportMonitor& monitor);

}  // namespace qm
