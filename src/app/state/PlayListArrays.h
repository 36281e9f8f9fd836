// The play list: ten parallel arrays, always of equal length; index i of each describes row i. Main thread only.
#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace qm {

// One row, complete before it is inserted, so that the arrays never differ in length.
struct PlayListEntry {
    QString track;
    QString artist;
    QString album;
    QString displayName;
    std::int64_t duration = 0;   // units of timescale
    std::int32_t timescale = 0;  // units per second
    std::int16_t bass = 128;
    std::int16_t treble = 128;
    std::int64_t markA = 0;
    std::int64_t markB = 0;
};

struct PlayListArrays {
    std::vector<QString> trackArray;  // absolute path
    std::vector<QString> artistArray;
    std::vector<QString> albumArray;
    std::vector<QString> displayNamesArray;
    std::vector<std::int64_t> durations;       // units of the row's time scale
    std::vector<std::int32_t> timescaleArray;  // units per second
    std::vector<std::int16_t> bassArray;
    std::vector<std::int16_t> trebleArray;
    std::vector<std::int64_t> markAarray;  // units of the row's time scale
    std::vector<std::int64_t> markBarray;

    int loadedRow = -1;  // the row that the current track was loaded from, wherever it has moved to; -1 none

    PlayListArrays();
    int count() const { return static_cast<int>(trackArray.size()); }
    PlayListEntry entry(int index) const;
    void insertEntry(int index, const PlayListEntry& entry);
    void removeEntry(int index);
    void removeAllEntries();
    void replaceFrom(int index, const PlayListArrays& rows);  // the row there and all below it, by those

    // The rows are compared, not which of them is loaded. Texts that were copied from one another are compared by their
    // place in memory, so that a list of 100 000 tracks is compared with its copy in a few milliseconds.
    bool operator==(const PlayListArrays& other) const;
    bool isSameButMarks(const PlayListArrays& other) const;
};

}  // namespace qm
