#include "library/FileWords.h"

#include <doctest/doctest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/widgets/TestText.h"
#include "ui/dialogs/FileAcceptance.h"

using namespace qm;

namespace {

struct Files {
    QTemporaryDir dir;
    QString file(const QString& name) {
        QFile made(dir.filePath(name));
        REQUIRE(made.open(QIODevice::WriteOnly));
        return made.fileName();
    }
    QString refused(const QString& name) { return dropRefusal(file(name)).text; }
};

QString failed(ErrorCategory category, const char* message = "") {
    return failureWords(QStringLiteral("/music/old/song.mp3"), {category, message});
}

}  // namespace

TEST_CASE_FIXTURE(Files, "a kind that is not played is called by its name") {
    CHECK(refused("song.ape") == "APE files are not played: song.ape");
    CHECK(refused("song.Mid") == "MIDI files are not played: song.Mid");
    CHECK(refused("film.ogv") == "Ogg files are not played: film.ogv");
    CHECK(refused("notes.txt") == "Text files are not played: notes.txt");
    CHECK(refused("cover.jpg") == "Picture files are not played: cover.jpg");
    CHECK(refused("song.xyz") == "XYZ files are not played: song.xyz");
    CHECK(refused("song") == "Files without an ending are not played: song");
}

TEST_CASE_FIXTURE(Files, "what the engine opens and neither list has is called by its name, and can be opened anyway") {
    CHECK(refused("song.flac") == "FLAC files are not taken by dropping: song.flac");
    CHECK(refused("song.FLAC") == "FLAC files are not taken by dropping: song.FLAC");
    CHECK(refused("song.ogg") == "Ogg files are not taken by dropping: song.ogg");
    CHECK(refused("song.opus") == "Opus files are not taken by dropping: song.opus");
    for (const QString& type : soundTypes()) {
        CAPTURE(type.toStdString());
        const bool isListed = dropTypes().contains(type) || openPanelTypes().contains(type);
        CHECK((dropRefusal(file("a." + type)).remedy == Remedy::OpenAnyway) == !isListed);
    }
    CHECK(dropRefusal(file("song.ape")).remedy == Remedy::None);
}

TEST_CASE_FIXTURE(Files, "of any sound only folders and what is not there are refused") {
    CHECK(soundRefusal(file("song.flac")).text.isEmpty());
    CHECK(soundRefusal(file("notes.txt")).text.isEmpty());
    CHECK(soundRefusal(dir.path()).remedy == Remedy::OpenFolder);
    CHECK(soundRefusal(QStringLiteral("/no where/song.flac")).text == "song.flac cannot be found in /no where");
}

TEST_CASE_FIXTURE(Files, "what a drop takes has no refusal") {
    CHECK(dropRefusal(file("song.Mp3")).text.isEmpty());
    CHECK(dropRefusal(file("film.mov")).text.isEmpty());
}

TEST_CASE_FIXTURE(Files, "a folder is called one, and can be opened from") {
    QDir(dir.path()).mkdir("Album.mov");
    for (const char* name : {"/Album.mov", "/Album.mov/"}) {
        const Refusal refusal = dropRefusal(dir.path() + QString::fromLatin1(name));
        CHECK(refusal.text == "Folders are not played: Album.mov");
        CHECK(refusal.remedy == Remedy::OpenFolder);
    }
}

TEST_CASE_FIXTURE(Files, "a file that is not there is told with the folder where it was looked for") {
    CHECK(dropRefusal(QStringLiteral("/no where/song.mp3")).text == "song.mp3 cannot be found in /no where");
}

TEST_CASE_FIXTURE(Files, "what only the panel takes can be added all the same, and so can what only a drop takes") {
    const Refusal refusal = dropRefusal(file("clip.m4v"));
    CHECK(refusal.text == "m4v files are not taken by dropping: clip.m4v");
    CHECK(refusal.remedy == Remedy::AddFile);
    const Refusal typed = panelRefusal(file("song.Mp3"));
    CHECK(typed.text == "Mp3 files are not offered by the panel: song.Mp3");
    CHECK(typed.remedy == Remedy::AddFile);
    const Refusal open = panelRefusal(file("song.flac"));
    CHECK(open.text == "FLAC files are not offered by the panel: song.flac");
    CHECK(open.remedy == Remedy::OpenAnyway);
    CHECK(panelRefusal(file("notes.txt")).text == "Text files are not played: notes.txt");
}

TEST_CASE("addresses are refused by their kind") {
    CHECK(addressRefusal(QUrl("https://example.org/song.mp3")).text ==
          "Web addresses are not played: https://example.org/song.mp3");
    CHECK(addressRefusal(QUrl("smb://nas/song.mp3")).text == "smb addresses are not played: smb://nas/song.mp3");
    CHECK(addressRefusal(QUrl()).text == "What was dropped is no file");
}

TEST_CASE("of a file that gives no track it is said what is wrong with it") {
    CHECK(failed(ErrorCategory::NotFound) == "song.mp3 cannot be found in /music/old");
    CHECK(failed(ErrorCategory::Unreadable, "/music: old/song.mp3: Permission denied") ==
          "song.mp3 cannot be read: Permission denied");
    CHECK(failed(ErrorCategory::Unsupported) == "song.mp3 is of a kind that is not played");
    CHECK(failed(ErrorCategory::Protected) == "song.mp3 is protected against copying and cannot be played");
    CHECK(failed(ErrorCategory::Damaged) == "song.mp3 is damaged, or not what its name says");
    CHECK(failed(ErrorCategory::NoAnswer) == "song.mp3 cannot be read");
    CHECK(failed(ErrorCategory::TooLong, "is too long") == "song.mp3 is too long");
    CHECK(failed(ErrorCategory::Device, "there is no media engine") ==
          "song.mp3 cannot be opened: there is no media engine");
}

TEST_CASE("a drop of several tells which one was added") {
    CHECK(onlyFirstWords(QStringLiteral("/m/A.wav"), 12, 11) == "Only A.wav was added, the first of 12");
    CHECK(onlyFirstWords(QStringLiteral("/m/A.wav"), 3, 0) == "Only A.wav was added, the other 2 are not played");
    CHECK(onlyFirstWords(QStringLiteral("/m/A.wav"), 2, 0) == "Only A.wav was added, the other is not played");
    CHECK(firstWillBeAddedWords({"/m/A.wav", "/m/b.wav"}) == "Only A.wav will be added, the first of 2");
}
