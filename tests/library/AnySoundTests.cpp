// Open Any Sound: its panel, and what becomes of the files that are chosen there.
#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QListView>
#include <QTemporaryDir>
#include <algorithm>

#include "engine/api/MediaKinds.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/dialogs/FileAcceptance.h"
#include "ui/dialogs/FilePanel.h"

using namespace qm;

namespace {

void makeFile(const QString& path) {
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly));
}

// What can be chosen or gone into in the panel's folder, sorted, once there is so much.
QStringList offered(QFileDialog& panel, qsizetype count) {
    const auto* view = panel.findChild<QListView*>(QStringLiteral("listView"));
    REQUIRE(view);
    const auto names = [&] {
        QStringList list;
        for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row)
            list.append(view->model()->index(row, 0, view->rootIndex()).data().toString());
        list.sort();
        return list;
    };
    QDeadlineTimer patience(10000);
    while (names().size() != count && !patience.hasExpired()) QApplication::processEvents(QEventLoop::AllEvents, 50);
    return names();
}

struct AnySound : ControllerFixture {
    QStringList told;

    void listen() {
        QObject::connect(&controller->notices(), &Notices::told, controller.get(),
                         [this](const Notice& notice) { told.append(notice.text); });
    }
    void choose(const QStringList& paths) {
        controller->trackLoader().setRunPanel([paths](FilePanel&) { return std::optional(paths); });
        controller->openAnySound();
        QDeadlineTimer patience(60000);
        while (controller->trackLoader().queue().isBusy() && !patience.hasExpired()) QApplication::processEvents();
    }
    void spoil(const char* path) { engine.unreadable.insert(path); }
};

}  // namespace

TEST_CASE("any sound is every extension of the table, and the two lists are among them") {
    QStringList all;
    for (const MediaKindRow& row : mediaKinds())
        for (const FileExtension& extension : row.extensions) all.append(QLatin1StringView(extension.name));
    CHECK(soundTypes() == all);
    for (const char* type : {"flac", "ogg", "oga", "opus", "m4b", "mka", "mkv", "webm", "wv", "ac3"})
        CHECK(soundTypes().contains(QLatin1StringView(type)));
    for (const QString& type : openPanelTypes()) CHECK(soundTypes().contains(type.toLower()));
    for (const QString& type : dropTypes()) CHECK(soundTypes().contains(type));
}

TEST_CASE("the panel for any sound opens several existing files, no folders, with links resolved") {
    const auto panel = makeAnySoundPanel(nullptr, QDir::tempPath());
    CHECK(panel->windowTitle() == "Open Any Sound");
    CHECK(panel->acceptMode() == QFileDialog::AcceptOpen);
    CHECK(panel->fileMode() == QFileDialog::ExistingFiles);
    CHECK_FALSE(panel->testOption(QFileDialog::DontResolveSymlinks));
    CHECK(panel->testOption(QFileDialog::DontUseNativeDialog));
    REQUIRE(panel->nameFilters().size() == 2);
    CHECK(panel->testOption(QFileDialog::HideNameFilterDetails));
    CHECK(panel->nameFilters()[0].startsWith("Sound and video (*."));
    CHECK(panel->nameFilters()[1] == "All files (*)");
}

TEST_CASE("the panel for any sound offers every kind in any case, and all files when asked") {
    QTemporaryDir dir;
    for (const char* name : {"a.flac", "b.OPUS", "c.Mp3", "d.mkv", "e.txt", "noext", "zz.wav"})
        makeFile(dir.filePath(QString::fromLatin1(name)));
    QDir(dir.path()).mkdir(QStringLiteral("folder.txt"));
    const auto panel = makeAnySoundPanel(nullptr, dir.path());
    panel->show();
    CHECK(offered(*panel, 6) == QStringList{"a.flac", "b.OPUS", "c.Mp3", "d.mkv", "folder.txt", "zz.wav"});
    panel->selectNameFilter(panel->nameFilters().last());
    CHECK(offered(*panel, 8).size() == 8);
}

TEST_CASE_FIXTURE(AnySound, "a cancelled panel for any sound changes nothing") {
    startWithLoadedTrack();
    const Events before = everything();
    controller->trackLoader().setRunPanel([](FilePanel&) -> std::optional<QStringList> { return std::nullopt; });
    controller->openAnySound();
    CHECK(everything() == before);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(AnySound,
                  "chosen files of any kind are added in the panel's order, the last ends on top and loaded") {
    startWithRows({"/music/old.wav"});
    choose({"/music/b.flac", "/music/a.OPUS", "/music/c"});
    CHECK(controller->trackArray ==
          std::vector<QString>{"/music/c", "/music/a.OPUS", "/music/b.flac", "/music/old.wav"});
    CHECK(controller->loadedPath == "/music/c");
}

TEST_CASE_FIXTURE(AnySound, "a chosen file that does not open is passed over, with the log lines of any such file") {
    start();
    listen();
    spoil("/music/notes.txt");
    choose({"/music/a.flac", "/music/notes.txt", "/music/b.ogg"});
    CHECK(controller->trackArray == std::vector<QString>{"/music/b.ogg", "/music/a.flac"});
    CHECK(told.last() == "Added 2 of 3 files; notes.txt cannot be opened");
    CHECK(log.count("log Unable to open /music/notes.txt") == 1);
}

TEST_CASE_FIXTURE(AnySound, "where none of the chosen files opens, that is told") {
    start();
    listen();
    spoil("/music/notes.txt");
    spoil("/music/cover.jpg");
    choose({"/music/notes.txt", "/music/cover.jpg"});
    CHECK(controller->count() == 0);
    CHECK(told.last() == "Nothing in these files can be played.");
}

TEST_CASE_FIXTURE(AnySound,
                  "a chosen link is added as the file behind it, and the folder is where both panels begin next") {
    start();
    const QString music = home.path() + QStringLiteral("/music");
    QDir().mkpath(music);
    makeFile(music + "/real.flac");
    REQUIRE(QFile::link(music + "/real.flac", music + "/alias"));
    choose({music + "/alias"});
    CHECK(controller->trackArray.at(0) == QFileInfo(music + "/real.flac").canonicalFilePath());
    QStringList folders;
    controller->trackLoader().setRunPanel([&](FilePanel& panel) -> std::optional<QStringList> {
        folders.append(panel.directory().path());
        return std::nullopt;
    });
    controller->openAnySound();
    controller->openFile();
    CHECK(folders == QStringList{music, music});
}
