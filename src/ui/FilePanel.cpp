#include "ui/FilePanel.h"

#include <QAbstractItemView>
#include <QAction>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>

#include "ui/DialogStyle.h"

namespace qm {

FilePanel::FilePanel(QWidget* parent, const QString& title, const QString& folder, AcceptMode mode)
    : QFileDialog(parent, title, folder) {
    setOption(DontUseNativeDialog);
    setAcceptMode(mode);
    m_field = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    m_button =
        findChild<QDialogButtonBox*>()->button(mode == AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open);
    m_button->installEventFilter(this);
    connect(m_field, &QLineEdit::textChanged, this, [this] {
        if (hasQuotes()) m_button->setEnabled(true);
    });
    leaveFilesAlone();
    sizeFilePanel(*this);
}

// The toolkit's panel removes, renames and moves files and folders on a key, from a menu and by dragging.
void FilePanel::leaveFilesAlone() {
    for (auto* view : findChildren<QAbstractItemView*>()) {
        view->setEditTriggers(QAbstractItemView::NoEditTriggers);
        if (view->objectName() != u"sidebar") view->setDragDropMode(QAbstractItemView::NoDragDrop);
    }
    for (const char* name : {"qt_delete_action", "qt_rename_action"}) {
        auto* action = findChild<QAction*>(QString::fromLatin1(name));
        if (!action) continue;
        action->disconnect(this);
        action->setVisible(false);
    }
    for (auto* shortcut : findChildren<QShortcut*>())
        if (shortcut->key() == QKeySequence(Qt::Key_Delete)) delete shortcut;
    if (acceptMode() == AcceptSave) return;
    setOption(ReadOnly);
    if (auto* newFolder = findChild<QToolButton*>(QStringLiteral("newFolderButton"))) newFolder->hide();
}

// The toolkit selects the folder itself, too, when the text between quotation marks names nothing.
QModelIndexList FilePanel::selectedEntries() const {
    const auto& list = *findChild<QListView*>(QStringLiteral("listView"));
    QModelIndexList entries;
    for (const QModelIndex& index : list.selectionModel()->selectedRows())
        if (index != list.rootIndex()) entries.append(index);
    return entries;
}

bool FilePanel::hasQuotes() const {
    return m_field->text().contains(u'"');
}

QStringList FilePanel::chosenFiles() const {
    if (!hasQuotes()) return selectedFiles();
    QStringList paths;
    for (const QString& name : quotedNames()) paths.append(pathOf(name));
    return paths;
}

// The field's text is one name, unless it is what stands there for several chosen files: each in quotation marks, with
// a blank between them.
QStringList FilePanel::quotedNames() const {
    const QString text = m_field->text();
    if (fileMode() != ExistingFiles || QFileInfo::exists(pathOf(text))) return {text};
    constexpr qsizetype kMarks = 2;
    if (text.size() <= kMarks || !text.startsWith(u'"') || !text.endsWith(u'"')) return {text};
    QStringList selected;
    for (const QModelIndex& index : selectedEntries()) selected.append(index.data().toString());
    const QString separator = QStringLiteral("\" \"");
    const QString inside = text.sliced(1, text.size() - kMarks);
    return selected.join(separator) == inside ? selected : inside.split(separator);
}

QString FilePanel::pathOf(const QString& name) const {
    const QString path = name.startsWith(u"~/") ? QDir::homePath() + name.sliced(1) : name;
    return QDir::cleanPath(directory().absoluteFilePath(path));
}

bool FilePanel::goInto(const QString& path) {
    if (!QFileInfo(path).isDir()) return false;
    setDirectory(path);
    if (fileMode() == ExistingFiles) m_field->clear();
    return true;
}

void FilePanel::accept() {
    if (hasQuotes())
        acceptQuoted();
    else
        QFileDialog::accept();
}

// As the toolkit does it with other names: a folder that is selected is gone into, whatever stands in the field.
void FilePanel::acceptQuoted() {
    const auto entries = selectedEntries();
    if (entries.size() == 1 && goInto(entries.first().data(QFileSystemModel::FilePathRole).toString())) return;
    for (const QString& path : chosenFiles()) {
        if (goInto(path)) return;
        const bool exists = QFileInfo::exists(path);
        if (acceptMode() == AcceptSave ? exists && !mayReplace(path) : !exists) {
            if (!exists) QMessageBox::warning(this, windowTitle(), tr("%1\nFile not found.").arg(path));
            return;
        }
    }
    QDialog::accept();
}

bool FilePanel::mayReplace(const QString& path) {
    const QString question = tr("%1 already exists.\nDo you want to replace it?").arg(QFileInfo(path).fileName());
    return QMessageBox::warning(this, windowTitle(), question, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) ==
           QMessageBox::Yes;
}

// The toolkit switches the button off when there is no file of the name that it takes from between quotation marks.
bool FilePanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_button && event->type() == QEvent::EnabledChange && !m_button->isEnabled() && hasQuotes())
        m_button->setEnabled(true);
    return QFileDialog::eventFilter(watched, event);
}

}  // namespace qm
