#include "library/PlayListCopy.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <optional>

#include "library/PlayListFormat.h"
#include "support/widgets/ControllerFixture.h"
#include "support/widgets/ToldNotices.h"

using namespace qm;

namespace {

// One session of the program. It is killed when it goes without quit().
struct Session {
    PlayListArrays list;
    Outlets outlets;
    ToldNotices notices;
    PlayListFile file{list, outlets, notices};
    PlayListCopy copy{list, file, notices, [this](const PlayListArrays& rows) { list.replaceFrom(0, rows); }};

    Session() {
        file.loadPlayList();
        copy.start();
        waitForDisk();  // for what was left
        waitForDisk();  // for what follows from it
    }

    void waitForDisk() {
        copy.findChild<QThreadPool*>()->waitForDone();
        QCoreApplication::sendPostedEvents(&copy);
    }

    // The time for a look at the list has come, and the disk has done its work.
    void tick() {
        fire(copy.findChild<QTimer*>());
        waitForDisk();
    }

    void add(const QString& track) { list.insertEntry(0, {track, " ", " ", track, 600, 600, 128, 128, 0, 600}); }
    void quit() { copy.finish(file.savePlayList()); }
};

struct CopyFixture {
    EventLog log;
    TestHome home{log};
    std::optional<Session> session;

    CopyFixture() { QDir().mkpath(home.supportFolder()); }

    Session& start() { return session.emplace(); }
    void kill() { session.reset(); }
    void quit() {
        session->quit();
        session.reset();
    }

    // A session that had this track, and did not quit.
    void killWith(const QString& track) {
        start().add(track);
        session->tick();
        kill();
    }

    QString copyPath() const { return home.supportFolder() + "/Quillmere.unsaved.xml"; }
    QStringList files() const { return QDir(home.supportFolder()).entryList(QDir::Files | QDir::Hidden); }

    static PlayListArrays read(const QString& path) {
        QFile file(path);
        REQUIRE(file.open(QIODevice::ReadOnly));
        PlayListArrays rows;
        CHECK_FALSE(readPlayList(file.readAll(), rows, Marks::Kept));
        return rows;
    }
};

}  // namespace

TEST_CASE_FIXTURE(CopyFixture,
                  "each change is in the copy after the next look, and the file itself waits for the end") {
    start();
    session->add("/music/one.wav");
    session->tick();
    CHECK(read(copyPath()) == session->list);
    session->list.markAarray[0] = 100;
    session->list.markBarray[0] = 200;
    session->tick();
    CHECK(read(copyPath()) == session->list);
    session->list.bassArray[0] = 7;
    session->list.artistArray[0] = "Ella";
    session->tick();
    CHECK(read(copyPath()) == session->list);
    session->list.removeAllEntries();
    session->tick();
    CHECK(read(copyPath()).count() == 0);
    CHECK(files() == QStringList{"Quillmere.unsaved.xml"});
}

TEST_CASE_FIXTURE(CopyFixture, "a list that does not change is not written") {
    start();
    session->tick();
    CHECK(files().isEmpty());
    session->add("/music/one.wav");
    session->tick();
    REQUIRE(QFile::remove(copyPath()));
    session->tick();
    CHECK(files().isEmpty());
}

TEST_CASE_FIXTURE(CopyFixture, "loading another track is no change of the list") {
    start().add("/music/one.wav");
    session->tick();
    REQUIRE(QFile::remove(copyPath()));
    session->list.loadedRow = 0;
    session->tick();
    CHECK(files().isEmpty());
}

TEST_CASE_FIXTURE(CopyFixture, "a quit takes the copy away, and the next start has nothing to say") {
    start().add("/music/one.wav");
    session->tick();
    quit();
    CHECK(files() == QStringList{"Quillmere.xml"});
    start();
    CHECK(session->notices.texts.isEmpty());
}

TEST_CASE_FIXTURE(CopyFixture, "after an end that was no quit the list is offered, and one button brings it back") {
    start().add("/music/one.wav");
    session->add("/music/two.wav");
    session->list.markAarray[0] = 100;
    session->list.bassArray[1] = 7;
    session->tick();
    const PlayListArrays last = session->list;
    kill();
    start();
    CHECK(session->list.count() == 0);
    REQUIRE(session->notices.texts ==
            QStringList{"Quillmere did not end properly; its last list of 2 tracks can be brought back"});
    CHECK(session->notices.last.actText == "Bring Back");
    CHECK(session->notices.last.lasts);
    session->notices.last.act();
    CHECK(session->list == last);
    CHECK(session->notices.withdrawnSubjects.contains(session->notices.last.subject));
    quit();
    CHECK(files() == QStringList{"Quillmere.xml"});
    start();
    CHECK(session->list.count() == 2);
    CHECK(session->notices.texts.isEmpty());
}

TEST_CASE_FIXTURE(CopyFixture, "a copy that says what the file says is not offered") {
    start().add("/music/one.wav");
    session->tick();
    session->file.savePlayList();
    kill();
    CHECK(QFileInfo::exists(copyPath()));
    start();
    CHECK(session->notices.texts.isEmpty());
    CHECK_FALSE(QFileInfo::exists(copyPath()));
}

TEST_CASE_FIXTURE(CopyFixture, "a list that is killed again before it was brought back is offered again") {
    killWith("/music/one.wav");
    for (int i = 0; i < 3; ++i) {
        start();
        CHECK(session->notices.texts.size() == 1);
        session->tick();
        kill();
    }
    CHECK(read(copyPath()).trackArray == std::vector<QString>{"/music/one.wav"});
}

TEST_CASE_FIXTURE(CopyFixture, "tracks of this session stay on top when the last list is brought back") {
    start().add("/music/old.wav");
    quit();
    killWith("/music/lost.wav");
    start().add("/music/new.wav");
    session->tick();
    session->notices.last.act();
    CHECK(session->list.trackArray == std::vector<QString>{"/music/new.wav", "/music/lost.wav", "/music/old.wav"});
}

TEST_CASE_FIXTURE(CopyFixture, "a list that was offered and not taken is kept under another name") {
    const QString kept = home.supportFolder() + "/Quillmere.unsaved (not brought back).xml";
    killWith("/music/lost.wav");
    start();
    SUBCASE("at the quit") {}
    SUBCASE("when this session's own list changes") {
        session->add("/music/new.wav");
        session->tick();
        CHECK(read(copyPath()).trackArray == std::vector<QString>{"/music/new.wav"});
        CHECK(read(kept).trackArray == std::vector<QString>{"/music/lost.wav"});
    }
    quit();
    CHECK(read(kept).trackArray == std::vector<QString>{"/music/lost.wav"});
    CHECK_FALSE(QFileInfo::exists(copyPath()));
    start();
    CHECK(session->notices.texts.isEmpty());
}

TEST_CASE_FIXTURE(CopyFixture, "a quit before the copy was looked for leaves it for the next start") {
    killWith("/music/lost.wav");
    {
        PlayListArrays list;
        Outlets outlets;
        ToldNotices notices;
        PlayListFile file(list, outlets, notices);
        PlayListCopy copy(list, file, notices, {});
        file.loadPlayList();
        SUBCASE("before the window stood") {}
        SUBCASE("while it was being read") {
            copy.start();
        }
        copy.finish(file.savePlayList());
    }
    start();
    CHECK(session->notices.texts.size() == 1);
}

TEST_CASE_FIXTURE(CopyFixture, "a copy that cannot be written is told once with its reason, until it can be written") {
    start();
    REQUIRE(QDir(home.supportFolder()).removeRecursively());
    QFile inTheWay(home.supportFolder());
    REQUIRE(inTheWay.open(QIODevice::WriteOnly));
    session->add("/music/one.wav");
    for (int i = 0; i < 3; ++i) session->tick();
    REQUIRE(session->notices.texts.size() == 1);
    CHECK(session->notices.last.text.startsWith("Changes of the play list cannot be kept: "));
    CHECK(log.count("log the play list cannot be kept: ") == 1);
    REQUIRE(inTheWay.remove());
    session->tick();
    CHECK(session->notices.withdrawnSubjects.contains(session->notices.last.subject));
    CHECK(read(copyPath()) == session->list);
}

TEST_CASE_FIXTURE(CopyFixture, "a list that cannot be saved at the quit is in the copy to its last change") {
    start();
    REQUIRE(QDir().mkpath(home.supportFolder() + "/Quillmere (damaged).xml"));
    session->add("/music/one.wav");
    session->copy.finish(false);
    CHECK(read(copyPath()).trackArray == std::vector<QString>{"/music/one.wav"});
    kill();
    start();
    CHECK(session->notices.texts.size() == 1);
}

TEST_CASE_FIXTURE(CopyFixture, "half files of a killed program are removed once they are old") {
    const auto make = [this](const char* name, int secondsAgo) {
        QFile file(home.supportFolder() + u'/' + name);
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.setFileTime(QDateTime::currentDateTime().addSecs(-secondsAgo), QFileDevice::FileModificationTime);
    };
    make("Quillmere.unsaved.xml.a1B2c3", 3600);
    make("Quillmere.xml.a1B2c3", 3600);
    make("Quillmere.xml.d4E5f6", 0);
    make("Quillmere.xml.of the user", 3600);
    start();
    CHECK(files() == QStringList{"Quillmere.xml.d4E5f6", "Quillmere.xml.of the user"});
}

TEST_CASE_FIXTURE(CopyFixture, "a damaged copy gives the rows before its damage") {
    killWith("/music/one.wav");
    QFile file(copyPath());
    REQUIRE(file.open(QIODevice::ReadWrite));
    REQUIRE(file.resize(file.size() - 12));
    file.close();
    start();
    CHECK(session->notices.texts ==
          QStringList{"Quillmere did not end properly; its last list of one track can be brought back"});
    CHECK(log.count("log the unsaved play list: ") == 1);
    CHECK(files().contains("Quillmere.unsaved (damaged).xml"));
}

TEST_CASE_FIXTURE(ControllerFixture, "the program brings the last list back through its notice, and undoes that too") {
    QDir().mkpath(home.supportFolder());
    {
        PlayListArrays lost;
        lost.insertEntry(0, {"/music/lost.wav", " ", " ", "Lost", 600, 600, 1, 2, 30, 400});
        QFile file(home.supportFolder() + "/Quillmere.unsaved.xml");
        REQUIRE(file.open(QIODevice::WriteOnly));
        REQUIRE(writePlayList(file, lost, Marks::Kept));
    }
    start();
    Notice told;
    QObject::connect(&controller->notices(), &Notices::told, controller.get(),
                     [&told](const Notice& notice) { told = notice; });
    controller->lookAfterPlayList();
    while (told.actText.isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    told.act();
    REQUIRE(controller->count() == 1);
    CHECK(controller->markAarray[0] == 30);
    CHECK(outlets.playList->model()->rowCount() == 1);
    controller->undo();
    CHECK(controller->count() == 0);
}
