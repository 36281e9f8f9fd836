#include "ui/dialogs/FileAcceptance.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include "app/state/FilePath.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

// A folder of real files, because acceptance looks at the disk.
struct Folder {
    QString file(const QString& name) const {
        const QString path = dir.filePath(name);
        QFile made(path);
        REQUIRE(made.open(QIODevice::WriteOnly));
        return path;
    }

    QString folder(const QString& name) const {
        REQUIRE(QDir(dir.path()).mkpath(name));
        return dir.filePath(name);
    }

    QString link(const QString& name, const QString& target) const {
        REQUIRE(QFile::link(target, dir.filePath(name)));
        return dir.filePath(name);
    }

    QTemporaryDir dir;
};

std::optional<QString> first(const QStringList& paths) {
    QList<QUrl> urls;
    for (const QString& path : paths) urls.append(QUrl::fromLocalFile(path));
    return droppedFiles(urls).value(0);
}

}  // namespace

TEST_CASE("the extension is what follows the last dot of the last component") {
    CHECK(pathExtension("/m/song.mp3") == "mp3");
    CHECK(pathExtension("/m/a.tar.gz") == "gz");
    CHECK(pathExtension("/m.d/a.B c") == "B c");
    CHECK(pathExtension("song.MP3") == "MP3");
    CHECK(pathExtension("/m/folder.mov/") == "mov");
    CHECK(pathExtension("/m/folder.mov//") == "mov");
}

TEST_CASE("hidden names, trailing dots and names without a dot have no extension") {
    for (const char* path : {"/m/.mp3", "/m/song.", "/m/song", "/m.d/song", "", "/", ".", ".mp3"}) {
        CAPTURE(path);
        CHECK(pathExtension(path).isEmpty());
    }
}

TEST_CASE("the open panel offers fourteen extensions, then the same in capitals") {
    CHECK(openPanelTypes() == QStringList{"avi", "mp4",  "m4v", "mov",  "mp3", "m4a", "m4p", "aiff", "aif", "aifc",
                                          "wav", "dv",   "wmv", "caf",  "AVI", "MP4", "M4V", "MOV",  "MP3", "M4A",
                                          "M4P", "AIFF", "AIF", "AIFC", "WAV", "DV",  "WMV", "CAF"});
}

TEST_CASE("a drop takes twelve extensions, without m4v and aifc") {
    CHECK(dropTypes() ==
          QStringList{"mov", "avi", "mp4", "mp3", "m4a", "m4p", "aiff", "aif", "caf", "wav", "dv", "wmv"});
}

TEST_CASE_FIXTURE(Folder, "a dropped file is judged by its extension in any case") {
    for (const char* name : {"a.mp3", "b.MP3", "Song.Mp3", "c.mov", "d.wav", "e.tar.caf"}) {
        CAPTURE(name);
        CHECK(isValidFileForDrop(file(name)));
    }
    for (const char* name : {"song.M4V", "a.m4v", "a.aifc", "a.txt", "noext", ".mp3", "dot."}) {
        CAPTURE(name);
        CHECK_FALSE(isValidFileForDrop(file(name)));
    }
}

TEST_CASE_FIXTURE(Folder, "a missing file is refused") {
    CHECK_FALSE(isValidFileForDrop(dir.filePath("missing.mp3")));
    CHECK_FALSE(isValidFileForDrop(link("dangling.mp3", dir.filePath("missing.mp3"))));
}

TEST_CASE_FIXTURE(Folder, "a folder is refused whatever its name") {
    CHECK_FALSE(isValidFileForDrop(folder("x.mov")));
    CHECK_FALSE(isValidFileForDrop(folder("y.mov") + u'/'));
}

TEST_CASE_FIXTURE(Folder, "links are followed to what they lead to") {
    CHECK(isValidFileForDrop(link("to-file.mp3", file("real"))));
    CHECK_FALSE(isValidFileForDrop(link("to-folder.mp3", folder("z"))));
}

TEST_CASE("of several dropped files the first in alphabetical order counts, ignoring case") {
    CHECK(first({"/m/b.mp3", "/m/A.wav"}) == "/m/A.wav");
    CHECK(first({"/m/B.mp3", "/m/a.wav"}) == "/m/a.wav");
    CHECK(first({"/m/song 10.mp3", "/m/song 2.mp3"}) == "/m/song 10.mp3");
}

TEST_CASE("whole paths are compared, not file names") {
    CHECK(first({"/b/a.mp3", "/a/b.mp3"}) == "/a/b.mp3");
}

TEST_CASE("a drop without local files has no first one") {
    CHECK(droppedFiles({}).isEmpty());
    CHECK(droppedFiles({QUrl("http://nowhere.invalid/a.mp3")}).isEmpty());
    CHECK(droppedFiles({QUrl("http://nowhere.invalid/a.mp3"), QUrl::fromLocalFile("/m/b.mp3")}) ==
          QStringList{"/m/b.mp3"});
}

TEST_CASE_FIXTURE(Folder, "a chosen link stands for the file behind it, a file for itself") {
    const QString real = QFileInfo(file("real.mp3")).canonicalFilePath();
    CHECK(resolvedPath(link("alias.mp3", real)) == real);
    CHECK(resolvedPath(real) == real);
    CHECK(resolvedPath(dir.filePath("missing.mp3")) == dir.filePath("missing.mp3"));
}
