// Where recordings are made, and what becomes of a finished one: it is kept under the name that the user chooses, or
// set aside so that the next one does not take its place. Main thread only.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class QWidget;

namespace qm {

inline constexpr QLatin1StringView kTakeName{"Quillmere.mov"};

QString desktopFolder();
QString musicFolder();
QString takeOnDesktop();        // what the main recorder records to
QString takeInSupportFolder();  // what the stand-alone recorder records to

// Asks for a name in the place of the toolkit's panel. The chosen path, or none if it was cancelled.
using RunSavePanel = std::function<std::optional<QString>(QWidget* parent, const QString& folder, const QString& name)>;

// Moves the file, also to another disk, and replaces one of that name. A failure is false, leaves the recording where
// it is and a log line. The windows stay alive meanwhile, but take no input.
bool moveRecording(const QString& from, const QString& to);

// Renames the file to the first free name of its kind: "Quillmere 2.mov" for "Quillmere.mov", then 3 and so on. Never
// replaces a file. The new path; none if it could not be renamed, which leaves a log line.
std::optional<QString> setAside(const QString& path);

// The recordings in a folder, those that were set aside included, in the order of their numbers. Any thread.
QStringList takesIn(const QString& folder);

}  // namespace qm
