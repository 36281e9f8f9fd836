#include "practice/PracticeFolder.h"

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "practice/JsonText.h"
#include "practice/PracticeMemory.h"

using namespace qm;

namespace {

const QString kSound = "q1-0123456789abcdef0123456789abcdef";
const QString kOther = "q1-ffffffffffffffffffffffffffffffff";
constexpr std::int64_t kNow = 1795000000000;

struct Home {
    QTemporaryDir home;
    QString path = home.path() + "/Library/Practice";
    PracticeFolder folder{path};

    QString record(const QString& sound = kSound) const { return path + '/' + sound + ".json"; }
    QStringList files() const { return QDir(path).entryList(QDir::Files); }

    static QByteArray textOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void write(const QString& path, const QByteArray& text) {
        QFile file(path);
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
};

// One program with one track.
struct Program {
    const PracticeFolder& folder;
    PracticeMemory memory;
    std::int64_t now = kNow;

    explicit Program(const PracticeFolder& in, const QString& sound = kSound, const QString& path = "/music/one.mp3")
        : folder(in) {
        memory.load({sound, path, "One", "Somebody", {441000, 44100}});
        readAgain();
    }
    void readAgain() {
        if (const auto read = folder.record(memory.track().sound)) memory.found(read->record, now);
    }
    QString keep(std::int64_t a) { return memory.keep({{a, a + 1000}, 1, 0}, ++now).id; }
    JsonStore::Outcome save() {
        const auto unsaved = memory.takeUnsaved(true);
        if (!unsaved) return JsonStore::Outcome::Written;
        const auto saved = folder.save(unsaved->first, unsaved->second, now);
        if (saved.outcome == JsonStore::Outcome::Written)
            memory.saved(saved.record, now);
        else
            memory.notSaved(unsaved->second);
        return saved.outcome;
    }
    std::vector<std::int64_t> starts() const {
        std::vector<std::int64_t> all;
        for (const KeptLoop* loop : memory.loops()) all.push_back(loop->a);
        return all;
    }
};

using Starts = std::vector<std::int64_t>;

}  // namespace

TEST_CASE("Nothing is made before something is kept") {
    const Home home;
    Program program(home.folder);
    CHECK(program.save() == JsonStore::Outcome::Written);
    CHECK_FALSE(QFileInfo::exists(home.path));
    program.keep(5);
    CHECK(program.save() == JsonStore::Outcome::Written);
    CHECK(home.files() == QStringList{kSound + ".json"});
    CHECK(Program(home.folder).starts() == Starts{5});
}

TEST_CASE("The file that was replaced is found in last good, whole") {
    const Home home;
    Program program(home.folder);
    program.keep(5);
    program.save();
    const QByteArray first = Home::textOf(home.record());
    CHECK_FALSE(QFileInfo::exists(home.path + "/last good"));
    program.keep(6);
    program.save();
    CHECK(Home::textOf(home.path + "/last good/" + kSound + ".json") == first);
    CHECK(Home::textOf(home.record()) != first);
    CHECK(first.endsWith("}\n"));
}

TEST_CASE("Of a damaged file the last good one is used, and what was damaged is kept") {
    const Home home;
    Program program(home.folder);
    program.keep(5);
    program.save();
    program.keep(6);
    program.save();
    const QByteArray good = Home::textOf(home.path + "/last good/" + kSound + ".json");
    Home::write(home.record(), "{ \"loops\": [ {");
    Program next(home.folder);
    CHECK(next.starts() == Starts{5});
    CHECK(Home::textOf(home.path + '/' + kSound + " (damaged).json") == "{ \"loops\": [ {");
    next.keep(7);
    CHECK(next.save() == JsonStore::Outcome::Written);
    CHECK(Program(home.folder).starts() == Starts{5, 7});
    CHECK(Home::textOf(home.path + "/last good/" + kSound + ".json") == good);
}

TEST_CASE("A file that is gone is read from last good; one that is too large counts as damaged") {
    const Home home;
    Program program(home.folder);
    program.keep(5);
    program.save();
    program.keep(6);
    program.save();
    QFile::remove(home.record());
    CHECK(Program(home.folder).starts() == Starts{5});
    Home::write(home.record(), "{" + QByteArray(1000000, ' ') + "}");
    CHECK(Program(home.folder).starts() == Starts{5});
    CHECK(QFileInfo::exists(home.path + '/' + kSound + " (damaged).json"));
}

TEST_CASE("Two programs with one track keep the loops of both") {
    const Home home;
    Program one(home.folder);
    one.keep(5);
    one.save();
    Program other(home.folder);
    other.keep(6);
    const QString third = one.keep(7);
    one.save();
    other.save();
    CHECK(other.starts() == Starts{5, 6, 7});
    one.readAgain();
    CHECK(one.starts() == Starts{5, 6, 7});
    other.memory.remove(third, one.now + 5);
    other.save();
    one.keep(8);
    one.save();
    CHECK(one.starts() == Starts{5, 6, 8});
}

TEST_CASE("A write that finds the folder locked waits for the next change") {
    const Home home;
    Program program(home.folder);
    program.keep(5);
    program.save();
    const QByteArray before = Home::textOf(home.record());
    program.keep(6);
    const int lock = ::open(QFile::encodeName(home.path + "/.lock").constData(), O_RDWR);
    REQUIRE(::flock(lock, LOCK_EX) == 0);
    CHECK(program.save() == JsonStore::Outcome::Busy);
    CHECK(Home::textOf(home.record()) == before);
    ::close(lock);
    CHECK(program.save() == JsonStore::Outcome::Written);
    CHECK(Program(home.folder).starts() == Starts{5, 6});
}

TEST_CASE("Where nothing can be written, loops work all the same") {
    const Home home;
    Home::write(home.home.path() + "/Library", "a file in the folder's place");
    Program program(home.folder);
    program.keep(5);
    CHECK(program.save() == JsonStore::Outcome::Unwritable);
    CHECK(program.starts() == Starts{5});
    const PracticeFolder none{QString()};
    Program homeless(none);
    homeless.keep(5);
    CHECK(homeless.save() == JsonStore::Outcome::Unwritable);
    CHECK(homeless.save() == JsonStore::Outcome::Unwritable);
}

TEST_CASE("What another program has in the file besides is written again") {
    const Home home;
    Program program(home.folder);
    const QString id = program.keep(5);
    program.save();
    QJsonObject object = *objectOf(Home::textOf(home.record()));
    object["notes"] = "slow";
    Home::write(home.record(), jsonText(object));
    program.memory.rename(id, "Bridge", ++program.now);
    program.save();
    object = *objectOf(Home::textOf(home.record()));
    CHECK(object["notes"] == "slow");
    CHECK(readRecord(object).record.loops[0].loop->name == "Bridge");
}

TEST_CASE("A file that was moved has its loops, and its new place in front") {
    const Home home;
    Program program(home.folder);
    program.keep(5);
    program.save();
    Program moved(home.folder, kSound, "/elsewhere/one.mp3");
    CHECK(moved.starts() == Starts{5});
    moved.save();
    CHECK(home.folder.record(kSound)->record.paths == QStringList{"/elsewhere/one.mp3", "/music/one.mp3"});
}

TEST_CASE("Another sound under a known path finds the loops of the former one") {
    const Home home;
    const QString path = QString("/music/caf") + QChar(0xdce9) + ".mp3";
    Program program(home.folder, kSound, path);
    program.keep(5);
    program.save();
    Program anew(home.folder, kOther, path);
    CHECK(anew.starts().empty());
    const auto former = home.folder.formerRecord(path, kOther);
    REQUIRE(former);
    CHECK(former->sound == kSound);
    anew.memory.adopt(*former, kNow);
    anew.save();
    CHECK(Program(home.folder, kOther).starts() == Starts{5});
    CHECK_FALSE(home.folder.formerRecord("/music/caf.mp3", kOther));
    CHECK_FALSE(home.folder.formerRecord(path + "x", kOther));
}

TEST_CASE("What a program left behind that was killed in the middle is taken away by the next save") {
    const Home home;
    Program program(home.folder);
    program.keep(5);
    program.save();
    Home::write(home.record() + ".AbCdEf", "{");
    program.keep(6);
    program.save();
    CHECK(home.files() == QStringList{kSound + ".json"});
}

TEST_CASE("What is no identity never becomes a path") {
    const Home home;
    for (const char* sound : {"", "../x", "q1-xyz", "q1-0123456789abcdef0123456789abcdef/../x", "Settings"}) {
        CAPTURE(sound);
        CHECK_FALSE(home.folder.record(sound));
        PracticeRecord record;
        record.sound = sound;
        CHECK(home.folder.save(record, LoopOrder::Ours, kNow).outcome == JsonStore::Outcome::Unwritable);
    }
    CHECK_FALSE(QFileInfo::exists(home.path));
}
