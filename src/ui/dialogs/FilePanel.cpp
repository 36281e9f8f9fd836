#include "ui/dialogs/FilePanel.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFileSystemModel>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStandardPaths>
#include <QToolButton>
#include <QToolTip>
#include <algorithm>

#include "ui/controls/ToolTipText.h"
#include "ui/dialogs/DialogStyle.h"

namespace qm {

namespace {

constexpr int kWidestSide = 220, kSideMargins = 24;  // pixels

// As the desktop has set them, under whatever names. One that it does not use is the home folder.
QList<QUrl> usersFolders() {
    QStringList folders;
    for (const auto kind :
         {QStandardPaths::MusicLocation, QStandardPaths::DownloadLocation, QStandardPaths::DesktopLocation}) {
        const QString folder = QDir::cleanPath(QStandardPaths::writableLocation(kind));
        if (folder != QDir::homePath() && QFileInfo(folder).isDir()) folders.append(folder);
    }
    folders.append(QDir::homePath());
    folders.removeDuplicates();
    QList<QUrl> urls;
    for (const QString& folder : folders) urls.append(QUrl::fromLocalFile(folder));
    return urls;
}

}  // namespace

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
    m_names = m_field->completer()->popup();
    m_names->installEventFilter(this);
    m_names->setStyleSheet(offeredNamesSheet());
    // Names that were still looked for come later, and would stand on the screen without a panel and take the next
    // click.
    connect(this, &QDialog::finished, this, [this] {
        m_field->completer()->setCompletionPrefix({});
        m_names->hide();
    });
    for (auto* view : findChildren<QAbstractItemView*>()) view->viewport()->installEventFilter(this);
    showUsersFolders();
    leaveFilesAlone();
    sizeFilePanel(*this);
}

// The toolkit keeps what stands at the side, for the panels of other programs too: they get what was there before.
FilePanel::~FilePanel() {
    QList<QUrl> folders = sidebarUrls();
    for (const QUrl& added : m_addedFolders) folders.removeAll(added);
    setSidebarUrls(folders);
}

void FilePanel::showUsersFolders() {
    const QList<QUrl> before = sidebarUrls();
    QList<QUrl> folders = usersFolders();
    for (const QUrl& folder : folders)
        if (!before.contains(folder)) m_addedFolders.append(folder);
    for (const QUrl& folder : before)
        if (!folders.contains(folder)) folders.append(folder);
    setSidebarUrls(folders);
    auto* side = findChild<QAbstractItemView*>(QStringLiteral("sidebar"));
    side->setMinimumWidth(std::min(kWidestSide, side->sizeHintForColumn(0) + kSideMargins));
}

// The toolkit shows them below the field, over the buttons and what stands beside them.
void FilePanel::placeNamesOverList() {
    const QPoint above = m_field->mapToGlobal(QPoint(0, 0)) - QPoint(0, m_names->height());
    if (m_names->pos() != above && above.y() >= screen()->availableGeometry().top()) m_names->move(above);
}

bool FilePanel::showWholeName(QWidget* viewport, const QHelpEvent& event) {
    auto* view = qobject_cast<QAbstractItemView*>(viewport->parentWidget());
    const QModelIndex index = view ? view->indexAt(event.pos()) : QModelIndex();
    if (!index.isValid() || index.column() != 0) return false;
    const QRect place = view->visualRect(index);
    const bool isCut = view->sizeHintForIndex(index).width() > place.width();
    QToolTip::showText(event.globalPos(), isCut ? plainToolTip(index.data().toString()) : QString(), viewport, place);
    return true;
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

bool FilePanel::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    // The toolkit switches the button off when there is no file of the name that it takes from between quotation marks.
    if (watched == m_button && type == QEvent::EnabledChange && !m_button->isEnabled() && hasQuotes())
        m_button->setEnabled(true);
    if (watched == m_names && (type == QEvent::Show || type == QEvent::Move || type == QEvent::Resize))
        placeNamesOverList();
    if (type == QEvent::ToolTip && watched != m_names && watched->isWidgetType() &&
        showWholeName(static_cast<QWidget*>(watched), static_cast<QHelpEvent&>(*event)))
        return true;
    return QFileDialog::eventFilter(watched, event);
}

}  // namespace qm
