#include "library/PlayListArrays.h"

namespace qm {

namespace {

// Applies an operation to the ten arrays in their order.
template <typename Arrays, typename Operation>
void forEachArray(Arrays& a, Operation op) {
    op(a.trackArray);
    op(a.artistArray);
    op(a.albumArray);
    op(a.displayNamesArray);
    op(a.durations);
    op(a.timescaleArray);
    op(a.bassArray);
    op(a.trebleArray);
    op(a.markAarray);
    op(a.markBarray);
}

}  // namespace

PlayListArrays::PlayListArrays() {
    forEachArray(*this, [](auto& array) { array.reserve(10); });
}

void PlayListArrays::insertEntry(int index, const PlayListEntry& entry) {
    trackArray.insert(trackArray.begin() + index, entry.track);
    displayNamesArray.insert(displayNamesArray.begin() + index, entry.displayName);
    artistArray.insert(artistArray.begin() + index, entry.artist);
    albumArray.insert(albumArray.begin() + index, entry.album);
    durations.insert(durations.begin() + index, entry.duration);
    timescaleArray.insert(timescaleArray.begin() + index, entry.timescale);
    bassArray.insert(bassArray.begin() + index, entry.bass);
    trebleArray.insert(trebleArray.begin() + index, entry.treble);
    markAarray.insert(markAarray.begin() + index, entry.markA);
    markBarray.insert(markBarray.begin() + index, entry.markB);
    if (loadedRow >= index) ++loadedRow;
}

void PlayListArrays::removeEntry(int index) {
    forEachArray(*this, [index](auto& array) { array.erase(array.begin() + index); });
    if (loadedRow == index)
        loadedRow = -1;
    else if (loadedRow > index)
        --loadedRow;
}

void PlayListArrays::removeAllEntries() {
    forEachArray(*this, [](auto& array) { array.clear(); });
    loadedRow = -1;
}

}  // namespace qm
