#include <doctest/doctest.h>

#include <QFile>
#include <QUrl>

#include "remote/MprisAdaptors.h"
#include "remote/RemoteFixture.h"
#include "support/widgets/TestText.h"

using namespace qm;

TEST_CASE("the loop between A and B is the loop status, can be set, and is told when it changes") {
    Remote r;
    CHECK(r.read("LoopStatus") == "None");
    r.load(0);
    r.remote.watch();
    r.player.loopSwitch();
    r.remote.refresh();
    CHECK(r.changed.value("LoopStatus") == "Track");
    r.remote.setLoops(true);
    CHECK(r.player.isLooping);
    r.remote.setLoops(false);
    CHECK_FALSE(r.player.isLooping);
    CHECK(r.changed.value("LoopStatus") == "None");
    r.remote.setLoops(true);
    CHECK(r.player.isLooping);
    CHECK(r.read("LoopStatus") == "Track");
}

TEST_CASE("a loop status that there is not does nothing") {
    Remote r;
    r.load(0);
    MprisPlayer adaptor(r.remote, &r.remote);
    adaptor.setLoopStatus(QStringLiteral("Playlist"));
    CHECK(adaptor.loopStatus() == "None");
    adaptor.setLoopStatus(QStringLiteral("Track"));
    CHECK(adaptor.loopStatus() == "Track");
    adaptor.setLoopStatus(QStringLiteral("Playlist"));
    CHECK(adaptor.loopStatus() == "Track");
    adaptor.setLoopStatus(QStringLiteral("None"));
    CHECK(adaptor.loopStatus() == "None");
}

TEST_CASE("a loop switch that stands on for another track is no loop, and setting the loop makes one") {
    Remote r;
    r.load(0);
    r.player.loopSwitch();
    r.load(1);
    REQUIRE(r.player.isLooping);
    CHECK(r.read("LoopStatus") == "None");
    r.remote.setLoops(true);
    CHECK(r.player.isLooping);
    CHECK(r.read("LoopStatus") == "Track");
}

TEST_CASE("the loop can be set while no row is selected: the loaded track's row gives the marks") {
    Remote r;
    r.load(1);
    r.living.outlets.playList->selectRowIndex(-1);
    r.remote.setLoops(true);
    CHECK(r.living.outlets.playList->selectedRow() == 1);
    CHECK(r.read("LoopStatus") == "Track");
}

TEST_CASE("without a track the loop cannot be set") {
    Remote r;
    r.remote.setLoops(true);
    CHECK(r.read("LoopStatus") == "None");
    CHECK_FALSE(r.player.isLooping);
}

TEST_CASE("play that comes while an address is being opened plays it once it is open") {
    for (const bool pauses : {false, true}) {
        CAPTURE(pauses);
        Remote r;
        QFile file(r.living.fixture.home.path() + QStringLiteral("/far.mp3"));
        REQUIRE(file.open(QIODevice::WriteOnly));
        r.living.fixture.log.atEvent = [&](const std::string& event) {
            if (!event.starts_with("open ") || !event.ends_with("far.mp3")) return;
            r.remote.play();
            if (pauses) r.remote.pause();
        };
        r.living.outlets.playList->selectRowIndex(-1);
        REQUIRE(r.remote.openUri(QUrl::fromLocalFile(file.fileName()).toString()));
        CHECK(r.player.isPlaying == !pauses);
        CHECK(r.player.loadedPath == file.fileName());
    }
}
