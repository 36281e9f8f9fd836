#include "library/PlayListFile.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <csignal>

#include "support/NotRun.h"
#include "support/widgets/ControllerFixture.h"
#include "support/widgets/ToldNotices.h"

using namespace qm;

namespace {

constexpr char kTwoTracksCutShort[] =
    "<?xml version=\"1.0\"?><plist version=\"1.0\"><array>"
    "<dict><key>track</key><string>/music/one.wav</string><key>displayName</key><string>One</string>"
    "<key>duration</key><integer>600</integer><key>timescale</key><integer>600</integer>"
    "<key>bass</key><integer>1</integer><key>treble</key><integer>2</integer></dict>"
    "<dict><key>track</key><string>/music/tw";

struct FileFixture {
    FileFixture() { QDir().mkpath(home.supportFolder()); }
    ~FileFixture() {
        QFile::setPermissions(home.supportFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString path() const { return home.supportFolder() + "/Quillmere.xml"; }

    void write(const QByteArray& text) const { writeTo(path(), text); }

    static void writeTo(const QString& path, const QByteArray& text) {
        QFile file(path);
        REQUIRE(file.open(QIODevice::WriteOnly));
        REQUIRE(file.write(text) == text.size());
    }

    static QByteArray read(const QString& path) {
        QFile file(path);
        REQUIRE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QStringList filesInSupportFolder() const {
        return QDir(home.supportFolder()).entryList(QDir::Files | QDir::Hidden);
    }

    void addRow(const QString& track) {
        list.insertEntry(list.count(), {track, " ", " ", track, 600, 600, 128, 128, 0, 600});
    }

    ino_t inode() const {
        struct stat status {};
        REQUIRE(::stat(QFile::encodeName(path()).constData(), &status) == 0);
        return status.st_ino;
    }

    EventLog log;
    TestHome home{log};
    PlayListArrays list;
    Outlets outlets;
    ToldNotices notices;
    PlayListFile file{list, outlets, notices};
};

// The system administrator is above the permissions of files.
// While it lives no file grows beyond a few bytes, as on a full disk.
class FullDisk {
public:
    FullDisk() {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit small = m_before;
        small.rlim_cur = 1000;
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

}  // namespace

TEST_CASE_FIXTURE(FileFixture, "the file lies in the support folder, its path formed from the home folder as it is") {
    CHECK(file.path() == home.path() + "/Library/Application Support/Quillmere/Quillmere.xml");
}

TEST_CASE_FIXTURE(FileFixture, "without a home folder nothing is read and nothing is written") {
    PlayListFile homeless(list, outlets, notices, [] { return QString(); });
    addRow("/music/one.wav");
    homeless.loadPlayList();
    CHECK_FALSE(homeless.savePlayList());
    CHECK(homeless.path().isEmpty());
    CHECK(list.count() == 1);
    CHECK(filesInSupportFolder().isEmpty());
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(FileFixture, "a missing file is an empty list without a word") {
    file.loadPlayList();
    CHECK(list.count() == 0);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(FileFixture, "saving makes the folders that are missing") {
    REQUIRE(QDir(home.path() + "/Library").removeRecursively());
    addRow("/music/one.wav");
    file.savePlayList();
    CHECK(QFileInfo(path()).isFile());
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(FileFixture, "what was saved is loaded again, also tracks whose file is gone") {
    addRow("/nowhere/gone.wav");
    list.markAarray[0] = 100;
    list.markBarray[0] = 200;
    list.bassArray[0] = 5;
    file.savePlayList();
    PlayListArrays back;
    PlayListFile(back, outlets, notices).loadPlayList();
    REQUIRE(back.count() == 1);
    CHECK(back.trackArray[0] == "/nowhere/gone.wav");
    CHECK(back.bassArray[0] == 5);
    CHECK(back.markAarray[0] == 0);
    CHECK(back.markBarray[0] == 600);
}

TEST_CASE_FIXTURE(FileFixture, "an empty list is saved as an empty array, the file stays") {
    addRow("/music/one.wav");
    file.savePlayList();
    list.removeAllEntries();
    file.savePlayList();
    CHECK(read(path()).contains("<array/>"));
}

TEST_CASE_FIXTURE(FileFixture, "the file is replaced, not written over, and nothing else is left behind") {
    file.savePlayList();
    const ino_t before = inode();
    QFile held(path());
    REQUIRE(held.open(QIODevice::ReadOnly));  // keeps the old file's number from being used again
    file.savePlayList();
    CHECK(inode() != before);
    CHECK(filesInSupportFolder() == QStringList{"Quillmere.xml"});
}

TEST_CASE_FIXTURE(FileFixture, "a link to a file elsewhere stays a link") {
    const QString elsewhere = home.path() + "/kept.xml";
    writeTo(elsewhere, "<plist><array/></plist>");
    REQUIRE(QFile::link(elsewhere, path()));
    addRow("/music/one.wav");
    file.savePlayList();
    CHECK(QFileInfo(path()).isSymLink());
    CHECK(read(elsewhere).contains("/music/one.wav"));
}

TEST_CASE_FIXTURE(FileFixture, "a folder that cannot be written is one log line and the old file stays") {
    if (::geteuid() == 0) NOT_RUN_BECAUSE("the superuser may write everywhere");
    file.savePlayList();
    const QByteArray before = read(path());
    addRow("/music/one.wav");
    QFile::setPermissions(home.supportFolder(), QFile::ReadOwner | QFile::ExeOwner);
    file.savePlayList();
    CHECK(read(path()) == before);
    CHECK(log.count("log savePlayList: ") == 1);
}

TEST_CASE_FIXTURE(FileFixture, "a support folder that is a file is one log line") {
    REQUIRE(QDir(home.supportFolder()).removeRecursively());
    writeTo(home.supportFolder(), "in the way");
    file.savePlayList();
    CHECK(read(home.supportFolder()) == "in the way");
    CHECK(log.count("log savePlayList: ") == 1);
    CHECK(log.events().size() == 1);
}

TEST_CASE_FIXTURE(FileFixture, "a full disk is one log line, the old file stays whole and no half file is left") {
    file.savePlayList();
    const QByteArray before = read(path());
    for (int i = 0; i < 1000; ++i) addRow("/music/one.wav");
    {
        const FullDisk full;
        file.savePlayList();
    }
    CHECK(read(path()) == before);
    CHECK(filesInSupportFolder() == QStringList{"Quillmere.xml"});
    CHECK(log.count("log savePlayList: ") == 1);
}

TEST_CASE_FIXTURE(FileFixture, "a full disk leaves the former file in its place, however short the list is") {
    addRow("/music/one.wav");
    file.savePlayList();
    const QByteArray before = read(path());
    for (int i = 0; i < 4; ++i) addRow("/music/one.wav");
    {
        const FullDisk full;
        CHECK_FALSE(file.savePlayList());
    }
    CHECK(read(path()) == before);
    CHECK(file.savePlayList());
    CHECK(read(path()) != before);
}

TEST_CASE_FIXTURE(FileFixture, "a full disk leaves a damaged file in its place for the next save") {
    write(kTwoTracksCutShort);
    file.loadPlayList();
    for (int i = 0; i < 1000; ++i) addRow("/music/one.wav");
    {
        const FullDisk full;
        file.savePlayList();
    }
    CHECK(read(path()) == kTwoTracksCutShort);
    CHECK(filesInSupportFolder() == QStringList{"Quillmere (damaged).xml", "Quillmere.xml"});
    file.savePlayList();
    CHECK(read(home.supportFolder() + "/Quillmere (damaged).xml") == kTwoTracksCutShort);
}

TEST_CASE_FIXTURE(FileFixture, "a damaged file gives the tracks before the damage and one log line") {
    write(kTwoTracksCutShort);
    file.loadPlayList();
    CHECK(list.trackArray == std::vector<QString>{"/music/one.wav"});
    CHECK(log.count("log loadPlayList: ") == 1);
    CHECK(log.events().size() == 1);
}

TEST_CASE_FIXTURE(FileFixture, "a damaged file is kept beside the list as soon as it is read, once for all starts") {
    write(kTwoTracksCutShort);
    for (int start = 0; start < 3; ++start) {
        PlayListArrays fresh;
        PlayListFile(fresh, outlets, notices).loadPlayList();
        CHECK(filesInSupportFolder() == QStringList{"Quillmere (damaged).xml", "Quillmere.xml"});
    }
    file.loadPlayList();
    file.savePlayList();
    CHECK(read(home.supportFolder() + "/Quillmere (damaged).xml") == kTwoTracksCutShort);
    CHECK(read(path()).contains("/music/one.wav"));
    file.savePlayList();
    CHECK(filesInSupportFolder().size() == 2);
}

TEST_CASE_FIXTURE(FileFixture, "the user is told how much of a damaged file was read, and where it is kept") {
    write(kTwoTracksCutShort);
    file.loadPlayList();
    CHECK(notices.texts == QStringList{"The play list is damaged: only its first track could be read; the file is "
                                       "kept as Quillmere (damaged).xml"});
    CHECK(notices.last.lasts);
    write("hello");
    PlayListArrays fresh;
    PlayListFile next(fresh, outlets, notices);
    next.loadPlayList();
    CHECK(notices.last.text ==
          "The play list is damaged, and nothing of it could be read; the file is kept as Quillmere (damaged 2).xml");
}

TEST_CASE_FIXTURE(FileFixture, "nothing is told of a sound file") {
    file.savePlayList();
    file.loadPlayList();
    CHECK(notices.texts.isEmpty());
}

TEST_CASE_FIXTURE(FileFixture, "the list that is replaced is kept, as long as the new one is another") {
    const QString previous = home.supportFolder() + "/Quillmere.previous.xml";
    addRow("/music/one.wav");
    CHECK(file.savePlayList());
    CHECK_FALSE(QFileInfo::exists(previous));
    list.removeAllEntries();
    CHECK(file.savePlayList());
    CHECK(read(previous).contains("/music/one.wav"));
    CHECK(read(path()).contains("<array/>"));
    CHECK(file.savePlayList());
    CHECK(read(previous).contains("/music/one.wav"));
    addRow("/music/two.wav");
    CHECK(file.savePlayList());
    CHECK(read(previous).contains("<array/>"));
    CHECK(filesInSupportFolder() == QStringList{"Quillmere.previous.xml", "Quillmere.xml"});
}

TEST_CASE_FIXTURE(FileFixture, "a damaged list does not take the place of the last good one") {
    addRow("/music/good.wav");
    file.savePlayList();
    addRow("/music/better.wav");
    file.savePlayList();
    write(kTwoTracksCutShort);
    PlayListArrays fresh;
    PlayListFile next(fresh, outlets, notices);
    next.loadPlayList();
    fresh.removeAllEntries();
    CHECK(next.savePlayList());
    CHECK(read(home.supportFolder() + "/Quillmere.previous.xml").contains("/music/good.wav"));
}

TEST_CASE_FIXTURE(FileFixture, "a list that cannot be saved is told with the reason") {
    REQUIRE(QDir(home.supportFolder()).removeRecursively());
    writeTo(home.supportFolder(), "in the way");
    CHECK_FALSE(file.savePlayList());
    REQUIRE(notices.texts.size() == 1);
    CHECK(notices.last.text.startsWith("The play list could not be saved: "));
    CHECK(notices.last.text.size() > 40);
}

TEST_CASE_FIXTURE(FileFixture, "an earlier damaged file is never overwritten") {
    for (const char* text : {"first", "second", "third"}) {
        write(text);
        PlayListArrays fresh;
        PlayListFile next(fresh, outlets, notices);
        next.loadPlayList();
        next.savePlayList();
    }
    CHECK(read(home.supportFolder() + "/Quillmere (damaged).xml") == "first");
    CHECK(read(home.supportFolder() + "/Quillmere (damaged 2).xml") == "second");
    CHECK(read(home.supportFolder() + "/Quillmere (damaged 3).xml") == "third");
    CHECK(filesInSupportFolder().size() == 4);
}

TEST_CASE_FIXTURE(FileFixture, "files that are no play list give an empty list, and are kept") {
    for (const char* text : {"", "hello", "<plist><dict/></plist>", "<html></html>", "{ old = text; }"}) {
        CAPTURE(text);
        write(text);
        PlayListArrays fresh;
        PlayListFile next(fresh, outlets, notices);
        next.loadPlayList();
        CHECK(fresh.count() == 0);
    }
    CHECK(log.count("log loadPlayList: ") == 5);
}

TEST_CASE_FIXTURE(FileFixture, "a sound file is not kept aside") {
    file.savePlayList();
    file.loadPlayList();
    file.savePlayList();
    CHECK(filesInSupportFolder() == QStringList{"Quillmere.xml"});
}

TEST_CASE_FIXTURE(FileFixture, "a damaged file behind a link is kept, and the link still leads to the list") {
    const QString elsewhere = home.path() + "/kept.xml";
    writeTo(elsewhere, kTwoTracksCutShort);
    REQUIRE(QFile::link(elsewhere, path()));
    file.loadPlayList();
    file.savePlayList();
    CHECK(read(home.path() + "/kept (damaged).xml") == kTwoTracksCutShort);
    CHECK(read(path()).contains("/music/one.wav"));
}

TEST_CASE_FIXTURE(FileFixture, "a damaged file that has been taken away meanwhile does not hinder the save") {
    write("damaged");
    file.loadPlayList();
    REQUIRE(QFile::remove(path()));
    CHECK(file.savePlayList());
    CHECK(filesInSupportFolder() == QStringList{"Quillmere (damaged).xml", "Quillmere.xml"});
}

TEST_CASE_FIXTURE(FileFixture, "a file that may not be read is kept aside like a damaged one") {
    if (::geteuid() == 0) NOT_RUN_BECAUSE("the superuser may read everything");
    write("<plist><array/></plist>");
    QFile::setPermissions(path(), QFile::Permissions());
    file.loadPlayList();
    CHECK(log.count("log loadPlayList: ") == 1);
    addRow("/music/one.wav");
    file.savePlayList();
    CHECK(filesInSupportFolder().contains("Quillmere (damaged).xml"));
    CHECK(read(path()).contains("/music/one.wav"));
}

TEST_CASE_FIXTURE(FileFixture, "a pipe in the file's place is neither waited for nor read") {
    REQUIRE(::mkfifo(QFile::encodeName(path()).constData(), 0600) == 0);
    file.loadPlayList();
    CHECK(list.count() == 0);
    CHECK(log.count("log loadPlayList: ") == 1);
}

TEST_CASE_FIXTURE(FileFixture, "a folder in the file's place is left alone") {
    REQUIRE(QDir().mkpath(path() + "/inside"));
    file.loadPlayList();
    file.savePlayList();
    CHECK(list.count() == 0);
    CHECK(QDir(home.supportFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "the rows of the file are shown at start and written only at the end") {
    QDir().mkpath(home.supportFolder());
    const QString path = home.supportFolder() + "/Quillmere.xml";
    FileFixture::writeTo(
        path, QByteArray(kTwoTracksCutShort).replace("<dict><key>track</key><string>/music/tw", "</array></plist>"));
    start();
    CHECK(outlets.playList->model()->rowCount() == 1);
    CHECK(outlets.trackTotal->text() == "1 Track");
    const QByteArray before = FileFixture::read(path);
    controller->loadFileAdd("/music/new.wav", true);
    outlets.playList->selectRowIndex(1);
    controller->removeListEntry();
    CHECK(FileFixture::read(path) == before);
    controller->applicationWillTerminate();
    CHECK(FileFixture::read(path).contains("/music/new.wav"));
    CHECK_FALSE(FileFixture::read(path).contains("/music/one.wav"));
}

TEST_CASE_FIXTURE(ControllerFixture, "bass and treble of a row reach the file, its marks do not") {
    startWithLoadedTrack();
    controller->bassMax();
    controller->trebleMin();
    engine.movie()->time.timeValue = 12321;
    controller->markAUpdate();
    controller->applicationWillTerminate();
    const QByteArray text = FileFixture::read(home.supportFolder() + "/Quillmere.xml");
    CHECK(text.contains("<key>bass</key>\n\t\t<integer>256</integer>"));
    CHECK(text.contains("<key>treble</key>\n\t\t<integer>0</integer>"));
    CHECK_FALSE(text.contains("12321"));
    CHECK_FALSE(text.contains("mark"));
}
