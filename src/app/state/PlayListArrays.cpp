#include "app/state/PlayListArrays.h"

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

PlayListEntry PlayListArrays::entry(int index) const {
    const auto i = static_cast<std::size_t>(index);
    return {trackArray[i],     artistArray[i], albumArray[i],  displayNamesArray[i], durations[i],
            timescaleArray[i], bassArray[i],   trebleArray[i], markAarray[i],        markBarray[i]};
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

void PlayListArrays::replaceFrom(int index, const PlayListArrays& rows) {
    const auto replace = [index](auto& array, const auto& with) {
        array.erase(array.begin() + index, array.end());
        array.insert(array.end(), with.begin(), with.end());
    };
    replace(trackArray, rows.trackArray);
    replace(artistArray, rows.artistArray);
    replace(albumArray, rows.albumArray);
    replace(displayNamesArray, rows.displayNamesArray);
    replace(durations, rows.durations);
    replace(timescaleArray, rows.timescaleArray);
    replace(bassArray, rows.bassArray);
    replace(trebleArray, rows.trebleArray);
    replace(markAarray, rows.markAarray);
    replace(markBarray, rows.markBarray);
    // One of the new rows may have been the loaded one when it was last in a list.
    if (loadedRow < 0 || loadedRow >= index) loadedRow = rows.loadedRow < 0 ? -1 : index + rows.loadedRow;
}

bool PlayListArrays::operator==(const PlayListArrays& other) const {
    return isSameButMarks(other) && markAarray == other.markAarray && markBarray == other.markBarray;
}

bool PlayListArrays::isSameButMarks(const PlayListArrays& other) const {
    return trackArray == other.trackArray && artistArray == other.artistArray && albumArray == other.albumArray &&
           displayNamesArray == other.displayNamesArray && durations == other.durations &&
           timescaleArray == other.timescaleArray && bassArray == other.bassArray && trebleArray == other.trebleArray;
}

}  // namespace qm
