#include "remote/RemotePlayer.h"

#include <doctest/doctest.h>

#include <QCoreApplication>
#include <QDBusObjectPath>
#include <QFile>
#include <QUrl>
#include <cmath>
#include <limits>

#include "remote/MprisAdaptors.h"
#include "remote/RemoteFixture.h"

using namespace qm;

TEST_CASE("without a track the player is stopped, has no track and can go to the first row") {
    Remote r;
    CHECK(r.read("PlaybackStatus") == "Stopped");
    CHECK(r.trackId() == "/org/mpris/MediaPlayer2/TrackList/NoTrack");
    CHECK(r.metadata().size() == 1);
    CHECK(r.remote.position() == 0);
    CHECK(r.read("CanPlay").toBool());
    CHECK_FALSE(r.read("CanPause").toBool());
    CHECK_FALSE(r.read("CanSeek").toBool());
    CHECK(r.read("CanGoNext").toBool());
    CHECK_FALSE(r.read("CanGoPrevious").toBool());
    for (auto act : {&RemotePlayer::pause, &RemotePlayer::stop, &RemotePlayer::previous}) (r.remote.*act)();
    r.remote.seek(kSecond);
    CHECK_FALSE(r.player.qtMovie);
    r.remote.next();
    CHECK(r.player.loadedPath == "/music/a.mp3");
}

TEST_CASE("without a selected row play plays the first one, and without a row there is nothing to play") {
    for (auto play : {&RemotePlayer::play, &RemotePlayer::playPause}) {
        Remote r;
        (r.remote.*play)();
        CHECK(r.player.loadedPath == "/music/a.mp3");
        CHECK(r.read("PlaybackStatus") == "Playing");
    }
    Remote empty;
    empty.player.removeAllEntries();
    empty.living.outlets.playList->reloadData();
    CHECK_FALSE(empty.read("CanPlay").toBool());
    empty.remote.play();
    CHECK(empty.read("PlaybackStatus") == "Stopped");
}

TEST_CASE("the loaded track is told with its names, its length and its file") {
    Remote r;
    r.load(1);
    const QVariantMap data = r.metadata();
    CHECK(data.value("xesam:title") == "Blue Lantern");
    CHECK(data.value("xesam:artist") == QStringList{"Marlow Quartet"});
    CHECK(data.value("xesam:album") == "Night Ferry");
    CHECK(data.value("mpris:length") == 100 * kSecond);
    CHECK(data.value("xesam:url") == "file:///music/b.mp3");
    const QString first = r.trackId();
    r.load(2);
    CHECK(r.trackId() != first);
    r.player.artistArray[2] = QStringLiteral(" ");
    CHECK_FALSE(r.metadata().contains("xesam:artist"));
}

TEST_CASE("a file's name in the address is written as addresses are") {
    Remote r;
    r.living.addTrack(QStringLiteral("/music/é #1?.mp3"));
    r.load(0);
    CHECK(r.metadata().value("xesam:url") == "file:///music/%C3%A9%20%231%3F.mp3");
}

TEST_CASE("play, pause, play or pause, and stop do what the buttons do") {
    Remote r;
    r.load(0);
    CHECK(r.read("PlaybackStatus") == "Stopped");
    r.remote.play();
    CHECK(r.player.isPlaying);
    CHECK(r.read("PlaybackStatus") == "Playing");
    r.remote.play();
    CHECK(r.player.isPlaying);
    r.stand(7);
    r.remote.pause();
    CHECK_FALSE(r.player.isPlaying);
    CHECK(r.read("PlaybackStatus") == "Paused");
    r.remote.pause();
    CHECK_FALSE(r.player.isPlaying);
    r.remote.playPause();
    CHECK(r.player.isPlaying);
    r.remote.playPause();
    CHECK_FALSE(r.player.isPlaying);
    r.remote.play();
    r.remote.stop();
    CHECK(r.read("PlaybackStatus") == "Stopped");
    CHECK(r.remote.position() == 0);
}

TEST_CASE("stopped while looping stands at A") {
    Remote r;
    r.load(0);
    r.player.markAarray[0] = 5 * kScale;
    r.player.loopSwitch();
    r.remote.play();
    r.stand(9);
    r.remote.stop();
    CHECK(r.remote.position() == 5 * kSecond);
    CHECK(r.read("PlaybackStatus") == "Stopped");
}

TEST_CASE("at the end of the track nothing plays, and play begins again at the start") {
    Remote r;
    r.load(0);
    r.remote.play();
    r.stand(100);
    r.movie().done = true;
    CHECK(r.read("PlaybackStatus") == "Paused");
    r.living.fixture.log.take();
    r.remote.play();
    CHECK(r.player.isPlaying);
    CHECK(r.remote.position() == 0);
}

TEST_CASE("next and previous load their rows and go on playing or not") {
    Remote r;
    r.load(0);
    r.remote.next();
    CHECK(r.player.loadedPath == "/music/b.mp3");
    CHECK(r.living.outlets.playList->selectedRow() == 1);
    CHECK_FALSE(r.player.isPlaying);
    r.remote.play();
    r.remote.next();
    CHECK(r.player.loadedPath == "/music/c.mp3");
    CHECK(r.player.isPlaying);
    CHECK_FALSE(r.read("CanGoNext").toBool());
    r.remote.next();
    CHECK(r.player.loadedPath == "/music/c.mp3");
    r.remote.previous();
    CHECK(r.player.loadedPath == "/music/b.mp3");
    CHECK(r.player.isPlaying);
}

TEST_CASE("next counts from the loaded track, not from where the selection has gone") {
    Remote r;
    r.load(0);
    r.living.outlets.playList->selectRowIndex(2);
    r.remote.next();
    CHECK(r.player.loadedPath == "/music/b.mp3");
}

TEST_CASE("next leads past a file that cannot be opened") {
    Remote r;
    r.load(0);
    r.living.fixture.engine.unreadable.insert("/music/b.mp3");
    r.remote.next();
    CHECK_FALSE(r.player.qtMovie);
    r.remote.next();
    CHECK(r.player.loadedPath == "/music/c.mp3");
    CHECK(r.player.qtMovie);
}

TEST_CASE("seeking moves by its offset, stops at the start and goes on to the next track past the end") {
    Remote r;
    r.load(0);
    r.stand(50);
    r.remote.seek(20 * kSecond);
    CHECK(r.remote.position() == 70 * kSecond);
    CHECK(r.seeks == QList<qlonglong>{70 * kSecond});
    r.remote.seek(-90 * kSecond);
    CHECK(r.remote.position() == 0);
    r.remote.seek(std::numeric_limits<qlonglong>::min());
    CHECK(r.remote.position() == 0);
    CHECK(r.player.loadedPath == "/music/a.mp3");
    r.remote.seek(std::numeric_limits<qlonglong>::max());
    CHECK(r.player.loadedPath == "/music/b.mp3");
}

TEST_CASE("past the end of the last track there is nowhere to go") {
    Remote r;
    r.load(2);
    r.stand(50);
    r.remote.seek(60 * kSecond);
    CHECK(r.remote.position() == 50 * kSecond);
    CHECK(r.seeks.isEmpty());
}

TEST_CASE("a position is taken for the loaded track only, and only within it") {
    Remote r;
    r.load(0);
    const QString id = r.trackId();
    r.remote.setPosition(id, 30 * kSecond);
    CHECK(r.remote.position() == 30 * kSecond);
    r.remote.setPosition(QStringLiteral("/org/quillmere/track/99999"), 40 * kSecond);
    r.remote.setPosition(QString(), 40 * kSecond);
    r.remote.setPosition(id, -1);
    r.remote.setPosition(id, 100 * kSecond + 1);
    CHECK(r.remote.position() == 30 * kSecond);
    r.remote.setPosition(id, 100 * kSecond);
    CHECK(r.remote.position() == 100 * kSecond);
    CHECK(r.seeks == QList<qlonglong>{30 * kSecond, 100 * kSecond});
}

TEST_CASE("a loop whose B is set locks seeking, as it locks the slider") {
    Remote r;
    r.load(0);
    r.stand(50);
    r.player.markBUpdate();
    r.player.loopSwitch();
    CHECK_FALSE(r.read("CanSeek").toBool());
    r.remote.seek(-5 * kSecond);
    r.remote.setPosition(r.trackId(), 0);
    CHECK(r.remote.position() == 50 * kSecond);
    r.player.loopSwitch();
    CHECK(r.read("CanSeek").toBool());
}

TEST_CASE("a rate goes the way of the speed slider: field, title and movie") {
    Remote r;
    r.load(0);
    r.remote.play();
    r.living.fixture.log.take();
    r.remote.setRate(0.75);
    CHECK(r.player.rate == 0.75f);
    CHECK(r.living.outlets.speedSlider->value() == 0.75);
    CHECK(r.living.outlets.speedResetButton->title() == "0.750000.2");
    CHECK(r.living.fixture.log.take() == Events{"setRate 0.75"});
    CHECK(r.read("Rate") == 0.75);
    r.remote.setRate(-1.5);
    CHECK(r.player.rate == -1.5f);
}

TEST_CASE("a rate outside the speeds is the nearest of them, none is ignored, and 0 pauses") {
    Remote r;
    r.load(0);
    r.remote.play();
    r.remote.setRate(9);
    CHECK(r.player.rate == 2.5f);
    r.remote.setRate(0.2);
    CHECK(r.player.rate == 0.35f);
    r.remote.setRate(-0.2);
    CHECK(r.player.rate == -0.35f);
    r.remote.setRate(-std::numeric_limits<double>::infinity());
    CHECK(r.player.rate == -2.5f);
    r.remote.setRate(std::nan(""));
    CHECK(r.player.rate == -2.5f);
    CHECK(r.player.isPlaying);
    r.remote.setRate(0);
    CHECK(r.player.rate == -2.5f);
    CHECK_FALSE(r.player.isPlaying);
    CHECK(r.read("MinimumRate") == -2.5);
    CHECK(r.read("MaximumRate") == 2.5);
}

TEST_CASE("a rate that is nearer to 0 than to the slowest speed pauses and leaves the speed") {
    for (const double rate : {0.0, -0.0, 1e-300, 0.01, -0.17}) {
        CAPTURE(rate);
        Remote r;
        r.load(0);
        r.remote.play();
        r.remote.setRate(rate);
        CHECK_FALSE(r.player.isPlaying);
        CHECK(r.player.rate == 1.0f);
        CHECK(r.read("Rate") == 1.0);
    }
}

TEST_CASE("a volume goes the way of the gain slider and stays within its ends") {
    Remote r;
    r.load(0);
    r.remote.setVolume(0.25);
    CHECK(r.player.gain == 0.25f);
    CHECK(r.read("Volume") == 0.25);
    r.remote.setVolume(7);
    CHECK(r.player.gain == 1.0f);
    r.remote.setVolume(-1);
    CHECK(r.player.gain == 0.0f);
    r.remote.setVolume(std::nan(""));
    CHECK(r.player.gain == 0.0f);
}

TEST_CASE("an address is opened as a drop on the list, others are refused") {
    Remote r;
    CHECK_FALSE(r.remote.openUri(QStringLiteral("https://example.org/a.mp3")));
    CHECK_FALSE(r.remote.openUri(QStringLiteral("nonsense")));
    CHECK(r.player.count() == 3);
}

TEST_CASE("play after opening an address plays what was opened, whichever row was selected") {
    for (const int selected : {-1, 2}) {
        CAPTURE(selected);
        Remote r;
        QFile file(r.living.fixture.home.path() + QStringLiteral("/new.mp3"));
        REQUIRE(file.open(QIODevice::WriteOnly));
        r.living.outlets.playList->selectRowIndex(selected);
        REQUIRE(r.remote.openUri(QUrl::fromLocalFile(file.fileName()).toString()));
        CHECK(r.living.outlets.playList->selectedRow() == 0);
        CHECK(r.read("CanPlay").toBool());
        CHECK_FALSE(r.player.isPlaying);
        r.remote.play();
        CHECK(r.player.isPlaying);
        CHECK(r.player.loadedPath == file.fileName());
    }
}

TEST_CASE("an address that gives no track leaves the selection") {
    Remote r;
    QFile file(r.living.fixture.home.path() + QStringLiteral("/dead.mp3"));
    REQUIRE(file.open(QIODevice::WriteOnly));
    r.living.fixture.engine.unreadable.insert(file.fileName().toStdString());
    r.living.outlets.playList->selectRowIndex(2);
    r.remote.openUri(QUrl::fromLocalFile(file.fileName()).toString());
    CHECK(r.living.outlets.playList->selectedRow() == 2);
}

TEST_CASE("play tries a row that could not be opened again") {
    Remote r;
    r.living.fixture.engine.unreadable.insert("/music/a.mp3");
    r.load(0);
    r.remote.play();
    CHECK_FALSE(r.player.qtMovie);
    r.living.fixture.engine.unreadable.clear();
    r.remote.play();
    CHECK(r.player.qtMovie);
    CHECK(r.read("PlaybackStatus") == "Playing");
}

TEST_CASE("the kinds of files that are named are those that are taken") {
    Remote r;
    QObject parent;
    const QStringList kinds = MprisRoot(r.remote, &parent).mimeTypes();
    const std::pair<const char*, const char*> kindOf[] = {
        {"a.mp3", "audio/mpeg"},      {"a.m4a", "audio/mp4"},      {"a.wav", "audio/x-wav"},
        {"a.aiff", "audio/x-aiff"},   {"a.aifc", "audio/x-aifc"},  {"a.caf", "audio/x-caf"},
        {"a.mp4", "video/mp4"},       {"a.m4v", "video/x-m4v"},    {"a.mov", "video/quicktime"},
        {"a.avi", "video/x-msvideo"}, {"a.wmv", "video/x-ms-wmv"}, {"a.dv", "video/dv"}};
    for (const auto& [name, kind] : kindOf) {
        CAPTURE(name);
        QFile file(r.living.fixture.home.path() + u'/' + QString::fromLatin1(name));
        REQUIRE(file.open(QIODevice::WriteOnly));
        CHECK(r.remote.openUri(QUrl::fromLocalFile(file.fileName()).toString()) ==
              kinds.contains(QString::fromLatin1(kind)));
    }
}

TEST_CASE("what changes is told, and only that") {
    Remote r;
    r.load(0);
    r.remote.watch();
    r.remote.refresh();
    CHECK(r.changed.isEmpty());
    r.living.window.actions().send(ActionId::playForward);
    CHECK(r.changed == QVariantMap{{"PlaybackStatus", "Playing"}});
    r.changed.clear();
    r.player.speed05();
    r.remote.refresh();
    CHECK(r.changed == QVariantMap{{"Rate", 0.5}});
    r.changed.clear();
    r.load(2);
    r.remote.refresh();
    CHECK(QStringList(r.changed.keys()) == QStringList{"CanGoNext", "CanGoPrevious", "Metadata"});
}

TEST_CASE("a jump is told, playing on is not") {
    Remote r;
    r.load(0);
    r.remote.play();
    r.player.speed20();
    r.remote.watch();
    r.stand(2);
    r.now = 1000;
    r.remote.refresh();
    CHECK(r.seeks.isEmpty());
    r.stand(32);
    r.remote.refresh();
    CHECK(r.seeks == QList<qlonglong>{32 * kSecond});
    r.load(1);
    r.remote.refresh();
    CHECK(r.seeks.size() == 1);
}
