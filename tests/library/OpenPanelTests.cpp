#include <QAbstractProxyModel>
#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileSystemModel>
#include <QTemporaryDir>

#include "library/PanelFolder.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/dialogs/FileAcceptance.h"
#include "ui/dialogs/FilePanel.h"

using namespace qm;

namespace {

void makeFile(const QString& path) {
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly));
}

// The names on offer in the panel's folder, sorted, once the panel has read it.
QStringList offered(QFileDialog& panel, const QString& folder, const QString& lastName) {
    auto* proxy = qobject_cast<QAbstractProxyModel*>(panel.proxyModel());
    REQUIRE(proxy != nullptr);
    auto* files = qobject_cast<QFileSystemModel*>(proxy->sourceModel());
    REQUIRE(files != nullptr);
    const auto names = [&] {
        QStringList list;
        const QModelIndex root = proxy->mapFromSource(files->index(folder));
        for (int row = 0; row < proxy->rowCount(root); ++row) list.append(proxy->index(row, 0, root).data().toString());
        list.sort();
        return list;
    };
    QDeadlineTimer patience(10000);
    while (!names().contains(lastName) && !patience.hasExpired())
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    REQUIRE(names().contains(lastName));
    return names();
}

}  // namespace

TEST_CASE("the panel opens several existing files, no folders, with links resolved") {
    const auto panel = makeOpenPanel(nullptr, QDir::tempPath());
    CHECK(panel->acceptMode() == QFileDialog::AcceptOpen);
    CHECK(panel->fileMode() == QFileDialog::ExistingFiles);
    CHECK_FALSE(panel->testOption(QFileDialog::DontResolveSymlinks));
    CHECK(panel->testOption(QFileDialog::DontUseNativeDialog));
}

TEST_CASE("the panel offers an extension only as the list writes it, and every folder") {
    QTemporaryDir dir;
    for (const char* name : {"a.mp3", "b.MP3", "c.Mp3", "d.m4v", "e.M4V", "f.txt", "noext", "zz.wav"})
        makeFile(dir.filePath(name));
    QDir(dir.path()).mkdir("folder.txt");
    const auto panel = makeOpenPanel(nullptr, dir.path());
    panel->show();
    CHECK(offered(*panel, dir.path(), "zz.wav") ==
          QStringList{"a.mp3", "b.MP3", "d.m4v", "e.M4V", "folder.txt", "zz.wav"});
}

TEST_CASE_FIXTURE(ControllerFixture, "a cancelled panel changes nothing") {
    startWithLoadedTrack();
    const Events before = everything();
    controller->trackLoader().setRunPanel([](FilePanel&) -> std::optional<QStringList> { return std::nullopt; });
    controller->openFile();
    CHECK(everything() == before);
    CHECK(log.events().empty());
    CHECK(controller->count() == 2);
}

TEST_CASE_FIXTURE(ControllerFixture, "chosen files are added in the panel's order, the last ends on top and loaded") {
    startWithRows({"/music/old.wav"});
    controller->trackLoader().setRunPanel([](FilePanel&) {
        return std::optional(QStringList{"/music/b.mp3", "/music/a.mp3"});
    });
    controller->openFile();
    QDeadlineTimer patience(60000);
    while (controller->trackLoader().queue().isBusy() && !patience.hasExpired()) QApplication::processEvents();
    CHECK(controller->trackArray == std::vector<QString>{"/music/a.mp3", "/music/b.mp3", "/music/old.wav"});
    CHECK(controller->loadedPath == "/music/a.mp3");
    CHECK(log.count("open ") == 2);
}

TEST_CASE_FIXTURE(ControllerFixture, "a chosen link is added as the file behind it") {
    start();
    makeFile(home.path() + "/real.mp3");
    REQUIRE(QFile::link(home.path() + "/real.mp3", home.path() + "/alias.mp3"));
    controller->trackLoader().setRunPanel(
        [this](FilePanel&) { return std::optional(QStringList{home.path() + "/alias.mp3"}); });
    controller->openFile();
    CHECK(controller->trackArray.at(0) == QFileInfo(home.path() + "/real.mp3").canonicalFilePath());
}

TEST_CASE_FIXTURE(ControllerFixture, "a file whose extension the panel does not offer is not opened when typed") {
    start();
    controller->trackLoader().setRunPanel([](FilePanel&) {
        return std::optional(QStringList{"/music/a.Mp3", "/music/b.mp3"});
    });
    controller->openFile();
    CHECK(controller->trackArray == std::vector<QString>{"/music/b.mp3"});
}

TEST_CASE_FIXTURE(ControllerFixture, "the panel opens where files were last chosen") {
    start();
    QStringList folders;
    const QString music = home.path() + "/music";
    QDir().mkpath(music);
    controller->trackLoader().setRunPanel([&](FilePanel& panel) {
        folders.append(panel.directory().path());
        return std::optional(QStringList{music + "/b.mp3"});
    });
    controller->openFile();
    controller->openFile();
    CHECK(folders == QStringList{home.path(), music});
}

TEST_CASE_FIXTURE(ControllerFixture, "the folder is remembered by the next run, whatever its name") {
    start();
    const QString music = home.path() + QStringLiteral("/Müsik ライブ");
    QDir().mkpath(music);
    controller->trackLoader().setRunPanel([&](FilePanel&) { return std::optional(QStringList{music + "/b.mp3"}); });
    controller->openFile();
    PanelFolder next;
    CHECK(next.last() == music);
    QFile file(panelFolderPath());
    REQUIRE(file.open(QIODevice::ReadOnly));
    CHECK(file.readAll() == music.toUtf8());
}

TEST_CASE_FIXTURE(ControllerFixture, "a remembered folder that is gone, or is none, gives way to the home folder") {
    QDir().mkpath(QFileInfo(panelFolderPath()).path());
    QFile file(panelFolderPath());
    REQUIRE(file.open(QIODevice::WriteOnly));
    SUBCASE("gone") {
        file.write("/nowhere/at/all");
    }
    SUBCASE("none") {
        file.write("music");
    }
    SUBCASE("empty") {}
    file.close();
    start();
    QString folder;
    controller->trackLoader().setRunPanel([&](FilePanel& panel) -> std::optional<QStringList> {
        folder = panel.directory().path();
        return std::nullopt;
    });
    controller->openFile();
    CHECK(folder == home.path());
}
