#include "practice/PracticeMerge.h"

#include <doctest/doctest.h>

#include <QJsonArray>

#include "practice/JsonText.h"
#include "practice/PracticeFile.h"

using namespace qm;

namespace {

constexpr std::int64_t kDay = 24ll * 3600 * 1000;
constexpr std::int64_t kNow = 1795000000000;

LoopEntry loop(const QString& id, std::int64_t changed, const QString& name = {}) {
    KeptLoop kept{.id = id, .name = name.isEmpty() ? id : name, .a = 1, .b = 2, .speed = {}, .cents = {}, .bpm = {}};
    kept.changed = changed;
    return {.id = id, .loop = kept, .removed = 0, .stored = {}};
}

LoopEntry removal(const QString& id, std::int64_t when) {
    return {.id = id, .loop = {}, .removed = when, .stored = {}};
}

PracticeRecord record(std::vector<LoopEntry> loops) {
    PracticeRecord made;
    made.sound = "q1-0";
    made.scale = 44100;
    made.loops = std::move(loops);
    return made;
}

QString names(const PracticeRecord& record) {
    QStringList all;
    for (const KeptLoop* kept : record.keptLoops()) all << kept->name;
    return all.join(u' ');
}

}  // namespace

TEST_CASE("Of two changes of a loop the newer one wins, whichever side made it") {
    const auto ours = record({loop("x", 5, "ours")}), theirs = record({loop("x", 6, "theirs")});
    CHECK(names(merged(ours, theirs, LoopOrder::Ours, kNow)) == "theirs");
    CHECK(names(merged(theirs, ours, LoopOrder::Ours, kNow)) == "theirs");
}

TEST_CASE("Loops of both sides are kept") {
    const auto ours = record({loop("a", 1), loop("mine", 2)}), theirs = record({loop("a", 1), loop("yours", 2)});
    CHECK(names(merged(ours, theirs, LoopOrder::Theirs, kNow)) == "a mine yours");
    CHECK(names(merged(ours, theirs, LoopOrder::Ours, kNow)) == "a yours mine");
}

TEST_CASE("A removal wins over an older change, and is known for 90 days") {
    const auto gone = record({removal("x", kNow)}), there = record({loop("x", kNow - 5)});
    CHECK(merged(there, gone, LoopOrder::Ours, kNow).keptLoops().empty());
    CHECK(merged(gone, there, LoopOrder::Ours, kNow).keptLoops().empty());
    CHECK(names(merged(record({loop("x", kNow + 1)}), gone, LoopOrder::Ours, kNow)) == "x");
    CHECK(merged(gone, gone, LoopOrder::Ours, kNow + 90 * kDay).loops.size() == 1);
    CHECK(merged(gone, gone, LoopOrder::Ours, kNow + 90 * kDay + 1).loops.empty());
}

TEST_CASE("The order is that of the side that changed it; what the other has besides stays behind its neighbour") {
    const auto ours = record({loop("c", 1), loop("b", 1), loop("a", 1)});
    const auto theirs = record({loop("z", 1), loop("a", 1), loop("n", 1), loop("b", 1), loop("c", 1)});
    CHECK(names(merged(ours, theirs, LoopOrder::Ours, kNow)) == "z c b a n");
    CHECK(names(merged(ours, theirs, LoopOrder::Theirs, kNow)) == "z a n b c");
}

TEST_CASE("What cannot be read is kept, once, and what the file says besides of a loop too") {
    const auto read = [](const char* text) { return readRecord(*objectOf(text)).record; };
    const auto theirs =
        read(R"({"by": "x", "loops": [5, {"id": "s", "a": "?"}, {"id": "l", "a": 1, "b": 2, "red": true}]})");
    auto ours = read(R"({"loops": [5, {"id": "s", "a": "?"}, {"id": "l", "a": 1, "b": 2, "changed": 7}]})");
    ours.loops[2].loop->name = "Mine";
    const auto both = recordObject(merged(ours, theirs, LoopOrder::Ours, kNow));
    CHECK(both["by"] == "x");
    const QJsonArray loops = both["loops"].toArray();
    REQUIRE(loops.size() == 3);
    CHECK(loops[0] == 5);
    CHECK(loops[2].toObject()["name"] == "Mine");
    CHECK(loops[2].toObject()["red"] == true);
}

TEST_CASE("The newer place where the track was left wins, and paths of both are known, ours first, eight at most") {
    auto ours = record({}), theirs = record({});
    ours.last = StoppedAt{.position = 5, .changed = 9, .stored = {}};
    theirs.last = StoppedAt{.position = 6, .changed = 8, .stored = {{"heard", 3}}};
    ours.paths = {"/new"};
    theirs.paths = {"/1", "/2", "/new", "/3", "/4", "/5", "/6", "/7", "/8"};
    const auto both = merged(ours, theirs, LoopOrder::Ours, kNow);
    CHECK(both.last->position == 5);
    CHECK(both.last->stored["heard"] == 3);
    CHECK(both.paths == QStringList{"/new", "/1", "/2", "/3", "/4", "/5", "/6", "/7"});
}
