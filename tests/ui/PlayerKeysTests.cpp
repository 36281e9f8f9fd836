#include "support/widgets/Actions.h"
#include "ui/PlayerKeys.h"

#include <doctest/doctest.h>

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QUrl>

#include "support/widgets/Gestures.h"
#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"
#include "ui/FilePanel.h"

using namespace qm;

namespace {

struct Keys : LivingWindow {
    QMController& player = controller;
    FakeMediaEngine& engine = fixture.engine;
    QStringList told;

    Keys() {
        QObject::connect(&player.notices(), &Notices::told, &keys, [this](const Notice& n) { told << n.text; });
    }
    void press(const char* slot) { window.actions().action(idOf(slot))->trigger(); }
    void select(int row) { outlets.playList->selectRowIndex(row); }
    double gain() const { return outlets.gainSlider->value(); }
    Events opened() {
        Events paths;
        for (const std::string& event : fixture.log.take())
            if (event.starts_with("open ")) paths.push_back(event.substr(5));
        return paths;
    }
};

}  // namespace

// --- play without a track --------------------------------------------------------------------------------------------

TEST_CASE("a row that could not be opened is tried again by Space and by the play buttons, and another one is played") {
    Keys k;
    k.addTrack(QStringLiteral("/music/good.mp3"));
    k.addTrack(QStringLiteral("/music/dead.mp3"));
    k.engine.unreadable.insert("/music/dead.mp3");
    k.select(0);
    k.opened();
    k.press("toggleStartStop");
    k.press("toggleStartStop");
    k.outlets.playForwardButton->click();
    k.outlets.playBackwardButton->click();
    CHECK(k.opened() == Events(4, "/music/dead.mp3"));
    k.select(1);
    k.press("toggleStartStop");
    CHECK(k.opened() == Events{"/music/good.mp3"});
    CHECK(k.player.isPlaying);
    CHECK(k.player.qtMovie);
}

TEST_CASE("after Return on a row that cannot be opened Space still plays, once the file is there") {
    Keys k;
    k.addTrack(QStringLiteral("/music/late.mp3"));
    k.engine.unreadable.insert("/music/late.mp3");
    k.select(0);
    emit k.outlets.playList->rowActivated();
    CHECK(k.player.isPlaying);
    CHECK_FALSE(k.player.qtMovie);
    k.engine.unreadable.clear();
    k.press("toggleStartStop");
    CHECK(k.player.qtMovie);
    CHECK(k.player.isPlaying);
    k.press("toggleStartStop");
    CHECK_FALSE(k.player.isPlaying);
}

TEST_CASE("without a track the play buttons play the selected row in their own direction") {
    for (const bool backward : {false, true}) {
        CAPTURE(backward);
        Keys k;
        k.addTrack(QStringLiteral("/music/a.mp3"));
        k.select(0);
        k.outlets.speedSlider->moveByUser(backward ? 0.75 : -0.75);
        k.fixture.log.take();
        (backward ? k.outlets.playBackwardButton : k.outlets.playForwardButton)->click();
        CHECK(k.fixture.log.count("play") == 1);
        CHECK(k.fixture.log.count(backward ? "setRate -0.75" : "setRate 0.75") == 1);
        CHECK(k.player.rate == (backward ? -0.75f : 0.75f));
        CHECK(k.outlets.speedSlider->value() == (backward ? -0.75 : 0.75));
    }
}

TEST_CASE("with nothing loaded and nothing selected, play selects the first row and plays it") {
    for (const char* slot : {"toggleStartStop", "playForward", "playBackward"}) {
        CAPTURE(slot);
        Keys k;
        k.addTrack(QStringLiteral("/music/b.mp3"));
        k.addTrack(QStringLiteral("/music/a.mp3"));
        k.select(-1);
        k.press(slot);
        CHECK(k.outlets.playList->selectedRow() == 0);
        CHECK(k.opened() == Events{"/music/a.mp3"});
        CHECK(k.player.isPlaying);
    }
}

TEST_CASE("with a track and nothing selected, play selects its row and goes on from where it is") {
    for (const char* slot : {"toggleStartStop", "playForward", "playBackward"}) {
        CAPTURE(slot);
        Keys k;
        k.addTrack(QStringLiteral("/music/b.mp3"));
        k.player.loadFileAdd(QStringLiteral("/music/dropped.mp3"), true);
        k.addTrack(QStringLiteral("/music/a.mp3"));
        k.select(-1);
        k.engine.movie()->time.timeValue = 600;
        k.opened();
        k.press(slot);
        CHECK(k.outlets.playList->selectedRow() == 1);
        CHECK(k.opened() == Events{});
        CHECK(k.engine.movie()->time.timeValue == 600);
        CHECK(k.player.isPlaying);
    }
}

TEST_CASE("play that pauses leaves the selection alone") {
    Keys k;
    k.loadTrack();
    k.press("toggleStartStop");
    k.select(-1);
    k.press("toggleStartStop");
    CHECK_FALSE(k.player.isPlaying);
    CHECK(k.outlets.playList->selectedRow() == -1);
}

TEST_CASE("a track that is in the list no more is not played on, and that is told") {
    Keys k;
    k.loadTrack();
    k.press("removeListEntry");
    k.addTrack(QStringLiteral("/music/b.mp3"));
    k.select(-1);
    k.press("toggleStartStop");
    CHECK(k.told.last() == "The track is not in the play list any more: select another one");
    CHECK(k.outlets.playList->selectedRow() == -1);
}

TEST_CASE("the action itself still needs a selected row") {
    Keys k;
    k.addTrack(QStringLiteral("/music/a.mp3"));
    k.select(-1);
    k.player.playForward();
    k.player.playBackward();
    CHECK(k.opened() == Events{});
    CHECK_FALSE(k.player.isPlaying);
}

TEST_CASE("with a track loaded from the selected row play is the plain action") {
    Keys k;
    k.addTrack(QStringLiteral("/music/a.mp3"));
    k.select(0);
    k.press("toggleStartStop");
    CHECK(k.opened() == Events{"/music/a.mp3"});
    k.press("toggleStartStop");
    CHECK_FALSE(k.player.isPlaying);
    k.press("toggleStartStop");
    CHECK(k.player.isPlaying);
    CHECK(k.opened() == Events{});
}

TEST_CASE("play while a file is being opened says so") {
    Keys k;
    k.fixture.log.atEvent = [&](const std::string& event) {
        if (event == "open /mounted/far.mp3") k.press("toggleStartStop");
    };
    k.player.loadFileAdd(QStringLiteral("/mounted/far.mp3"), true);
    CHECK(k.told.contains("far.mp3 is being opened"));
}

TEST_CASE("the actions themselves try a row that could not be opened only once") {
    Keys k;
    k.addTrack(QStringLiteral("/music/dead.mp3"));
    k.engine.unreadable.insert("/music/dead.mp3");
    k.select(0);
    k.opened();
    k.player.toggleStartStop();
    k.player.toggleStartStop();
    CHECK(k.opened() == Events{"/music/dead.mp3"});
}

TEST_CASE("a file that gives no track is told, each time, however it was to be opened") {
    Keys k;
    k.addTrack(QStringLiteral("/music/dead.mp3"));
    k.engine.unreadable.insert("/music/dead.mp3");
    k.select(0);
    k.press("toggleStartStop");
    k.press("selectTrack");
    emit k.outlets.playList->rowActivated();
    QCoreApplication::processEvents();
    CHECK(k.told == QStringList(3, QStringLiteral("dead.mp3 cannot be read: not a media file")));
    k.press("skip1");
    CHECK(k.told.filter(QStringLiteral("dead")).size() == 3);
}

TEST_CASE("a file that is not there is told with its folder, and can be looked for from there") {
    Keys k;
    Notice last;
    QObject::connect(&k.player.notices(), &Notices::told, &k.keys, [&](const Notice& n) { last = n; });
    const QString folder = k.fixture.home.path() + QStringLiteral("/music");
    QDir().mkpath(folder);
    k.addTrack(folder + QStringLiteral("/gone.mp3"));
    k.engine.missing.insert((folder + "/gone.mp3").toStdString());
    k.select(0);
    k.press("toggleStartStop");
    CHECK(last.text == QStringLiteral("gone.mp3 cannot be found in %1").arg(folder));
    REQUIRE(last.actText == "Look for It…");
    QString looked;
    k.player.trackLoader().setRunPanel([&](FilePanel& panel) -> std::optional<QStringList> {
        looked = panel.directory().path();
        return std::nullopt;
    });
    last.act();
    CHECK(looked == folder);
    CHECK(k.player.count() == 1);
}

TEST_CASE("of many files that are added it is not told one by one which cannot be opened") {
    Keys k;
    k.engine.unreadable.insert("/music/2.mp3");
    k.engine.unreadable.insert("/music/4.mp3");
    k.player.trackLoader().setRunPanel([](FilePanel&) {
        return std::optional(QStringList{"/music/1.mp3", "/music/2.mp3", "/music/3.mp3", "/music/4.mp3"});
    });
    k.press("openFile");
    while (k.player.trackLoader().queue().isBusy()) QCoreApplication::processEvents();
    CHECK(k.told.last() == "Added 2 of 4 files; 2 cannot be opened, the first is 2.mp3");
    CHECK(k.told.filter(QStringLiteral("2.mp3 cannot be read")).isEmpty());
}

// --- silence and gain ------------------------------------------------------------------------------------------------

TEST_CASE("the key for silence takes the gain away and brings it back, in field, slider and movie") {
    Keys k;
    k.loadTrack();
    k.outlets.gainSlider->moveByUser(0.75);
    k.fixture.log.take();
    k.press("silence");
    CHECK(k.gain() == 0.0);
    CHECK(k.player.gain == 0.0f);
    CHECK(k.fixture.log.count("setVolume 0") == 1);
    k.press("silence");
    CHECK(k.gain() == 0.75);
    CHECK(k.player.gain == 0.75f);
    CHECK(k.fixture.log.take().back() == "setVolume 0.75");
}

TEST_CASE("silence that the key did not make goes back to the gain at rest") {
    Keys k;
    k.loadTrack();
    k.outlets.gainSlider->moveByUser(0.9);
    k.press("silence");
    k.outlets.gainSlider->moveByUser(0.3);
    k.outlets.gainSlider->moveByUser(0);
    k.press("silence");
    CHECK(k.gain() == 0.5);
}

TEST_CASE("after the keys for silence and for the gain's reset the next track plays at what the slider shows") {
    for (const char* reset : {"resetGain", "resetSound"}) {
        CAPTURE(reset);
        Keys k;
        k.addTrack(QStringLiteral("/music/b.mp3"));
        k.loadTrack();
        k.press("silence");
        k.press(reset);
        CHECK(k.gain() == 0.5);
        CHECK(k.player.gain == 0.5f);
        k.select(1);
        k.fixture.log.take();
        k.press("selectTrack");
        CHECK(k.fixture.log.count("setVolume 0.5") == 1);
    }
}

TEST_CASE("the key that resets the whole sound still does all that its action does") {
    Keys k;
    k.loadTrack();
    k.player.speed20();
    k.player.balanceLeftMax();
    k.player.bassMax();
    k.player.semiToneUp();
    k.press("resetSound");
    CHECK(k.player.rate == 1.0f);
    CHECK(k.player.balance == 0.0f);
    CHECK(k.player.bass == 128);
    CHECK(k.player.pitch == 0.0f);
}

TEST_CASE("the buttons beside the gain keep their own actions") {
    Keys k;
    k.loadTrack();
    k.outlets.gainSlider->moveByUser(0.8);
    k.outlets.gainResetButton->click();
    CHECK(k.gain() == 0.5);
    CHECK(k.player.gain == 0.8f);
    k.window.findChild<QAbstractButton*>(QStringLiteral("volumeMin"))->click();
    CHECK(k.player.gain == 0.0f);
    CHECK(k.outlets.gainResetButton->title() == "0");
}

// --- what follows the track ------------------------------------------------------------------------------------------

TEST_CASE("the footer shows the format of the track that is loaded, however it came") {
    Keys k;
    k.addTrack(QStringLiteral("/music/b.wav"));
    k.engine.files["/music/b.wav"].trackFormats = {"Linear PCM, Stereo, 44.100 kHz"};
    k.loadTrack();
    k.press("toggleStartStop");
    CHECK(k.outlets.format->text() == "AAC, Stereo, 44.100 kHz\n");
    k.select(1);
    k.press("selectTrack");
    CHECK(k.outlets.format->text() == "Linear PCM, Stereo, 44.100 kHz\n");
    k.outlets.playList->acceptDrop = [&](const QList<QUrl>&) {
        k.player.loadFileAdd(QStringLiteral("/music/c.mp3"), true);
        return true;
    };
    k.outlets.playList->takeFiles({});
    CHECK(k.outlets.format->text() == "AAC, Stereo, 44.100 kHz\n");
    k.engine.unreadable.insert("/music/b.wav");
    k.select(2);
    k.press("selectTrack");
    CHECK(k.outlets.format->text() == " ");
}

TEST_CASE("a speed reset that sets a track going backward at its start in motion starts the clock again") {
    Keys k;
    k.loadTrack();
    k.press("playBackward");
    k.engine.movie()->done = true;
    fire(k.player.movieTimer.get());
    REQUIRE_FALSE(k.player.movieTimer->isActive());
    k.press("speedReset");
    CHECK(k.player.movieTimer->isActive());
}

TEST_CASE("wheel and arrow keys take the speed from forward to backward") {
    Keys k;
    k.loadTrack();
    k.outlets.speedSlider->moveByUser(0.4);
    for (const float rate : {0.35f, 0.0f, -0.35f, -0.4f}) {
        turnWheel(*k.outlets.speedSlider, -1);
        CHECK(k.player.rate == doctest::Approx(rate));
    }
    for (const float rate : {-0.35f, 0.0f, 0.35f, 0.4f}) {
        pressKey(*k.outlets.speedSlider, Qt::Key_Up);
        CHECK(k.player.rate == doctest::Approx(rate));
    }
}
