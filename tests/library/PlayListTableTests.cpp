#include "library/PlayListTable.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTextDocumentFragment>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

struct TableFixture : ControllerFixture {
    PlayListTable& table() { return controller->playListTable(); }

    QVariant cell(const char* column, int row) {
        return table().tableViewObjectValueForTableColumnRow(outlets.playList, QString::fromLatin1(column), row);
    }

    QVariant shown(const char* column, int row, int role = Qt::DisplayRole) {
        const int index = PlayListView::columnIndex(column);
        return outlets.playList->model()->index(row, index).data(role);
    }

    std::string iconOf(const QString& path) {
        addRow(path);
        return cell("IBicon", controller->count() - 1).value<QImage>().text("name").toStdString();
    }

    Events paths() const {
        Events all;
        for (const QString& path : controller->trackArray) all.push_back(path.toStdString());
        return all;
    }

    void checkEqualLengths() const {
        const auto count = controller->trackArray.size();
        CHECK(controller->artistArray.size() == count);
        CHECK(controller->albumArray.size() == count);
        CHECK(controller->displayNamesArray.size() == count);
        CHECK(controller->durations.size() == count);
        CHECK(controller->timescaleArray.size() == count);
        CHECK(controller->bassArray.size() == count);
        CHECK(controller->trebleArray.size() == count);
        CHECK(controller->markAarray.size() == count);
        CHECK(controller->markBarray.size() == count);
    }
};

}  // namespace

TEST_CASE_FIXTURE(TableFixture, "each column shows its array, found by the column's identifier") {
    start();
    controller->insertEntry(0, {"/m/blue.m4a", "Ella", "Live", "Blue", 20550, 100, 1, 2, 2550, 373500});
    CHECK(cell("IBtrack", 0) == "Blue");
    CHECK(cell("IBartist", 0) == "Ella");
    CHECK(cell("IBalbum", 0) == "Live");
    CHECK(cell("IBduration", 0) == "03:25.5");
    CHECK(cell("IBmarkA", 0) == "00:25.5");
    CHECK(cell("IBmarkB", 0) == "01:02:15.0");
    CHECK(cell("IBicon", 0).value<QImage>().text("name") == "type_aiff.png");
}

TEST_CASE_FIXTURE(TableFixture, "the view shows the same cells") {
    start();
    controller->insertEntry(0, {"/m/blue.m4a", "Ella", "Live", "Blue", 20550, 100, 1, 2, 2550, 373500});
    outlets.playList->reloadData();
    CHECK(outlets.playList->model()->columnCount() == 7);
    CHECK(shown("IBtrack", 0) == "Blue");
    CHECK(shown("IBartist", 0) == "Ella");
    CHECK(shown("IBalbum", 0) == "Live");
    CHECK(shown("IBduration", 0) == "03:25.5");
    CHECK(shown("IBmarkA", 0) == "00:25.5");
    CHECK(shown("IBmarkB", 0) == "01:02:15.0");
    CHECK_FALSE(shown("IBicon", 0).isValid());
    CHECK(shown("IBicon", 0, Qt::DecorationRole).value<QImage>().text("name") == "type_aiff.png");
}

TEST_CASE_FIXTURE(TableFixture, "the columns have the titles a user reads") {
    start();
    QStringList titles;
    for (int i = 0; i < 7; ++i)
        titles.append(outlets.playList->model()->headerData(i, Qt::Horizontal, Qt::DisplayRole).toString());
    CHECK(titles == QStringList{"", "Title", "Artist", "Album", "Duration", "Mark A", "Mark B"});
}

TEST_CASE_FIXTURE(TableFixture, "another table, an unknown column and a row that is not there show nothing") {
    startWithRows({"/m/one.wav"});
    QLabel other;
    CHECK_FALSE(table().tableViewObjectValueForTableColumnRow(&other, "IBtrack", 0).isValid());
    CHECK_FALSE(table().tableViewObjectValueForTableColumnRow(nullptr, "IBtrack", 0).isValid());
    CHECK_FALSE(cell("IBother", 0).isValid());
    CHECK_FALSE(cell("IBtrack", 1).isValid());
    CHECK_FALSE(cell("IBtrack", -1).isValid());
}

TEST_CASE_FIXTURE(TableFixture,
                  "the row count is the list's for its own table and 0 for others, and both refresh the total") {
    startWithRows({"/m/one.wav"});
    QLabel other;
    CHECK(table().numberOfRowsInTableView(outlets.playList) == 1);
    controller->insertEntry(0, {});
    CHECK(table().numberOfRowsInTableView(&other) == 0);
    CHECK(outlets.trackTotal->text() == "2 items");
}

TEST_CASE_FIXTURE(TableFixture, "the total reads 0 items, 1 Track, 2 items") {
    start();
    CHECK(outlets.trackTotal->text() == "0 items");
    controller->loadFileAdd("/m/one.wav", true);
    CHECK(outlets.trackTotal->text() == "1 Track");
    controller->loadFileAdd("/m/two.wav", true);
    CHECK(outlets.trackTotal->text() == "2 items");
}

TEST_CASE_FIXTURE(TableFixture, "the icons are paired with their images as they always were") {
    start();
    CHECK(iconOf("/m/SONG.M4A") == "type_aiff.png");
    CHECK(iconOf("/m/a.m4p") == "type_aiff.png");
    CHECK(iconOf("/m/song.mp3") == "type_AAC.png");
    CHECK(iconOf("/m/a.aiff") == "type_AAC.png");
    CHECK(iconOf("/m/clip.DV") == "type_VIDEO");
    CHECK(iconOf("/m/a.mov") == "type_VIDEO");
    CHECK(iconOf("/m/noext").empty());
    CHECK_FALSE(cell("IBicon", controller->count() - 1).isValid());
}

TEST_CASE_FIXTURE(TableFixture, "mark B is read as 32 bits, duration and mark A as 64") {
    startWithRows({"/m/one.wav"});
    const std::int64_t beyond = (std::int64_t(1) << 31) + 600;
    controller->durations[0] = controller->markAarray[0] = controller->markBarray[0] = beyond;
    CHECK(cell("IBduration", 0) == cell("IBmarkA", 0));
    CHECK(cell("IBmarkB", 0) != cell("IBmarkA", 0));
    CHECK(cell("IBmarkB", 0) == "1:10:12:18");  // -41:10:12:18.41
}

TEST_CASE_FIXTURE(TableFixture, "a time whose scale is damaged is an empty cell") {
    startWithRows({"/m/one.wav"});
    controller->timescaleArray[0] = 0;
    CHECK(cell("IBduration", 0) == "");
    CHECK(cell("IBmarkA", 0) == "");
    CHECK(cell("IBmarkB", 0) == "");
}

TEST_CASE_FIXTURE(TableFixture, "every cell's tooltip is the full path") {
    startWithRows({"/m/one.wav"});
    for (const char* column : kPlayListColumns) CHECK(shown(column, 0, Qt::ToolTipRole) == "/m/one.wav");
}

TEST_CASE_FIXTURE(TableFixture, "a path that reads like markup is shown letter by letter") {
    startWithRows({"/m/<b>one</b>.wav", "/m/one & two.wav"});
    const QString tip = shown("IBtrack", 0, Qt::ToolTipRole).toString();
    CHECK(QTextDocumentFragment::fromHtml(tip).toPlainText() == "/m/<b>one</b>.wav");
    CHECK(shown("IBtrack", 1, Qt::ToolTipRole) == "/m/one & two.wav");
}

TEST_CASE_FIXTURE(TableFixture, "the loaded track is marked as such, until another is loaded or none") {
    startWithRows({"/m/one.wav", "/m/two.wav"});
    const auto loaded = [this](int row) { return shown("IBtrack", row, LoadedTrackRole).toBool(); };
    CHECK_FALSE(loaded(0));
    controller->loadFileAdd("/m/two.wav", false);
    CHECK_FALSE(loaded(0));
    CHECK(loaded(1));
    engine.unreadable.insert("/m/one.wav");
    controller->loadFileAdd("/m/one.wav", false);
    CHECK_FALSE(loaded(0));
    CHECK_FALSE(loaded(1));
}

TEST_CASE_FIXTURE(TableFixture, "of two rows with the same file the one that was loaded is marked, wherever it moves") {
    startWithRows({"/m/one.wav", "/m/two.wav", "/m/one.wav"});
    const auto loadedRows = [this] {
        std::vector<int> rows;
        for (int row = 0; row < controller->count(); ++row)
            if (shown("IBtrack", row, LoadedTrackRole).toBool()) rows.push_back(row);
        return rows;
    };
    outlets.playList->selectRowIndex(2);
    controller->selectTrack();
    CHECK(loadedRows() == std::vector{2});
    outlets.playList->selectRowIndex(0);
    CHECK(loadedRows() == std::vector{2});
    controller->removeListEntry();
    CHECK(loadedRows() == std::vector{1});
    controller->loadFileAdd("/m/one.wav", true);
    CHECK(loadedRows() == std::vector{0});
    outlets.playList->selectRowIndex(0);
    controller->removeListEntry();
    CHECK(loadedRows() == std::vector{1});
}

TEST_CASE_FIXTURE(TableFixture, "a mark is marked as changed where it differs from the track's start or end") {
    startWithRows({"/m/one.wav"});
    const auto changed = [this](const char* column) { return shown(column, 0, ChangedMarkRole).toBool(); };
    CHECK_FALSE(changed("IBmarkA"));
    CHECK_FALSE(changed("IBmarkB"));
    controller->markAarray[0] = 1;
    CHECK(changed("IBmarkA"));
    CHECK_FALSE(changed("IBmarkB"));
    controller->markBarray[0] = 2;
    CHECK(changed("IBmarkB"));
    CHECK_FALSE(changed("IBduration"));
}

TEST_CASE_FIXTURE(TableFixture, "a click on a row selects it and does nothing else") {
    startWithRows({"/m/one.wav", "/m/two.wav"});
    outlets.playList->resize(500, 300);
    const Events before = everything();
    const QPointF place(200, outlets.playList->rowViewportPosition(1) + 5);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, place, outlets.playList->viewport()->mapToGlobal(place), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(outlets.playList->viewport(), &event);
    }
    CHECK(outlets.playList->selectedRow() == 1);
    CHECK(everything() == before);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(TableFixture, "selecting a track loads its row without adding one, and leaves its marks alone") {
    startWithRows({"/m/one.wav", "/m/two.wav"});
    controller->markAarray[1] = 600;
    outlets.playList->selectRowIndex(1);
    controller->selectTrack();
    CHECK(controller->mostRecentlySelected == 1);
    CHECK(controller->loadedPath == "/m/two.wav");
    CHECK(controller->count() == 2);
    CHECK(log.count("open /m/two.wav") == 1);
    CHECK(log.count("setSelection") == 0);
    CHECK(log.count("play") == 0);
}

TEST_CASE_FIXTURE(TableFixture, "selecting a track does nothing without rows or without a selected one") {
    start();
    log.take();
    controller->selectTrack();
    addRow("/m/one.wav");
    controller->selectTrack();
    CHECK(controller->mostRecentlySelected == -1);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(TableFixture, "a double-click loads and starts the row at the current rate") {
    startWithRows({"/m/one.wav"});
    controller->rate = 0.5f;
    outlets.playList->selectRowIndex(0);
    bool playingAtOpen = false;
    log.atEvent = [&](const std::string& event) {
        if (event.starts_with("open ")) playingAtOpen = controller->isPlaying;
    };
    controller->rowDoubleClicked();
    CHECK(playingAtOpen);
    CHECK(Events(log.events().end() - 2, log.events().end()) == Events{"play", "setRate 0.5"});
    CHECK(transportImages() == Events{"db_Play_F_on.png", "db_Pause_off.png", "db_Play_R_off.png"});
}

TEST_CASE_FIXTURE(TableFixture,
                  "a double-click ends the loop before the load, and shows images and track information after it") {
    QLabel name;
    outlets.movieName = &name;
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(1);
    controller->loopSwitch();
    log.take();
    Events atOpen, atRate;
    log.atEvent = [&](const std::string& event) {
        Events now = {controller->isLooping ? "looping" : "not looping", outlets.loopOut->text().toStdString(),
                      outlets.playForwardButton->imageName().toStdString(), name.text().toStdString()};
        if (event.starts_with("open ")) atOpen = now;
        if (event.starts_with("setRate ")) atRate = now;
    };
    controller->rowDoubleClicked();
    CHECK(atOpen == Events{"not looping", "00:00:00", "db_Play_F_off.png", ""});
    CHECK(atRate == atOpen);
    CHECK(outlets.playForwardButton->imageName() == "db_Play_F_on.png");
    CHECK(name.text() == "/music/two.wav");
}

TEST_CASE_FIXTURE(TableFixture, "a double-click with a backward rate shows the backward images") {
    startWithRows({"/m/one.wav"});
    controller->rate = -1.0f;
    outlets.playList->selectRowIndex(0);
    controller->rowDoubleClicked();
    CHECK(transportImages() == Events{"db_Play_F_off.png", "db_Pause_off.png", "db_Play_R_on.png"});
}

TEST_CASE_FIXTURE(TableFixture, "a double-click without a selected row does nothing") {
    startWithRows({"/m/one.wav"});
    const Events before = everything();
    controller->rowDoubleClicked();
    CHECK(everything() == before);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(TableFixture,
                  "a double-click ends the loop without a word to the engine: fields first, then zero for B") {
    startWithLoadedTrack();
    controller->markAarray[0] = 1200;
    controller->loopSwitch();
    outlets.loopIn->setText("stale");
    log.take();
    controller->rowDoubleClicked();
    CHECK_FALSE(controller->isLooping);
    CHECK(outlets.loopButton->imageName() == "db_loop_off.png");
    CHECK(outlets.loopIn->text() == "00:00:02");
    CHECK(outlets.loopOut->text() == "00:00:00");
    CHECK(log.count("setLoops") == 0);
    CHECK(log.count("setPlaysSelectionOnly") == 0);
}

TEST_CASE_FIXTURE(TableFixture, "a double-click of the loaded row loads it again from the start") {
    startWithLoadedTrack();
    engine.movie()->time.timeValue = 5000;
    controller->rowDoubleClicked();
    CHECK(log.count("open /music/one.wav") == 1);
    CHECK(engine.movie()->time.timeValue == 0);
}

TEST_CASE_FIXTURE(TableFixture, "removing takes the selected row out of all ten arrays and asks nothing") {
    startWithRows({"/m/0.wav", "/m/1.wav", "/m/2.wav"});
    controller->bassArray = {0, 1, 2};
    controller->markAarray = {10, 11, 12};
    outlets.playList->selectRowIndex(1);
    controller->removeListEntry();
    CHECK(paths() == Events{"/m/0.wav", "/m/2.wav"});
    CHECK(controller->bassArray == std::vector<std::int16_t>{0, 2});
    CHECK(controller->markAarray == std::vector<std::int64_t>{10, 12});
    checkEqualLengths();
    CHECK(outlets.playList->model()->rowCount() == 2);
    CHECK(outlets.trackTotal->text() == "2 items");
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(TableFixture, "removing keeps the selected index while there is a row at it") {
    startWithRows({"/m/0.wav", "/m/1.wav", "/m/2.wav"});
    outlets.playList->selectRowIndex(1);
    controller->removeListEntry();
    CHECK(outlets.playList->selectedRow() == 1);
    controller->removeListEntry();
    CHECK(outlets.playList->selectedRow() == -1);
    CHECK(paths() == Events{"/m/0.wav"});
}

TEST_CASE_FIXTURE(TableFixture, "removing without a selected row does nothing") {
    startWithRows({"/m/0.wav"});
    controller->removeListEntry();
    CHECK(controller->count() == 1);
}

TEST_CASE_FIXTURE(TableFixture, "removing the playing row leaves it playing") {
    startWithLoadedTrack();
    controller->playForward();
    log.take();
    controller->removeListEntry();
    CHECK(controller->isPlaying);
    CHECK(controller->qtMovie != nullptr);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(TableFixture, "removing and clearing do not change which row was loaded last") {
    startWithLoadedTrack();
    controller->removeListEntry();
    CHECK(controller->mostRecentlySelected == 0);
    controller->playListTable().setRunAlert([](const QString&, const QStringList&) { return 1000; });
    controller->clearList();
    CHECK(controller->mostRecentlySelected == 0);
}

TEST_CASE_FIXTURE(TableFixture, "after row 0 was removed the row that took its place plays the old movie") {
    startWithLoadedTrack();
    controller->removeListEntry();
    outlets.playList->selectRowIndex(0);
    controller->playForward();
    CHECK(log.count("open") == 0);
    CHECK(controller->loadedPath == "/music/one.wav");
}

TEST_CASE_FIXTURE(TableFixture, "clearing asks first, in these words") {
    startWithRows({"/m/0.wav"});
    QString asked;
    QStringList offered;
    controller->playListTable().setRunAlert([&](const QString& message, const QStringList& buttons) {
        asked = message;
        offered = buttons;
        return 1001;
    });
    controller->clearList();
    CHECK(asked == "Your Quillmere play list will be cleared.");
    CHECK(offered == QStringList{"Clear list", "Cancel"});
}

TEST_CASE_FIXTURE(TableFixture, "only the first button clears") {
    startWithLoadedTrack();
    for (const int answer : {1001, 1002, 0, -1}) {
        controller->playListTable().setRunAlert([answer](const QString&, const QStringList&) { return answer; });
        controller->clearList();
        CHECK(controller->count() == 2);
    }
    controller->playListTable().setRunAlert([](const QString&, const QStringList&) { return 1000; });
    controller->clearList();
    CHECK(controller->count() == 0);
    checkEqualLengths();
    CHECK(outlets.playList->model()->rowCount() == 0);
    CHECK(outlets.playList->selectedRow() == -1);
    CHECK(outlets.trackTotal->text() == "0 items");
    CHECK(controller->qtMovie != nullptr);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(TableFixture, "setting a mark reloads the table and keeps the selected index") {
    startWithRows({"/m/0.wav", "/m/1.wav", "/m/2.wav"});
    outlets.playList->selectRowIndex(2);
    controller->selectTrack();
    engine.movie()->time.timeValue = 600;
    controller->markAUpdate();
    CHECK(outlets.playList->selectedRow() == 2);
    CHECK(shown("IBmarkA", 2) == "00:1.00");
}

TEST_CASE_FIXTURE(TableFixture, "a list of a hundred thousand rows is counted, grown and shrunk in place") {
    start();
    for (int i = 0; i < 100000; ++i) controller->insertEntry(i, {QStringLiteral("/m/%1.wav").arg(i)});
    outlets.playList->reloadData();
    CHECK(outlets.trackTotal->text() == "100000 items");
    outlets.playList->selectRowIndex(99999);
    controller->loadFileAdd("/m/new.wav", true);
    CHECK(outlets.playList->model()->rowCount() == 100001);
    CHECK(outlets.playList->selectedRow() == 99999);
    controller->removeListEntry();
    CHECK(outlets.playList->model()->rowCount() == 100000);
    CHECK(controller->trackArray[99999] == "/m/99999.wav");
    checkEqualLengths();
}
