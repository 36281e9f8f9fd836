#include "practice/PracticeSaver.h"

#include <doctest/doctest.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "support/LogLines.h"
#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

const QString kOne = "q1-00000000000000000000000000000001";
const QString kTwo = "q1-00000000000000000000000000000002";

// The program, with a clock of its own.
struct Program {
    PracticeMemory memory;
    std::int64_t now = 1795000000000;
    PracticeSaver saver;
    QStringList told;

    explicit Program(const QString& folder) : saver(memory, PracticeFolder(folder), [this] { return now; }) {
        QObject::connect(&saver, &PracticeSaver::cannotSave, [this] { told << "cannot save"; });
        QObject::connect(&saver, &PracticeSaver::savesAgain, [this] { told << "saves again"; });
        QObject::connect(&saver, &PracticeSaver::foundFormer,
                         [this](const PracticeRecord& former) { told << "former " + former.sound; });
    }

    void waitForDisk() {
        saver.findChild<QThreadPool*>()->waitForDone();
        QCoreApplication::sendPostedEvents(&saver);
    }
    void load(const QString& sound, const QString& path = "/music/one.mp3") {
        saver.load({sound, path, "One", "Somebody", {441000, 44100}});
        waitForDisk();
    }
    void keep(std::int64_t a) {
        memory.keep({{a, a + 1000}, 1, 0}, ++now);
        saver.change();
    }
    bool isDue() const { return saver.findChild<QTimer*>()->isActive(); }
    void halfASecondLater() {
        fire(saver.findChild<QTimer*>());
        waitForDisk();
    }
    std::size_t loops() const { return memory.loops().size(); }
};

struct Home {
    QTemporaryDir home;
    QString folder = home.path() + "/Practice";

    bool has(const QString& sound) const { return QFileInfo::exists(folder + '/' + sound + ".json"); }
    std::size_t loopsIn(const QString& sound) const {
        const auto read = PracticeFolder(folder).record(sound);
        return read ? read->record.keptLoops().size() : 0;
    }
};

}  // namespace

TEST_CASE("A change is written half a second later, and read when the track is loaded again") {
    const Home home;
    Program program(home.folder);
    program.load(kOne);
    CHECK_FALSE(program.isDue());
    program.keep(5);
    CHECK(program.isDue());
    CHECK_FALSE(home.has(kOne));
    program.halfASecondLater();
    CHECK(home.loopsIn(kOne) == 1);
    CHECK_FALSE(program.isDue());
    Program next(home.folder);
    next.load(kOne);
    CHECK(next.loops() == 1);
}

TEST_CASE("The former track is saved before another one is shown, and at the end") {
    const Home home;
    Program program(home.folder);
    program.load(kOne);
    program.keep(5);
    program.load(kTwo);
    CHECK(home.loopsIn(kOne) == 1);
    CHECK(program.loops() == 0);
    program.keep(5);
    program.saver.finish();
    CHECK(home.loopsIn(kTwo) == 1);
}

TEST_CASE("Where the track was left is written on pause, at most every five seconds, and with the rest") {
    const Home home;
    const auto place = [&] { return PracticeFolder(home.folder).record(kOne)->record.last->position; };
    Program program(home.folder);
    program.load(kOne);
    program.saver.pauseAt({.position = 1, .stored = {}});
    program.waitForDisk();
    CHECK_FALSE(home.has(kOne));
    program.keep(5);
    program.halfASecondLater();
    program.now += 5000;
    program.saver.pauseAt({.position = 2, .stored = {}});
    program.waitForDisk();
    CHECK(place() == 2);
    program.now += 4999;
    program.saver.pauseAt({.position = 3, .stored = {}});
    program.waitForDisk();
    CHECK(place() == 2);
    program.saver.finish();
    CHECK(place() == 3);
}

TEST_CASE("What another program has written is there when it is read again") {
    const Home home;
    Program one(home.folder), other(home.folder);
    one.load(kOne);
    other.load(kOne);
    one.keep(5);
    one.halfASecondLater();
    other.keep(6);
    other.saver.readAgain();
    other.waitForDisk();
    CHECK(other.loops() == 2);
    other.halfASecondLater();
    CHECK(home.loopsIn(kOne) == 2);
}

TEST_CASE("What cannot be saved works all the same, is told once, and is saved when it can be") {
    const LogLines log;
    const Home home;
    QFile obstacle(home.folder);
    REQUIRE(obstacle.open(QIODevice::WriteOnly));
    Program program(home.folder);
    program.load(kOne);
    program.keep(5);
    program.halfASecondLater();
    program.keep(6);
    program.halfASecondLater();
    CHECK(program.loops() == 2);
    CHECK(program.told == QStringList{"cannot save"});
    program.load(kTwo);
    obstacle.remove();
    program.keep(7);
    program.halfASecondLater();
    CHECK(program.told == QStringList{"cannot save", "saves again"});
    CHECK(home.loopsIn(kOne) == 2);
    CHECK(home.loopsIn(kTwo) == 1);
}

TEST_CASE("What cannot be read is told and logged once, however often the file is read") {
    const LogLines log;
    const Home home;
    Program program(home.folder);
    program.load(kOne);
    program.keep(5);
    program.halfASecondLater();
    const QString path = home.folder + '/' + kOne + ".json";
    QFile file(path);
    REQUIRE(file.open(QIODevice::ReadWrite));
    QByteArray text = file.readAll();
    file.resize(0);
    file.seek(0);
    file.write(text.replace("\"loops\": [", "\"loops\": [ 5,"));
    file.close();
    Program next(home.folder);
    QObject::connect(&next.saver, &PracticeSaver::found, [&](const QString& complaint) { next.told << complaint; });
    next.load(kOne);
    next.saver.readAgain();
    next.waitForDisk();
    CHECK(next.loops() == 1);
    CHECK(next.told == QStringList{"1 of 2 loops could not be read.", ""});
    CHECK(log.lines().size() == 1);
}

TEST_CASE("A file with another sound is asked for the loops of the former one") {
    const Home home;
    Program program(home.folder);
    program.load(kOne, "/music/one.mp3");
    program.keep(5);
    program.load(kTwo, "/music/one.mp3");
    CHECK(program.told.isEmpty());
    program.saver.askForFormer();
    program.waitForDisk();
    CHECK(program.told == QStringList{"former " + kOne});
}
