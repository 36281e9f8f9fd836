// A practice record as JSON. Reading and writing are pure and may be done on any thread.
//
// { "format": 1, "sound": ..., "scale": ..., "title": ..., "artist": ..., "paths": [...],
//   "loops": [{ "id", "name", "a", "b", "speed", "cents", "bpm", "changed" } or { "id", "removed" } ...],
//   "last": { "position", "a", "b", "speed", "cents", "bass", "treble", "changed" } }
//
// A loop or field that cannot be read is left out and kept in the file as it stood, and so is every field that is not
// named here. A higher "format" is read as far as it is understood.
#pragma once

#include <QJsonObject>
#include <QString>

#include "practice/PracticeRecord.h"

namespace qm {

struct ReadRecord {
    PracticeRecord record;
    int loops = 0;         // in the file, without those that were removed
    int unreadLoops = 0;   // of them
    int unreadFields = 0;  // of the others, of `last` and of the record itself
    QString damage;        // what was wrong with the file, for the log; empty: nothing

    QString complaint() const;  // "1 of 6 loops could not be read."; empty where all could
};

ReadRecord readRecord(const QJsonObject& object);
QJsonObject recordObject(const PracticeRecord& record);

}  // namespace qm
