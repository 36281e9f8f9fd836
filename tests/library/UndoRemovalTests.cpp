#include "library/PlayListTable.h"
#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

struct RemovalFixture : ControllerFixture {
    Notice told;

    // Rows a to e, each with values of its own in all ten fields.
    void startWithFive() {
        start();
        for (int i = 0; i < 5; ++i) {
            const QString letter(QChar(u'a' + i));
            controller->insertEntry(
                i, {"/music/" + letter + ".wav", "Artist " + letter, "Album " + letter, "Title " + letter, 60000 + i,
                    600 + i, static_cast<std::int16_t>(i), static_cast<std::int16_t>(10 + i), 100 + i, 200 + i});
        }
        outlets.playList->reloadData();
        QObject::connect(&controller->notices(), &Notices::told, controller.get(),
                         [this](const Notice& notice) { told = notice; });
    }

    PlayListArrays rows() const { return *controller; }

    void remove(int row) {
        outlets.playList->selectRowIndex(row);
        controller->removeListEntry();
    }

    void addTrack(const QString& path) { controller->loadFileAdd(path, true); }

    QString letters() const {
        QString all;
        for (const QString& path : controller->trackArray) all += path.at(path.size() - 5);
        return all;
    }
};

}  // namespace

TEST_CASE_FIXTURE(RemovalFixture, "a removed row comes back at its place with all its ten fields") {
    startWithFive();
    const PlayListArrays before = rows();
    for (int row = 0; row < 5; ++row) {
        remove(row);
        CHECK(controller->count() == 4);
        controller->undo();
        CHECK(rows() == before);
        CHECK(outlets.playList->selectedRow() == row);
        CHECK(outlets.playList->model()->rowCount() == 5);
    }
}

TEST_CASE_FIXTURE(RemovalFixture, "removals are undone in turn, the newest first") {
    startWithFive();
    const PlayListArrays before = rows();
    remove(1);
    remove(1);
    remove(2);
    CHECK(letters() == "ad");
    controller->undo();
    CHECK(letters() == "ade");
    controller->undo();
    CHECK(letters() == "acde");
    controller->undo();
    CHECK(rows() == before);
}

TEST_CASE_FIXTURE(RemovalFixture,
                  "tracks that were added meanwhile stay on top, and the row is between its neighbours") {
    startWithFive();
    remove(2);
    addTrack("/music/x.wav");
    addTrack("/music/y.wav");
    controller->undo();
    CHECK(letters() == "yxabcde");
    CHECK(outlets.playList->selectedRow() == 4);
}

TEST_CASE_FIXTURE(RemovalFixture, "a cleared list comes back below what was added meanwhile") {
    startWithFive();
    const PlayListArrays before = rows();
    controller->clearList();
    CHECK(controller->count() == 0);
    CHECK(controller->undoHistory().newestName() == "Clear List");
    controller->undo();
    CHECK(rows() == before);
    controller->clearList();
    addTrack("/music/x.wav");
    controller->undo();
    CHECK(letters() == "xabcde");
}

TEST_CASE_FIXTURE(RemovalFixture, "clearing that was cancelled, or of nothing, and removing nothing cannot be undone") {
    startWithFive();
    dialogs.alertAnswer = 1001;
    controller->clearList();
    dialogs.alertAnswer = 1000;
    outlets.playList->selectRowIndex(-1);
    controller->removeListEntry();
    CHECK(controller->undoHistory().newestName().isEmpty());
    controller->removeAllEntries();
    outlets.playList->reloadData();
    controller->clearList();
    CHECK(controller->undoHistory().newestName().isEmpty());
}

TEST_CASE_FIXTURE(RemovalFixture, "a removal is told with the track's title, and its button brings the row back") {
    startWithFive();
    const PlayListArrays before = rows();
    remove(3);
    CHECK(told.text == "Removed Title d");
    CHECK(told.actText == "Undo");
    CHECK(controller->undoHistory().newestName() == "Remove Track");
    told.act();
    CHECK(rows() == before);
    CHECK(told.text == "Brought back Title d");
}

TEST_CASE_FIXTURE(RemovalFixture, "after an undo the row of the loaded track is still known") {
    startWithFive();
    outlets.playList->selectRowIndex(3);
    controller->selectTrack();
    SUBCASE("a row above was removed") {
        remove(0);
        CHECK(controller->mostRecentlySelected == 3);
        controller->undo();
        CHECK(controller->mostRecentlySelected == 3);
    }
    SUBCASE("the loaded row itself was removed") {
        remove(3);
        controller->undo();
        CHECK(controller->mostRecentlySelected == 3);
    }
    SUBCASE("another track was loaded while the list was shorter") {
        remove(1);
        outlets.playList->selectRowIndex(1);
        controller->selectTrack();
        CHECK(controller->loadedPath == "/music/c.wav");
        controller->undo();
        CHECK(controller->mostRecentlySelected == 2);
    }
    SUBCASE("the list was cleared and a track added on top") {
        controller->clearList();
        addTrack("/music/x.wav");
        outlets.playList->selectRowIndex(0);
        controller->selectTrack();
        controller->undo();
        CHECK(controller->mostRecentlySelected == 0);
    }
    CHECK(controller->trackArray[static_cast<std::size_t>(controller->mostRecentlySelected)] == controller->loadedPath);
}

TEST_CASE_FIXTURE(RemovalFixture,
                  "of two rows with the same file the loaded one is the loaded one again after an undo") {
    startWithFive();
    controller->insertEntry(1, controller->entry(3));
    outlets.playList->reloadData();
    outlets.playList->selectRowIndex(4);
    controller->selectTrack();
    REQUIRE(controller->loadedRow == 4);
    SUBCASE("a removal of the row") {
        remove(4);
    }
    SUBCASE("a removal above it") {
        remove(0);
    }
    SUBCASE("the whole list") {
        controller->clearList();
    }
    controller->undo();
    CHECK(controller->loadedRow == 4);
}

TEST_CASE_FIXTURE(RemovalFixture, "undoing a removal loads nothing and leaves what plays alone") {
    startWithFive();
    outlets.playList->selectRowIndex(3);
    controller->rowDoubleClicked();
    log.take();
    remove(3);
    controller->undo();
    CHECK(log.events().empty());
    CHECK(controller->isPlaying);
}

TEST_CASE_FIXTURE(RemovalFixture, "a list that was brought back takes the place of this one, and can be undone") {
    startWithFive();
    const PlayListArrays before = rows();
    outlets.playList->selectRowIndex(3);
    controller->selectTrack();
    PlayListArrays former;
    former.insertEntry(0, {"/music/z.wav", "", "", "Z", 1, 1, 1, 1, 0, 1});
    former.insertEntry(1, before.entry(3));
    controller->playListTable().bringBackList(former);
    CHECK(rows() == former);
    CHECK(controller->mostRecentlySelected == 1);
    CHECK(outlets.playList->selectedRow() == 1);
    CHECK(controller->undoHistory().newestName() == "Bring Back List");
    addTrack("/music/x.wav");
    controller->undo();
    CHECK(letters() == "xabcde");
}
