// What the program's desktop file, packaging/org.quillmere.Quillmere.desktop, says of it, for those who ask the program
// itself. A test compares the two.
#pragma once

#include <QString>
#include <QStringList>

namespace qm {

// The name of the desktop file, and of the program on the bus: the desktop finds one by the other.
inline const QString kDesktopId = QStringLiteral("org.quillmere.Quillmere");

const QStringList& playedMimeTypes();   // of what the desktop may open with the program
const QStringList& droppedMimeTypes();  // of what the list takes as a drop

// What the program's icon offers beside starting it, by their names in the program.
const QStringList& desktopActions();

}  // namespace qm
