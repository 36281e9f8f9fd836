#include "app/state/UndoHistory.h"

#include <doctest/doctest.h>

#include "support/widgets/ToldNotices.h"

using namespace qm;

namespace {

struct HistoryFixture {
    ToldNotices notices;
    UndoHistory history{notices};
    QStringList undone;

    void add(const QString& name, const QString& done = {}) {
        history.add({name, [this, name] { undone << name; }, done, done.isEmpty() ? QString() : "Not " + done});
    }
};

}  // namespace

TEST_CASE_FIXTURE(HistoryFixture, "the newest act is undone first") {
    add("Remove Track");
    add("Set Mark A");
    CHECK(history.newestName() == "Set Mark A");
    history.undo();
    CHECK(history.newestName() == "Remove Track");
    history.undo();
    CHECK(undone == QStringList{"Set Mark A", "Remove Track"});
    CHECK(history.newestName().isEmpty());
}

TEST_CASE_FIXTURE(HistoryFixture, "undo without an act does nothing") {
    history.undo();
    add("Remove Track");
    history.undo();
    history.undo();
    CHECK(undone.size() == 1);
}

TEST_CASE_FIXTURE(HistoryFixture, "each change of what can be undone is said") {
    int changes = 0;
    QObject::connect(&history, &UndoHistory::changed, &history, [&] { ++changes; });
    add("Remove Track");
    CHECK(changes == 1);
    history.undo();
    CHECK(changes == 2);
    history.undo();
    CHECK(changes == 2);
}

TEST_CASE_FIXTURE(HistoryFixture, "an act is told with a button that undoes it, and the undoing is told") {
    add("Remove Track", "Removed Blue Lantern");
    CHECK(notices.last.text == "Removed Blue Lantern");
    CHECK(notices.last.actText == "Undo");
    notices.last.act();
    CHECK(undone == QStringList{"Remove Track"});
    CHECK(notices.last.text == "Not Removed Blue Lantern");
    CHECK(notices.last.actText.isEmpty());
}

TEST_CASE_FIXTURE(HistoryFixture, "a button undoes no other act than its own") {
    add("Remove Track", "Removed Blue Lantern");
    const auto button = notices.last.act;
    SUBCASE("after a newer act") {
        add("Remove Track", "Removed Night Ferry");
        button();
        CHECK(undone.isEmpty());
    }
    SUBCASE("pressed twice") {
        add("Remove Track", "Removed Night Ferry");
        const auto newest = notices.last.act;
        newest();
        newest();
        CHECK(undone.size() == 1);
    }
    SUBCASE("after its act was undone by key") {
        history.undo();
        add("Remove Track", "Removed Night Ferry");
        button();
        CHECK(undone.size() == 1);
    }
}

TEST_CASE_FIXTURE(HistoryFixture, "an act of which nothing is told takes the notice of the one before away") {
    add("Remove Track", "Removed Blue Lantern");
    const QString subject = notices.last.subject;
    CHECK_FALSE(subject.isEmpty());
    add("Set Mark A");
    CHECK(notices.withdrawnSubjects.contains(subject));
}

TEST_CASE_FIXTURE(HistoryFixture, "a hundred acts are kept") {
    for (int i = 0; i < 150; ++i) add(QString::number(i));
    while (!history.newestName().isEmpty()) history.undo();
    CHECK(undone.size() == 100);
    CHECK(undone.last() == "50");
}
