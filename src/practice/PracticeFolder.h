// The records of all tracks on the disk: one small file for each, named by its sound, so that a file that was moved or
// renamed finds its own. Any thread that may wait for the disk; never the window's.
#pragma once

#include <QString>
#include <optional>

#include "practice/JsonStore.h"
#include "practice/PracticeFile.h"
#include "practice/PracticeMerge.h"

namespace qm {

// Below the home folder; empty without one.
QString practiceFolderPath();

class PracticeFolder {
public:
    explicit PracticeFolder(QString folder = practiceFolderPath()) : m_store(std::move(folder)) {}

    // Reads one file; none: nothing is kept of this sound. The sound is an identity of the engine's.
    std::optional<ReadRecord> record(const QString& sound) const;

    // The newest record of another sound that was found at this path. Looks into every file: for tracks that have no
    // record of their own.
    std::optional<PracticeRecord> formerRecord(const QString& path, const QString& sound) const;

    struct Saved {
        JsonStore::Outcome outcome = JsonStore::Outcome::Written;
        QString reason;         // why it was not written, for the log
        PracticeRecord record;  // as it stands in the file now, or as it was given where it could not be written
    };

    // Merges the record with what stands in its file and writes both.
    Saved save(const PracticeRecord& ours, LoopOrder order, std::int64_t now /* milliseconds since 1970 */) const;

    const JsonStore& store() const { return m_store; }

private:
    JsonStore m_store;
};

}  // namespace qm
