// The play list as a property list: one array, one dictionary of eight keys for each track. Straight between the bytes
// and the arrays, because lists of 100 000 tracks are read at start-up and written at the end. Any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "app/state/PlayListArrays.h"

class QIODevice;

namespace qm {

// A track's marks are no part of the play list's file, where A is 0 and B the duration, but of the copy that is kept
// for an end that was no quit.
enum class Marks { AtTheEnds, Kept };

// Appends the document's tracks to the list, up to the first that is damaged. Answers what is wrong and where, or
// nothing if the document is sound to its end.
std::optional<QString> readPlayList(const QByteArray& document, PlayListArrays& list, Marks marks = Marks::AtTheEnds);

// False if the device did not take everything.
bool writePlayList(QIODevice& device, const PlayListArrays& list, Marks marks = Marks::AtTheEnds);

}  // namespace qm
