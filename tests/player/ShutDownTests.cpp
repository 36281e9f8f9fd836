#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>

#include "app/WindowPosition.h"
#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

TEST_CASE_FIXTURE(
    ControllerFixture,
    "quitting stores whether the toolbar shows, then saves play list and position, on the first run too") {
    start();
    log.take();
    outlets.toolbar->hide();
    bool filesBefore = true;
    log.atEvent = [&](const std::string& event) {
        if (event.starts_with("store ToolbarOpen")) filesBefore = QDir(home.supportFolder()).exists();
    };
    controller->applicationWillTerminate();
    CHECK(log.events() == Events{"store ToolbarOpen false"});
    CHECK_FALSE(filesBefore);
    CHECK(QDir(home.supportFolder()).entryList(QDir::Files) == QStringList{"Quillmere.xml", "windowposition"});
}

TEST_CASE_FIXTURE(ControllerFixture, "quitting stores an open toolbar, also while the window itself is hidden") {
    start();
    REQUIRE_FALSE(outlets.mainWindow->isVisible());
    controller->applicationWillTerminate();
    CHECK(prefs.boolForKey("ToolbarOpen"));
}

TEST_CASE_FIXTURE(ControllerFixture, "quitting does not end the process by itself") {
    start();
    controller->applicationWillTerminate();
    CHECK(log.count("exit") == 0);
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "closing the main window saves list and position, leaves the toolbar's state, and ends with status zero") {
    prefs.setBool("ToolbarOpen", false);
    start();
    outlets.mainWindow->show();
    log.take();
    bool saved = false;
    log.atEvent = [&](const std::string& event) {
        if (event == "exit 0") {
            saved = QFile::exists(home.supportFolder() + "/Quillmere.xml") && QFile::exists(windowPositionPath());
        }
    };
    outlets.mainWindow->close();
    CHECK(log.events() == Events{"exit 0"});
    CHECK(saved);
    CHECK_FALSE(prefs.boolForKey("ToolbarOpen"));
}

TEST_CASE_FIXTURE(ControllerFixture, "closing the main window ends the program while other windows are open") {
    start();
    outlets.audioLevelsPanel->show();
    outlets.videoPanel->show();
    controller->windowWillClose(outlets.mainWindow);
    CHECK(log.count("exit 0") == 1);
    CHECK(outlets.videoPanel->isVisible());
}

TEST_CASE_FIXTURE(ControllerFixture, "closing another window saves nothing and ends nothing") {
    start();
    log.take();
    controller->windowWillClose(outlets.videoPanel);
    controller->windowWillClose(outlets.audioLevelsPanel);
    CHECK(log.events() == Events{});
    CHECK_FALSE(QFile::exists(home.supportFolder() + "/Quillmere.xml"));
    CHECK_FALSE(QFile::exists(windowPositionPath()));
}

TEST_CASE_FIXTURE(ControllerFixture, "the position file is overwritten in place") {
    start();
    controller->applicationWillTerminate();
    const QString link = home.path() + "/link";
    REQUIRE(QFile(windowPositionPath()).exists());
    REQUIRE(QFile::remove(windowPositionPath()));
    QFile other(link);
    REQUIRE(other.open(QIODevice::WriteOnly));
    other.write("an older and much longer text than the one that will be written over it, to be cut away");
    other.close();
    REQUIRE(QFile::link(link, windowPositionPath()));
    controller->applicationWillTerminate();
    CHECK(QFileInfo(windowPositionPath()).isSymLink());
    CHECK(contents(link).endsWith(" "));
    CHECK(contents(link).size() < 50);
}

TEST_CASE_FIXTURE(ControllerFixture, "a position that cannot be written is only a log line") {
    start();
    QDir().mkpath(windowPositionPath());
    log.take();
    controller->applicationWillTerminate();
    CHECK(log.count("log cleanupWhenClosing") == 1);
    CHECK(QFile::exists(home.supportFolder() + "/Quillmere.xml"));
}

TEST_CASE_FIXTURE(ControllerFixture, "position and size of the main window survive a restart") {
    start();
    outlets.mainWindow->resize(510, 420);
    outlets.mainWindow->move(33, 44);
    controller->applicationWillTerminate();
    outlets.mainWindow->setGeometry(0, 0, 300, 300);
    start();
    CHECK(outlets.mainWindow->size() == QSize(510, 420));
    CHECK(outlets.mainWindow->pos() == QPoint(33, 44));
}

TEST_CASE_FIXTURE(ControllerFixture, "list and tone survive a restart; speed, pitch, balance and marks do not") {
    startWithLoadedTrack();
    controller->bassMax();
    controller->trebleMin();
    controller->speed05();
    controller->semiToneUp();
    controller->balanceLeftMax();
    engine.movie()->time.timeValue = 600;
    controller->markAUpdate();
    controller->markBUpdate();
    controller->applicationWillTerminate();

    start();
    CHECK(controller->trackArray == std::vector<QString>{"/music/one.wav", "/music/two.wav"});
    CHECK(controller->bassArray == std::vector<std::int16_t>{256, 128});
    CHECK(controller->trebleArray == std::vector<std::int16_t>{0, 128});
    CHECK(controller->markAarray == std::vector<std::int64_t>{0, 0});
    CHECK(controller->markBarray == std::vector<std::int64_t>{60000, 60000});
    CHECK(controller->rate == 1.0f);
    CHECK(controller->pitch == 0.0f);
    CHECK(controller->balance == 0.0f);
    CHECK_FALSE(controller->markBset);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a musician adds a song, loops a passage of it, slows and lowers it, and finds it on top of the list "
                  "the next day") {
    const QString song = home.path() + "/song.wav";
    QFile file(song);
    REQUIRE(file.open(QIODevice::WriteOnly));
    file.close();
    start();
    addRow("/music/older.wav");
    REQUIRE(outlets.playList->acceptDrop({QUrl::fromLocalFile(song)}));
    outlets.playList->selectRowIndex(0);
    controller->playForward();
    fire(controller->movieTimer.get());
    engine.movie()->time.timeValue = 1200;
    controller->markAUpdate();
    engine.movie()->time.timeValue = 3000;
    controller->markBUpdate();
    log.take();
    controller->loopSwitch();
    controller->speedDown();
    controller->semiToneDown();
    CHECK(log.events() == Events{"setSelection 1200/600 + 1800/600", "setLoops YES", "setPlaysSelectionOnly YES",
                                 "setRate 0.95", "setPitch -100"});
    CHECK(outlets.loopIn->text() == "00:00:02");
    CHECK(outlets.loopOut->text() == "00:00:05");
    controller->applicationWillTerminate();
    start();
    CHECK(controller->trackArray == std::vector<QString>{song, "/music/older.wav"});
    CHECK(outlets.trackTotal->text() == "2 items");
}
