// A record's loops as a list: found, moved, removed and brought back. What stands among them and is no loop stays where
// it is. Pure functions; moments are milliseconds since 1970 in UTC.
#pragma once

#include "practice/PracticeRecord.h"

namespace qm {

using LoopEntries = std::vector<LoopEntry>;

// Of a change: later than what it was made from, also where the clock was put back.
std::int64_t laterThan(std::int64_t former, std::int64_t moment);

KeptLoop* findLoop(LoopEntries& entries, const QString& id);  // null if there is none
QString freeLoopId(const LoopEntries& entries);

// To a place among the loops, or to the nearest there is. False where it stands there already.
bool moveLoop(LoopEntries& entries, const QString& id, int place);

struct RemovedLoop {
    KeptLoop loop;
    QJsonValue stored;
    std::size_t place;  // among the entries
};

std::optional<RemovedLoop> removeLoop(LoopEntries& entries, const QString& id, std::int64_t moment);
void bringBackLoop(LoopEntries& entries, RemovedLoop removed, std::int64_t moment);

}  // namespace qm
