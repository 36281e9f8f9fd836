#include "remote/DesktopLauncher.h"

#include <doctest/doctest.h>

#include <QtCore/qtestsupport_core.h>
#include <QDialog>
#include <QFile>
#include <QMimeDatabase>
#include <QUrl>

#include "remote/DesktopEntry.h"
#include "remote/RemotePlayer.h"
#include "support/widgets/LivingWindow.h"
#include "ui/actions/ActionTable.h"
#include "ui/dialogs/FileAcceptance.h"

using namespace qm;

namespace {

struct Launched {
    LivingWindow living;
    RemotePlayer remote{
        living.controller,          living.controller,      living.outlets, living.fixture.engine.toolbox,
        living.controller.abLoop(), living.window.actions()};
    QList<QByteArray> tokens;
    QStringList told;
    DesktopLauncher launcher{remote, living.controller.trackLoader(), living.window.actions(),
                             [this](const QByteArray& token) { tokens << token; }};

    QString pathOf(const char* name) { return living.fixture.home.path() + u'/' + QString::fromLatin1(name); }
    QString file(const char* name) {
        const QString path = pathOf(name);
        QFile file(path);
        REQUIRE(file.open(QIODevice::WriteOnly));
        return path;
    }
    QString uri(const char* name) { return QUrl::fromLocalFile(file(name)).toString(QUrl::FullyEncoded); }
    void listen() {
        QObject::connect(&living.controller.notices(), &Notices::told, &living.window,
                         [this](const Notice& notice) { told.append(notice.text); });
    }
    int rows() { return living.controller.count(); }
    void turn() {
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    }
};

// A list of the desktop file, as its items.
QStringList entry(const char* key) {
    QFile file(QStringLiteral(DESKTOP_FILE));
    REQUIRE(file.open(QIODevice::ReadOnly));
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith(QByteArray(key) + '='))
            return QString::fromUtf8(line.mid(line.indexOf('=') + 1)).split(u';', Qt::SkipEmptyParts);
    return {};
}

}  // namespace

TEST_CASE("files that a desktop opens come to the list one after another, the last on top") {
    Launched start;
    start.launcher.open({start.uri("one.wav"), start.uri("a flac.flac"), start.uri("two tunes.mp3")}, {});
    CHECK(start.rows() == 0);  // the caller has its answer first
    CHECK(QTest::qWaitFor([&] { return start.rows() == 3; }));
    CHECK(start.living.controller.trackArray ==
          std::vector<QString>{start.pathOf("two tunes.mp3"), start.pathOf("a flac.flac"), start.pathOf("one.wav")});
    start.turn();
    CHECK(start.living.outlets.playList->selectedRow() == 0);
}

TEST_CASE("what a desktop opens that is no file, a folder or not there is told and leaves the track as it is") {
    Launched start;
    start.living.loadTrack();
    start.listen();
    const QString folder = start.living.fixture.home.path();
    start.launcher.open({QStringLiteral("https://example.org/a.mp3"), QUrl::fromLocalFile(folder).toString(),
                         QUrl::fromLocalFile(start.pathOf("gone.flac")).toString()},
                        {});
    start.turn();
    CHECK(start.rows() == 1);
    CHECK(start.living.controller.qtMovie);
    REQUIRE(start.told.size() == 3);
    CHECK(start.told[0] == "Web addresses are not played: https://example.org/a.mp3");
    CHECK(start.told[1].startsWith(QStringLiteral("Folders are not played")));
    CHECK(start.told[2] == "gone.flac cannot be found in " + folder);
}

TEST_CASE("files that a desktop opens and that hold no sound are told of together") {
    Launched start;
    start.listen();
    const QStringList uris{start.uri("notes.txt"), start.uri("cover.jpg")};
    for (const char* name : {"notes.txt", "cover.jpg"})
        start.living.fixture.engine.unreadable.insert(start.pathOf(name).toStdString());
    start.launcher.open(uris, {});
    CHECK(
        QTest::qWaitFor([&] { return start.told.contains(QStringLiteral("Nothing in these files can be played.")); }));
    CHECK(start.rows() == 0);
}

TEST_CASE("of a single file that a desktop opens it is told what is wrong with it") {
    Launched start;
    start.listen();
    start.living.fixture.engine.unreadable.insert(start.pathOf("notes.txt").toStdString());
    start.launcher.open({start.uri("notes.txt")}, {});
    CHECK(QTest::qWaitFor([&] { return !start.told.isEmpty(); }));
    start.turn();
    CHECK(start.told == QStringList{"notes.txt cannot be read: not a media file"});
}

TEST_CASE("play while a desktop's files are being opened plays the last of them") {
    Launched start;
    start.living.fixture.log.atEvent = [&](const std::string& event) {
        if (event.starts_with("open ") && event.ends_with("one.flac")) start.remote.play();
    };
    start.launcher.open({start.uri("one.flac"), start.uri("two.flac"), start.uri("three.flac")}, {});
    CHECK(QTest::qWaitFor([&] { return start.living.controller.isPlaying; }));
    CHECK(start.rows() == 3);
    CHECK(start.living.controller.loadedPath == start.pathOf("three.flac"));
}

TEST_CASE("the program comes to the front with what the desktop gives for it") {
    Launched start;
    start.launcher.activate({});
    start.launcher.activate({{QStringLiteral("desktop-startup-id"), QStringLiteral("old_TIME1")}});
    start.launcher.open({}, {{QStringLiteral("desktop-startup-id"), QStringLiteral("old_TIME1")},
                             {QStringLiteral("activation-token"), QStringLiteral("new")}});
    CHECK(start.tokens == QList<QByteArray>{QByteArray(), "old_TIME1", "new"});
}

TEST_CASE("files that are opened while a dialog asks wait for its answer, and none is lost") {
    Launched start;
    const QString uri = start.uri("one.wav");
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    start.launcher.open({uri}, {});
    start.turn();
    CHECK(start.rows() == 0);
    dialog.close();
    CHECK(QTest::qWaitFor([&] { return start.rows() == 1; }));
}

TEST_CASE("an action that the icon does not offer is none") {
    Launched start;
    CHECK_FALSE(start.launcher.activateAction(QStringLiteral("clearList"), {}));
    CHECK_FALSE(start.launcher.activateAction(QString(), {}));
    CHECK(start.tokens.isEmpty());
}

TEST_CASE("the action that the icon offers is the player's own") {
    Launched start;
    for (const QString& action : desktopActions()) CHECK(actionNamed(action).has_value());
    QStringList sent;
    QObject::connect(&start.living.window.actions(), &ActionTable::sent, [&](ActionId id) { sent << actionName(id); });
    CHECK(start.launcher.activateAction(QStringLiteral("openFile"), {}));
    start.turn();
    CHECK(sent == QStringList{QStringLiteral("openFile")});
    CHECK(start.tokens.size() == 1);
}

TEST_CASE("the desktop file says what the program says of itself") {
    CHECK(QStringLiteral(DESKTOP_FILE).endsWith(u'/' + kDesktopId + QStringLiteral(".desktop")));
    CHECK(entry("DBusActivatable") == QStringList{QStringLiteral("true")});
    CHECK(entry("MimeType") == playedMimeTypes());
    CHECK(entry("Actions") == desktopActions());
}

// What a desktop takes such a file for; of some kinds it knows nothing.
TEST_CASE("every kind of file that is played is one that the desktop offers the program for") {
    const QMimeDatabase kinds;
    int known = 0;
    for (const QString& type : soundTypes()) {
        const QMimeType kind = kinds.mimeTypeForFile(QStringLiteral("song.") + type, QMimeDatabase::MatchExtension);
        if (kind.isDefault()) continue;
        ++known;
        const QStringList names = QStringList(kind.name()) + kind.aliases();
        const bool offered = std::any_of(names.begin(), names.end(),
                                         [](const QString& name) { return playedMimeTypes().contains(name); });
        CHECK_MESSAGE(offered, type.toStdString() << " is " << kind.name().toStdString());
    }
    CHECK(known >= 18);
}
