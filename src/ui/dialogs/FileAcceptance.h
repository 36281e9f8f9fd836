// Which files the user may bring in: by the open panel, which takes an extension only as it is written in its list, by
// dropping, which ignores case and has a shorter list, and by the panel for any sound, which takes whatever is chosen.
// Main thread only. A file that cannot be examined is refused.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

class QUrl;
class QWidget;

namespace qm {

class FilePanel;

const QStringList& openPanelTypes();
const QStringList& dropTypes();
const QStringList& soundTypes();  // all that the engine opens, in small letters

// Links are followed; folders are refused whatever their name.
bool isValidFileForDrop(const QString& path);

// The dropped files of this machine, whole paths sorted as the user's language does, ignoring case. A drop takes the
// first of them. None is looked at.
QStringList droppedFiles(const QList<QUrl>& urls);

// Of these files those that a drop would take by their names.
QStringList droppable(const QStringList& paths);

// The open panel: files only, several at once, links resolved, only openPanelTypes() on offer. It changes nothing on
// disk.
std::unique_ptr<FilePanel> makeOpenPanel(QWidget* parent, const QString& folder);

// The same for any sound: soundTypes() are on offer at first, in any case, and all files if the user asks for them.
std::unique_ptr<FilePanel> makeAnySoundPanel(QWidget* parent, const QString& folder);

// Runs the panel; the chosen files in the panel's order, none if it was cancelled.
std::optional<QStringList> runOpenPanel(FilePanel& panel);

// What a chosen path stands for: the file behind a link, otherwise the path itself.
QString resolvedPath(const QString& path);

}  // namespace qm
