// The play list as a property list: one array, one dictionary of eight keys for each track. Straight between the bytes
// and the arrays, because lists of 100 000 tracks are read at start-up and written at the end. Main thread only.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "library/PlayListArrays.h"

class QIODevice;

namespace qm {

// Appends the document's tracks to the list, up to the first that is damaged. Answers what is wrong and where, or
// nothing if the document is sound to its end. A track's marks are not part of the document: A is 0, B its duration.
std::optional<QString> readPlayList(const QByteArray& document, PlayListArrays& list);

// False if the device did not take everything.
bool writePlayList(QIODevice& device, const PlayListArrays& list);

}  // namespace qm
