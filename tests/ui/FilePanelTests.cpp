#include "ui/dialogs/FilePanel.h"

#include <doctest/doctest.h>

#include <QAction>
#include <QApplication>
#include <QCompleter>
#include <QDeadlineTimer>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <QTreeView>
#include <QWindow>

#include "support/widgets/TestText.h"
#include "ui/dialogs/DialogStyle.h"
#include "ui/dialogs/FileAcceptance.h"
#include "ui/dialogs/SavePanel.h"

// As the system hands a key to a window: shortcuts first, then whoever has the focus.
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers,
                                    const QString& text = QString(), bool repeats = false, ushort count = 1);

using namespace qm;

namespace {

const QString kMix = QStringLiteral("Blue Monday (12\" mix).mov");
const QString kSlow = QStringLiteral("solo \"slow\" take.mov");

struct Folder {
    Folder() {
        QDir(path).mkdir(QStringLiteral("inner"));
        make(QStringLiteral("inner/precious.mov"));
        for (const QString& name : {kMix, kSlow, QStringLiteral("plain.mov")}) make(name);
    }

    QString make(const QString& name) const {
        QFile file(in(name));
        REQUIRE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }
    QString in(const QString& name) const { return path + u'/' + name; }
    QStringList names() const { return QDir(path).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    QTemporaryDir dir;
    QString path = dir.path();
};

QLineEdit& field(FilePanel& panel) {
    return *panel.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

QPushButton& acceptButton(FilePanel& panel) {
    const auto button = panel.acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open;
    return *panel.findChild<QDialogButtonBox*>()->button(button);
}

QListView& list(FilePanel& panel) {
    return *panel.findChild<QListView*>(QStringLiteral("listView"));
}

// Shows the panel and waits until it lists its folder.
void show(FilePanel& panel, int entries) {
    panel.setViewMode(QFileDialog::List);
    panel.show();
    QApplication::setActiveWindow(&panel);
    QDeadlineTimer patience(60000);
    while (list(panel).model()->rowCount(list(panel).rootIndex()) < entries && !patience.hasExpired())
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    REQUIRE(list(panel).model()->rowCount(list(panel).rootIndex()) >= entries);
}

QStringList selectedNames(FilePanel& panel) {
    QStringList names;
    for (const QModelIndex& index : list(panel).selectionModel()->selectedRows()) names.append(index.data().toString());
    return names;
}

// The names are clicked, the further ones with Ctrl.
void select(FilePanel& panel, const QStringList& names) {
    list(panel).setFocus();
    list(panel).selectionModel()->clear();
    const QModelIndex root = list(panel).rootIndex();
    for (int row = 0; row < list(panel).model()->rowCount(root); ++row) {
        const QModelIndex index = list(panel).model()->index(row, 0, root);
        if (!names.contains(index.data().toString())) continue;
        list(panel).selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        list(panel).selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
    for (const QString& name : names) REQUIRE(selectedNames(panel).contains(name));
}

void press(QWidget& panel, int key, const QString& text = {}) {
    qt_handleKeyEvent(panel.windowHandle(), QEvent::KeyPress, key, Qt::NoModifier, text);
    qt_handleKeyEvent(panel.windowHandle(), QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::processEvents();
}

// While one exists, questions that come up are answered.
struct Answers {
    explicit Answers(QMessageBox::StandardButton answer) {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this, answer] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) return;
            ++questions;
            if (auto* button = box->button(answer))
                button->click();
            else
                box->reject();
        });
        timer.start(1);
    }
    QTimer timer;
    int questions = 0;
};

}  // namespace

TEST_CASE_FIXTURE(Folder, "no key and no menu of a panel removes or renames anything, whatever is answered") {
    const Answers yes(QMessageBox::Yes);
    const QStringList before = names();
    const auto open = makeOpenPanel(nullptr, path);
    SavePanel save(nullptr, path, QStringLiteral("new.mov"));
    for (FilePanel* panel : {static_cast<FilePanel*>(open.get()), static_cast<FilePanel*>(&save)}) {
        show(*panel, 4);
        for (const QString& name : {QStringLiteral("inner"), QStringLiteral("plain.mov")}) {
            select(*panel, {name});
            press(*panel, Qt::Key_Delete);
            select(*panel, {name});
            press(*panel, Qt::Key_F2);
            press(*panel, Qt::Key_X, QStringLiteral("x"));
            select(*panel, {name});
            for (const char* action : {"qt_delete_action", "qt_rename_action"}) {
                auto* found = panel->findChild<QAction*>(QString::fromLatin1(action));
                REQUIRE(found);
                CHECK_FALSE(found->isVisible());
                found->setEnabled(true);
                found->trigger();
                QApplication::processEvents();
            }
        }
        for (const auto* view : panel->findChildren<QAbstractItemView*>())
            if (view->objectName() != "sidebar") CHECK(view->dragDropMode() == QAbstractItemView::NoDragDrop);
        panel->hide();
    }
    CHECK(yes.questions == 0);
    CHECK(names() == before);
    CHECK(QFile::exists(in("inner/precious.mov")));
}

TEST_CASE_FIXTURE(Folder, "a save panel makes folders, an open panel does not") {
    SavePanel save(nullptr, path, QStringLiteral("new.mov"));
    show(save, 4);
    save.findChild<QToolButton*>(QStringLiteral("newFolderButton"))->click();
    CHECK(QDir(in(QStringLiteral("New Folder"))).exists());
    const auto open = makeOpenPanel(nullptr, path);
    show(*open, 4);
    CHECK(open->findChild<QToolButton*>(QStringLiteral("newFolderButton"))->isHidden());
    CHECK(open->testOption(QFileDialog::ReadOnly));
}

TEST_CASE_FIXTURE(Folder, "a name with quotation marks is saved under as it stands in the field") {
    const Answers no(QMessageBox::No);
    for (const char* name : {"12\"", "a \"b\" c.mov", "\"quoted\"", "\"", "\"one\" \"two\""}) {
        CAPTURE(name);
        SavePanel panel(nullptr, path, QString::fromUtf8(name));
        show(panel, 4);
        CHECK(acceptButton(panel).isEnabled());
        acceptButton(panel).click();
        CHECK(panel.result() == QDialog::Accepted);
        CHECK(panel.chosenFiles() == QStringList{in(QString::fromUtf8(name))});
    }
    SavePanel typed(nullptr, path, QStringLiteral("new.mov"));
    show(typed, 4);
    field(typed).setFocus();
    field(typed).clear();
    for (const QChar letter : QStringLiteral("7\" x")) press(typed, letter.toUpper().unicode(), letter);
    press(typed, Qt::Key_Return, QStringLiteral("\r"));
    CHECK(typed.result() == QDialog::Accepted);
    CHECK(typed.chosenFiles() == QStringList{in(QStringLiteral("7\" x"))});
    CHECK(no.questions == 0);
}

TEST_CASE_FIXTURE(Folder,
                  "a name with quotation marks that is taken is asked about, unless it is the panel's own file") {
    SavePanel panel(nullptr, path, kMix);
    show(panel, 4);
    {
        const Answers no(QMessageBox::No);
        panel.accept();
        CHECK(no.questions == 1);
        CHECK(panel.result() == QDialog::Rejected);
        panel.setOwnFile(in(kMix));
        panel.accept();
        CHECK(no.questions == 1);
        CHECK(panel.result() == QDialog::Accepted);
    }
    SavePanel other(nullptr, path, kSlow);
    const Answers yes(QMessageBox::Yes);
    show(other, 4);
    other.accept();
    CHECK(yes.questions == 1);
    CHECK(other.chosenFiles() == QStringList{in(kSlow)});
}

TEST_CASE_FIXTURE(Folder, "a folder that is selected is gone into, and the name stays") {
    SavePanel panel(nullptr, path, kSlow);
    show(panel, 4);
    select(panel, {"inner"});
    REQUIRE(field(panel).text() == kSlow);
    panel.accept();
    CHECK(panel.result() == QDialog::Rejected);
    CHECK(panel.directory().path() == in("inner"));
    CHECK(field(panel).text() == kSlow);
    panel.accept();
    CHECK(panel.chosenFiles() == QStringList{in("inner/" + kSlow)});
}

TEST_CASE_FIXTURE(Folder, "a path with quotation marks that is typed opens its file") {
    for (const QString& text : {in(kMix), kMix, in(kSlow), kSlow}) {
        CAPTURE(text);
        const auto panel = makeOpenPanel(nullptr, path);
        show(*panel, 4);
        field(*panel).setFocus();
        field(*panel).setText(text);
        QApplication::processEvents();
        CHECK(acceptButton(*panel).isEnabled());
        press(*panel, Qt::Key_Return, QStringLiteral("\r"));
        CHECK(panel->result() == QDialog::Accepted);
        CHECK(panel->chosenFiles() == QStringList{text.startsWith(u'/') ? text : in(text)});
    }
}

TEST_CASE_FIXTURE(Folder, "files that are selected are opened, with and without quotation marks in their names") {
    for (const QStringList& chosen : {QStringList{kMix}, QStringList{kMix, kSlow},
                                      QStringList{kMix, "plain.mov", kSlow}, QStringList{"plain.mov"}}) {
        CAPTURE(chosen.join(u'|'));
        const auto panel = makeOpenPanel(nullptr, path);
        show(*panel, 4);
        select(*panel, chosen);
        acceptButton(*panel).click();
        CHECK(panel->result() == QDialog::Accepted);
        QStringList found = panel->chosenFiles(), wanted;
        for (const QString& name : chosen) wanted.append(in(name));
        found.sort();
        wanted.sort();
        CHECK(found == wanted);
    }
}

TEST_CASE_FIXTURE(Folder, "several names that are typed in quotation marks are several files") {
    const auto panel = makeOpenPanel(nullptr, path);
    show(*panel, 4);
    field(*panel).setFocus();
    field(*panel).setText("\"plain.mov\" \"" + kMix + '"');
    acceptButton(*panel).click();
    CHECK(panel->result() == QDialog::Accepted);
    CHECK(panel->chosenFiles() == QStringList{in("plain.mov"), in(kMix)});
}

TEST_CASE_FIXTURE(Folder, "a name with quotation marks that is not there is told, and the panel stays") {
    const Answers read(QMessageBox::Ok);
    const auto panel = makeOpenPanel(nullptr, path);
    show(*panel, 4);
    field(*panel).setText(QStringLiteral("not \"there\".mov"));
    panel->accept();
    CHECK(read.questions == 1);
    CHECK(panel->isVisible());
}

namespace {

// A home with folders in the user's language, as the desktop keeps them.
struct UsersHome {
    UsersHome() {
        for (const char* name : {".config", "Musik", "Schreibtisch"}) QDir(dir.path()).mkdir(QString::fromLatin1(name));
        QFile file(dir.filePath(QStringLiteral(".config/user-dirs.dirs")));
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.write(
            "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_MUSIC_DIR=\"$HOME/Musik\"\n"
            "XDG_DOWNLOAD_DIR=\"$HOME/\"\n");
        file.close();
        qputenv("HOME", dir.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", dir.filePath(QStringLiteral(".config")).toUtf8());
    }
    ~UsersHome() {
        qputenv("HOME", m_home);
        if (m_config.isNull())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", m_config);
    }
    QUrl url(const char* name) const { return QUrl::fromLocalFile(dir.path() + QString::fromLatin1(name)); }

    QTemporaryDir dir;

private:
    QByteArray m_home = qgetenv("HOME");
    QByteArray m_config = qEnvironmentVariableIsSet("XDG_CONFIG_HOME") ? qgetenv("XDG_CONFIG_HOME") : QByteArray();
};

}  // namespace

TEST_CASE("the user's folders stand at the side by the desktop's settings, and other programs' panels are left alone") {
    const UsersHome home;
    QList<QUrl> before;
    {
        QFileDialog plain;
        plain.setOption(QFileDialog::DontUseNativeDialog);
        before = plain.sidebarUrls();
    }
    {
        const auto panel = makeOpenPanel(nullptr, home.dir.path());
        CHECK(panel->sidebarUrls().mid(0, 3) ==
              QList<QUrl>{home.url("/Musik"), home.url("/Schreibtisch"), home.url("")});
        for (const QUrl& url : before) CHECK(panel->sidebarUrls().contains(url));
    }
    QFileDialog plain;
    plain.setOption(QFileDialog::DontUseNativeDialog);
    const QList<QUrl> after = plain.sidebarUrls();
    for (const QUrl& url : before) CHECK(after.contains(url));
    CHECK_FALSE(after.contains(home.url("/Musik")));
    CHECK_FALSE(after.contains(home.url("/Schreibtisch")));
}

TEST_CASE_FIXTURE(Folder, "a name of sixty letters is shown whole, a longer one under the pointer") {
    const QString sixty = QStringLiteral("Blue Lantern - Marlow Quartet - Night Ferry - second take.mp3");
    const QString longest = QString(180, u'w') + QStringLiteral(".mp3");
    make(sixty);
    make(longest);
    const auto panel = makeOpenPanel(nullptr, path);
    panel->setViewMode(QFileDialog::Detail);
    dressDialog(*panel);
    panel->resize(940, 560);  // as large as a screen lets it be
    panel->show();
    auto& tree = *panel->findChild<QTreeView*>(QStringLiteral("treeView"));
    const auto rows = [&] { return tree.model()->rowCount(tree.rootIndex()); };
    QDeadlineTimer patience(60000);
    while (rows() < 6 && !patience.hasExpired()) QApplication::processEvents(QEventLoop::AllEvents, 20);
    REQUIRE(rows() >= 6);
    QApplication::processEvents();
    CHECK(tree.header()->isSectionHidden(2));
    int found = 0;
    for (int row = 0; row < rows(); ++row) {
        const QModelIndex index = tree.model()->index(row, 0, tree.rootIndex());
        const bool fits = tree.sizeHintForIndex(index).width() <= tree.visualRect(index).width();
        const QPoint at = tree.visualRect(index).center();
        if (index.data().toString() != sixty && index.data().toString() != longest) continue;
        ++found;
        QToolTip::hideText();
        QHelpEvent event(QEvent::ToolTip, at, tree.viewport()->mapToGlobal(at));
        QApplication::sendEvent(tree.viewport(), &event);
        CHECK(fits == (index.data().toString() == sixty));
        CHECK(QToolTip::text().contains(longest) == !fits);
    }
    CHECK(found == 2);
}

TEST_CASE_FIXTURE(Folder, "the names that the field offers stand above it and cover no button") {
    const auto panel = makeOpenPanel(nullptr, path);
    show(*panel, 4);
    QWidget& names = *field(*panel).completer()->popup();
    names.setGeometry(QRect(field(*panel).mapToGlobal(QPoint(0, field(*panel).height())), QSize(300, 80)));
    names.show();
    QApplication::processEvents();
    CHECK(names.geometry().bottom() < field(*panel).mapToGlobal(QPoint(0, 0)).y());
    const QPushButton& open = acceptButton(*panel);
    CHECK_FALSE(names.geometry().intersects(QRect(open.mapToGlobal(QPoint(0, 0)), open.size())));
    names.hide();
}
