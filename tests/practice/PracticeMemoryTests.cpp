#include "practice/PracticeMemory.h"

#include <doctest/doctest.h>

using namespace qm;

namespace {

constexpr std::int64_t kScale = 44100;
constexpr std::int64_t kLength = 100 * kScale;

PracticeTrack track(const QString& sound = "q1-00000000000000000000000000000001") {
    return {sound, "/music/one.mp3", "One", "Somebody", {kLength, kScale}};
}

LoopSettings settings(std::int64_t a, std::int64_t b, double speed = 1, double cents = 0) {
    return {{a, b}, speed, cents};
}

struct Practising {
    PracticeMemory memory;
    std::int64_t now = 1795000000000;

    Practising() { memory.load(track()); }

    QString keep(std::int64_t a, std::int64_t b, double speed = 1, double cents = 0) {
        return memory.keep(settings(a, b, speed, cents), ++now).id;
    }
    QString names() const {
        QStringList all;
        for (const KeptLoop* loop : memory.loops()) all << loop->name;
        return all.join(u',');
    }
    const KeptLoop& loop(const QString& id) const { return *memory.loop(id); }
};

}  // namespace

TEST_CASE("Keeping makes a loop with the next name, and speed and pitch where they are not neutral") {
    Practising p;
    const QString one = p.keep(1000, 5000);
    CHECK(p.loop(one).name == "Loop 1");
    CHECK_FALSE(p.loop(one).speed);
    CHECK_FALSE(p.loop(one).cents);
    const QString two = p.keep(1000, 5000, 0.75f, -100);
    CHECK(p.loop(two).name == "Loop 2");
    CHECK(p.loop(two).speed == 0.75);
    CHECK(p.loop(two).cents == -100);
    CHECK(p.loop(p.keep(1, 5000, 0.8f)).speed == 0.8);
    CHECK(p.memory.inUse() == p.memory.loops().back()->id);
    p.memory.rename(one, "Loop 4", p.now);
    CHECK(p.loop(p.keep(7, 5000)).name == "Loop 5");
}

TEST_CASE("The same marks, speed and pitch are kept once") {
    Practising p;
    const QString one = p.keep(1000, 5000, 0.75);
    const auto again = p.memory.keep(settings(1000, 5000, 0.75), p.now);
    CHECK(again.outcome == PracticeMemory::Kept::AlreadyThere);
    CHECK(again.id == one);
    CHECK(p.memory.loops().size() == 1);
}

TEST_CASE("Nothing is kept of marks at rest or crossed, nor without a track") {
    Practising p;
    for (const auto& none : {settings(0, kLength), settings(5000, 1000), settings(1000, 1000), settings(-1, 500),
                             settings(5, kLength + 1)})
        CHECK(p.memory.keep(none, p.now).outcome == PracticeMemory::Kept::Nothing);
    p.memory.load(track(""));
    CHECK(p.memory.keep(settings(1, 500), p.now).outcome == PracticeMemory::Kept::Nothing);
    CHECK_FALSE(p.memory.takeUnsaved(true));
}

TEST_CASE("A thousand loops are enough") {
    Practising p;
    for (int i = 0; i < 1000; ++i) p.keep(i, 5000);
    CHECK(p.memory.keep(settings(1, 5001), p.now).outcome == PracticeMemory::Kept::Full);
}

TEST_CASE("Nothing is written before something is kept, wherever the track was left") {
    Practising p;
    p.memory.stopAt({.position = 500, .stored = {}}, p.now);
    CHECK_FALSE(p.memory.takeUnsaved(true));
    p.keep(1000, 5000);
    CHECK(p.memory.takeUnsaved(false));
    CHECK_FALSE(p.memory.takeUnsaved(true));
    p.memory.stopAt({.position = 500, .stored = {}}, p.now);
    CHECK_FALSE(p.memory.takeUnsaved(false));
    const auto unsaved = p.memory.takeUnsaved(true);
    REQUIRE(unsaved);
    CHECK(unsaved->first.last->position == 500);
}

TEST_CASE("The loop chosen last is in use, and says when it is played otherwise than it was kept") {
    Practising p;
    const QString one = p.keep(1000, 5000), two = p.keep(2000, 6000, 0.75, -100);
    REQUIRE(p.memory.choose(two));
    CHECK_FALSE(p.memory.isChanged(settings(2000, 6000, 0.75, -100)));
    CHECK(p.memory.isChanged(settings(2001, 6000, 0.75, -100)));
    CHECK(p.memory.isChanged(settings(2000, 6001, 0.75, -100)));
    CHECK(p.memory.isChanged(settings(2000, 6000, 0.7, -100)));
    CHECK(p.memory.isChanged(settings(2000, 6000, 0.75, 0)));
    REQUIRE(p.memory.choose(one));
    CHECK_FALSE(p.memory.isChanged(settings(1000, 5000, 0.5, 200)));
    p.memory.release();
    CHECK_FALSE(p.memory.isChanged(settings(1, 2)));
}

TEST_CASE("Updating writes into the loop in use, with a newer moment though the clock was put back") {
    Practising p;
    const QString one = p.keep(1000, 5000);
    const std::int64_t before = p.loop(one).changed;
    CHECK_FALSE(p.memory.update(settings(1000, 5000), p.now));
    CHECK(p.memory.update(settings(1000, 4000, 0.5), before - 5000));
    CHECK(p.loop(one).b == 4000);
    CHECK(p.loop(one).speed == 0.5);
    CHECK(p.loop(one).changed == before + 1);
    CHECK_FALSE(p.memory.update(settings(4000, 1000), p.now));
    p.memory.release();
    CHECK_FALSE(p.memory.update(settings(1, 2), p.now));
}

TEST_CASE("Next and previous go round in the list's order, from the first where none is in use") {
    Practising p;
    const QString one = p.keep(1, 500), two = p.keep(2, 500), three = p.keep(3, 500);
    p.memory.release();
    CHECK(p.memory.chooseNeighbour(1)->id == one);
    CHECK(p.memory.chooseNeighbour(1)->id == two);
    CHECK(p.memory.chooseNeighbour(1)->id == three);
    CHECK(p.memory.chooseNeighbour(1)->id == one);
    CHECK(p.memory.chooseNeighbour(-1)->id == three);
    p.memory.release();
    CHECK(p.memory.chooseNeighbour(-1)->id == one);
    CHECK(PracticeMemory().chooseNeighbour(1) == nullptr);
}

TEST_CASE("A loop that lies outside the track cannot be chosen, and is passed over") {
    Practising p;
    const QString one = p.keep(1, 500), two = p.keep(2, kLength), three = p.keep(3, 500);
    PracticeTrack shorter = track();
    shorter.marked.length = 5000;
    const PracticeRecord record = p.memory.record();
    p.memory.load(shorter);
    p.memory.found(record, p.now);
    CHECK_FALSE(p.memory.canBeChosen(*p.memory.loop(two)));
    CHECK(p.memory.choose(two) == nullptr);
    p.memory.choose(one);
    CHECK(p.memory.chooseNeighbour(1)->id == three);
}

TEST_CASE("Names are trimmed, 200 characters long at most, and never empty") {
    Practising p;
    const QString one = p.keep(1, 500);
    CHECK(p.memory.rename(one, "  Bridge\t", p.now));
    CHECK(p.loop(one).name == "Bridge");
    CHECK_FALSE(p.memory.rename(one, "Bridge", p.now));
    CHECK(p.memory.rename(one, QString(300, u'n'), p.now));
    CHECK(p.loop(one).name.size() == 200);
    CHECK(p.memory.rename(one, "   ", p.now));
    CHECK(p.loop(one).name == "Loop 2");
    CHECK_FALSE(p.memory.rename("none", "x", p.now));
}

TEST_CASE("Loops are moved among each other") {
    Practising p;
    const QString one = p.keep(1, 500);
    p.keep(2, 500);
    p.keep(3, 500);
    CHECK(p.memory.move(one, 1));
    CHECK(p.names() == "Loop 2,Loop 1,Loop 3");
    CHECK(p.memory.move(one, 99));
    CHECK(p.names() == "Loop 2,Loop 3,Loop 1");
    CHECK(p.memory.move(one, -1));
    CHECK(p.names() == "Loop 1,Loop 2,Loop 3");
    CHECK_FALSE(p.memory.move(one, 0));
    CHECK(p.memory.takeUnsaved(false)->second == LoopOrder::Ours);
}

TEST_CASE("A removed loop comes back in its place, until the track changes") {
    Practising p;
    p.keep(1, 500);
    const QString two = p.keep(2, 500);
    p.keep(3, 500);
    CHECK(p.memory.remove(two, ++p.now));
    CHECK(p.names() == "Loop 1,Loop 3");
    CHECK(p.memory.removedName() == QString("Loop 2"));
    const PracticeRecord removed = p.memory.takeUnsaved(false)->first;
    p.memory.saved(removed, p.now);
    CHECK(p.memory.undoRemoval(p.now));
    CHECK(p.names() == "Loop 1,Loop 2,Loop 3");
    p.memory.found(removed, p.now);  // the file still has the removal, which is older
    CHECK(p.names() == "Loop 1,Loop 2,Loop 3");
    CHECK_FALSE(p.memory.undoRemoval(p.now));
    p.memory.remove(two, ++p.now);
    p.memory.load(track());
    CHECK_FALSE(p.memory.undoRemoval(p.now));
}

TEST_CASE("Loops kept before the file was read stay beside those in it") {
    Practising p;
    p.keep(1, 500);
    Practising other;
    other.keep(9, 700);
    p.memory.found(other.memory.record(), p.now);
    CHECK(p.memory.loops().size() == 2);
    p.memory.load(track("q1-00000000000000000000000000000002"));
    p.memory.found(other.memory.record(), p.now);  // came late: it belongs to the former track
    CHECK(p.memory.loops().empty());
}

TEST_CASE("A track found at a new place has it in front") {
    Practising p;
    p.keep(1, 500);
    const PracticeRecord record = p.memory.record();
    PracticeTrack moved = track();
    moved.path = "/elsewhere/two.mp3";
    p.memory.load(moved);
    p.memory.found(record, p.now);
    CHECK(p.memory.record().paths == QStringList{"/elsewhere/two.mp3", "/music/one.mp3"});
    CHECK(p.memory.takeUnsaved(false));
    p.memory.load(track());
    p.memory.found(record, p.now);
    CHECK_FALSE(p.memory.takeUnsaved(true));
}

TEST_CASE("Loops of another version of the file are copied, in the scale of this one, once") {
    Practising p;
    p.keep(44100, 88200, 0.75);
    const PracticeRecord former = p.memory.record();
    PracticeTrack anew = track("q1-00000000000000000000000000000002");
    anew.marked = {100 * 48000, 48000};
    p.memory.load(anew);
    CHECK(p.memory.adopt(former, p.now) == 1);
    REQUIRE(p.memory.loops().size() == 1);
    CHECK(p.memory.loops()[0]->a == 48000);
    CHECK(p.memory.loops()[0]->b == 96000);
    CHECK(p.memory.loops()[0]->id != former.keptLoops()[0]->id);
    CHECK(p.memory.adopt(former, p.now) == 0);
}

TEST_CASE("Where you stopped is offered while it is over a second away, or was played otherwise") {
    Practising p;
    CHECK(p.memory.whereYouStopped(0, 1, 0) == nullptr);
    p.keep(1, 500);
    p.memory.stopAt({.position = 441000, .speed = 0.75, .cents = -100, .stored = {}}, p.now);
    CHECK(p.memory.whereYouStopped(441000, 0.75, -100) == nullptr);
    CHECK(p.memory.whereYouStopped(441000 + 44100, 0.75, -100) == nullptr);
    CHECK(p.memory.whereYouStopped(441000 + 44101, 0.75, -100) != nullptr);
    CHECK(p.memory.whereYouStopped(441000, 0.7, -100) != nullptr);
    CHECK(p.memory.whereYouStopped(441000, 0.75, 0) != nullptr);
}

TEST_CASE("What could not be written is unsaved still, with its order") {
    Practising p;
    const QString one = p.keep(1, 500);
    p.keep(2, 500);
    p.memory.move(one, 1);
    const auto unsaved = p.memory.takeUnsaved(false);
    p.memory.notSaved(unsaved->second);
    const auto again = p.memory.takeUnsaved(false);
    REQUIRE(again);
    CHECK(again->second == LoopOrder::Ours);
}
