#include "library/TrackLoader.h"

#include <QLabel>
#include <QPointer>
#include <QTimer>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

MovieScript taggedSong() {
    MovieScript script;
    script.duration = 132300;
    script.timeScale = 44100;
    script.displayName = "Blue";
    script.tags = {{"\xa9"
                    "ART",
                    "Ella"},
                   {"\xa9"
                    "alb",
                    "Live"}};
    return script;
}

}  // namespace

TEST_CASE_FIXTURE(ControllerFixture, "a load goes step by step, and says so in the log") {
    startWithLoadedTrack();
    controller->isPlaying = true;
    controller->rate = -0.5f;
    controller->gain = 0.25f;
    controller->balance = -0.75f;
    controller->pitch = -150.0f;
    controller->loadFileAdd("/music/new.wav", true);
    CHECK(log.events() == Events{"log loadFile: 1", "stop", "log loadFile: 2", "open /music/new.wav", "log loadFile: 3",
                                 "setMuted NO", "setVolume 0.25", "setBalance -0.75", "setPitch -150",
                                 "setTone track 0 128 128", "meterVolume YES", "meterBands YES", "play",
                                 "setRate -0.5"});
}

TEST_CASE_FIXTURE(ControllerFixture, "the path is kept before the file is opened") {
    start();
    QString atOpen;
    log.atEvent = [&](const std::string& event) {
        if (event.starts_with("open ")) atOpen = controller->loadedPath;
    };
    controller->loadFileAdd("/music/new.wav", false);
    CHECK(atOpen == "/music/new.wav");
}

TEST_CASE_FIXTURE(ControllerFixture, "a file that cannot be opened leaves everything but path and movie as it was") {
    startWithLoadedTrack();
    controller->isPlaying = true;
    engine.unreadable.insert("/music/text.mp3");
    const Events before = everything();
    const Movie handle = controller->quickTimeMovie;
    controller->loadFileAdd("/music/text.mp3", true);
    CHECK(everything() == before);
    CHECK(controller->count() == 2);
    CHECK(controller->loadedPath == "/music/text.mp3");
    CHECK(controller->qtMovie == nullptr);
    CHECK(controller->quickTimeMovie == handle);
    CHECK(log.events() == Events{"log loadFile: 1", "stop", "log loadFile: 2", "open /music/text.mp3",
                                 "log Unable to open /music/text.mp3: not a media file"});
}

TEST_CASE_FIXTURE(ControllerFixture, "what is loaded while a file is being opened follows in its turn") {
    startWithLoadedTrack();
    bool hadTrack = true;
    log.atEvent = [&](const std::string& event) {
        if (event != "open /music/slow.wmv") return;
        hadTrack = controller->qtMovie != nullptr;
        controller->loadFileAdd("/music/next.wav", true);
        CHECK(controller->loadedPath == "/music/slow.wmv");
    };
    controller->loadFileAdd("/music/slow.wmv", true);
    CHECK_FALSE(hadTrack);
    CHECK(controller->loadedPath == "/music/next.wav");
    CHECK(controller->trackArray[0] == "/music/next.wav");
    CHECK(controller->trackArray[1] == "/music/slow.wmv");
}

TEST_CASE_FIXTURE(ControllerFixture, "a movie with video brings its panel, one without hides it") {
    start();
    engine.files["/music/film.mp4"].hasVideo = true;
    CHECK_FALSE(outlets.videoPanel->isVisible());
    controller->loadFileAdd("/music/film.mp4", true);
    CHECK(outlets.videoPanel->isVisible());
    controller->loadFileAdd("/music/song.mp3", true);
    CHECK_FALSE(outlets.videoPanel->isVisible());
}

TEST_CASE_FIXTURE(ControllerFixture, "the position slider spans the movie and stands at its start under a new clock") {
    startWithLoadedTrack();
    engine.files["/music/long.wav"].duration = 2000000000;
    outlets.cueSlider->setValue(500);
    const QPointer<QTimer> clock = controller->movieTimer.get();
    controller->loadFileAdd("/music/long.wav", false);
    CHECK(outlets.cueSlider->minimum() == 0.0);
    CHECK(outlets.cueSlider->maximum() == 2000000000.0);
    CHECK(outlets.cueSlider->value() == 0.0);
    CHECK(clock.isNull());
    CHECK(controller->movieTimer->isActive());
}

TEST_CASE_FIXTURE(ControllerFixture, "speed, pitch, gain, balance and the loop's times survive two loads") {
    start();
    controller->rate = 0.5f;
    controller->pitch = 300.0f;
    controller->gain = 0.125f;
    controller->balance = 1.0f;
    controller->timeA = {1, 2, 0};
    controller->timeB = {3, 4, 0};
    controller->loadFileAdd("/music/one.wav", true);
    controller->loadFileAdd("/music/two.wav", true);
    CHECK(controller->rate == 0.5f);
    CHECK(controller->pitch == 300.0f);
    CHECK(controller->gain == 0.125f);
    CHECK(controller->balance == 1.0f);
    CHECK(controller->timeA == QTTime{1, 2, 0});
    CHECK(controller->timeB == QTTime{3, 4, 0});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "an added file is the new top row with its tags, and the current bass and treble") {
    startWithRows({"/music/old.wav"});
    engine.files["/music/blue.m4a"] = taggedSong();
    controller->bass = 10;
    controller->treble = 20;
    controller->loadFileAdd("/music/blue.m4a", true);
    REQUIRE(controller->count() == 2);
    CHECK(controller->trackArray[0] == "/music/blue.m4a");
    CHECK(controller->displayNamesArray[0] == "Blue");
    CHECK(controller->artistArray[0] == "Ella");
    CHECK(controller->albumArray[0] == "Live");
    CHECK(controller->durations[0] == 132300);
    CHECK(controller->timescaleArray[0] == 44100);
    CHECK(controller->bassArray[0] == 10);
    CHECK(controller->trebleArray[0] == 20);
    CHECK(controller->markAarray[0] == 0);
    CHECK(controller->markBarray[0] == 132300);
    CHECK(outlets.playList->model()->rowCount() == 2);
    CHECK(outlets.trackTotal->text() == "2 items");
}

TEST_CASE_FIXTURE(ControllerFixture, "a movie without name or tags is listed by its path, and one space each") {
    start();
    engine.usual.displayName.reset();
    controller->loadFileAdd("/music/bare.wav", true);
    CHECK(controller->displayNamesArray[0] == "/music/bare.wav");
    CHECK(controller->artistArray[0] == " ");
    CHECK(controller->albumArray[0] == " ");
}

TEST_CASE_FIXTURE(ControllerFixture, "a duration is widened with its sign") {
    start();
    engine.usual.duration = -5;
    controller->loadFileAdd("/music/odd.wav", true);
    CHECK(controller->durations[0] == -5);
    CHECK(controller->markBarray[0] == -5);
}

TEST_CASE_FIXTURE(ControllerFixture, "without add the list stays as it is") {
    startWithRows({"/music/old.wav"});
    controller->loadFileAdd("/music/new.wav", false);
    CHECK(controller->trackArray == std::vector<QString>{"/music/old.wav"});
}

TEST_CASE_FIXTURE(ControllerFixture, "a file added twice is listed twice") {
    start();
    controller->loadFileAdd("/music/one.wav", true);
    controller->loadFileAdd("/music/one.wav", true);
    CHECK(controller->trackArray == std::vector<QString>{"/music/one.wav", "/music/one.wav"});
}

TEST_CASE_FIXTURE(ControllerFixture, "adding keeps the selected index, whose bass and treble come back") {
    startWithRows({"/m/0.wav", "/m/1.wav", "/m/2.wav", "/m/3.wav"});
    controller->bassArray = {1, 2, 3, 4};
    controller->trebleArray = {11, 12, 13, 14};
    outlets.playList->selectRowIndex(3);
    controller->loadFileAdd("/m/new.wav", true);
    CHECK(outlets.playList->selectedRow() == 3);
    CHECK(controller->bass == 3);
    CHECK(controller->treble == 13);
    CHECK(log.count("setTone track 0 3 13") == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "with row 0 selected the selection means the new row") {
    startWithRows({"/m/0.wav"});
    controller->bassArray[0] = 77;
    outlets.playList->selectRowIndex(0);
    controller->loadFileAdd("/m/new.wav", true);
    CHECK(outlets.playList->selectedRow() == 0);
    CHECK(controller->bass == 128);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the selected row's tone is shown on sliders and in titles in the control's style") {
    startWithRows({"/m/0.wav"});
    controller->bassArray[0] = 200;
    controller->trebleArray[0] = -5;
    outlets.playList->selectRowIndex(0);
    controller->loadFileAdd("/m/0.wav", false);
    CHECK(outlets.bassSlider->value() == 200.0);
    CHECK(outlets.bassResetButton->title() == "200");
    CHECK(outlets.bassResetButton->titleAttributes() == controller->controlColorAttributes);
    CHECK(outlets.trebleSlider->value() == 0.0);
    CHECK(outlets.trebleResetButton->title() == "-5");
    CHECK(outlets.trebleResetButton->titleAttributes() == controller->controlColorAttributes);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "without a selected row the player's tone stays, goes into the new row and not to the movie") {
    startWithRows({"/m/0.wav"});
    controller->bass = 9;
    controller->loadFileAdd("/m/new.wav", true);
    CHECK(controller->bass == 9);
    CHECK(controller->bassArray == std::vector<std::int16_t>{9, 128});
    CHECK(log.count("setTone") == 0);
}

TEST_CASE_FIXTURE(ControllerFixture, "loading while paused leaves the new movie at rest at its start") {
    startWithLoadedTrack();
    controller->loadFileAdd("/music/new.wav", true);
    CHECK(log.count("play") == 0);
    CHECK(log.count("setRate") == 0);
    CHECK(engine.movie()->time.timeValue == 0);
}

TEST_CASE_FIXTURE(ControllerFixture, "a load works without any control on screen") {
    outlets = Outlets();
    start();
    controller->isPlaying = true;
    controller->loadFileAdd("/music/new.wav", true);
    CHECK(controller->count() == 1);
    CHECK(log.events().back() == "setRate 1");
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the meters are switched on after the metering, if the user wants them and they are off") {
    start();
    log.take();
    PositionClock clock(*controller, *controller, engine.toolbox);
    ToneControl tone(*controller, *controller, *controller, engine.toolbox);
    TrackMetadata metadata(engine.metaData);
    Notices notices;
    bool wanted = true;
    TrackLoader loader(*controller, *controller, *controller, engine, engine.toolbox, clock, tone, metadata, notices,
                       {[&] { return wanted; }, [&](bool on) { log.add(on ? "meters on" : "meters off"); }});
    loader.loadFileAdd("/music/one.wav", false);
    CHECK(log.events().back() == "meters on");
    CHECK(log.events().at(log.events().size() - 2) == "meterBands YES");
    controller->audioLevelIndicatorsState = true;
    loader.loadFileAdd("/music/one.wav", false);
    controller->audioLevelIndicatorsState = false;
    wanted = false;
    loader.loadFileAdd("/music/one.wav", false);
    CHECK(log.count("meters on") == 1);
}

namespace {

struct RefusingEngine : FakeMediaEngine {
    using FakeMediaEngine::FakeMediaEngine;
    Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string&) override { return refusal; }
    Error refusal{ErrorCategory::TooLong, "is too long to be played: 2 minutes is the most"};
};

}  // namespace

TEST_CASE_FIXTURE(ControllerFixture,
                  "a file that is too long is told with the reason, one that cannot be read is not") {
    start();
    QStringList told;
    QObject::connect(&controller->notices(), &Notices::told, [&](const Notice& notice) { told << notice.text; });
    RefusingEngine refusing(log);
    PositionClock clock(*controller, *controller, refusing.toolbox);
    ToneControl tone(*controller, *controller, *controller, refusing.toolbox);
    TrackMetadata metadata(refusing.metaData);
    TrackLoader loader(*controller, *controller, *controller, refusing, refusing.toolbox, clock, tone, metadata,
                       controller->notices());
    loader.loadFileAdd(QStringLiteral("/music/a day \u00fc.wav"), true);
    CHECK(told == QStringList{QStringLiteral("a day \u00fc.wav is too long to be played: 2 minutes is the most")});
    CHECK(controller->count() == 0);
    refusing.refusal.category = ErrorCategory::Unreadable;
    loader.loadFileAdd("/music/two.wav", true);
    CHECK(told.size() == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "names that are not ASCII reach the engine in the file system's encoding") {
    start();
    controller->loadFileAdd(QStringLiteral("/music/\u00fc.wav"), false);
    CHECK(log.count("open /music/\xc3\xbc.wav") == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "a track that is asked for while another one is opened takes its place") {
    start();
    log.atEvent = [&](const std::string& event) {
        if (event != "open /mounted/far.wav") return;
        controller->loadFileAdd("/music/near.wav", false);
        controller->loadFileAdd("/music/nearer.wav", false);
    };
    controller->loadFileAdd("/mounted/far.wav", false);
    CHECK(log.count("give up opening") == 2);
    CHECK(log.count("open /music/near.wav") == 0);
    CHECK(controller->loadedPath == "/music/nearer.wav");
}

TEST_CASE_FIXTURE(ControllerFixture, "a track that is to be added keeps its turn, whatever is asked for after it") {
    start();
    log.atEvent = [&](const std::string& event) {
        if (event != "open /music/one.wav") return;
        controller->loadFileAdd("/music/two.wav", true);
        controller->loadFileAdd("/music/three.wav", false);
    };
    controller->loadFileAdd("/music/one.wav", true);
    CHECK(log.count("give up opening") == 0);
    CHECK(controller->trackArray == std::vector<QString>{"/music/two.wav", "/music/one.wav"});
    CHECK(controller->loadedPath == "/music/three.wav");
}

TEST_CASE_FIXTURE(ControllerFixture, "the user is told of a file that does not answer, and of no other that fails") {
    start();
    QStringList told;
    QObject::connect(&controller->notices(), &Notices::told, [&](const Notice& notice) { told.append(notice.text); });
    engine.unreadable.insert("/music/text.mp3");
    engine.silent.insert("/mounted/far.wav");
    controller->loadFileAdd("/music/text.mp3", false);
    CHECK(told.isEmpty());
    controller->loadFileAdd("/mounted/far.wav", false);
    CHECK(told == QStringList{"far.wav cannot be read"});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a file that gave no track is remembered until it gives one, and is never removed") {
    startWithRows({"/music/gone.wav", "/music/here.wav"});
    TrackLoader& loader = controller->trackLoader();
    const auto isFaint = [&](int row) {
        return outlets.playList->model()->index(row, 1).data(FailedTrackRole).toBool();
    };
    const auto spoken = [&](int row) {
        return outlets.playList->model()->index(row, 1).data(Qt::AccessibleTextRole).toString();
    };
    engine.missing.insert("/music/gone.wav");
    CHECK_FALSE(isFaint(0));
    controller->loadFileAdd("/music/gone.wav", false);
    CHECK(loader.failureOf("/music/gone.wav") == ErrorCategory::NotFound);
    CHECK(isFaint(0));
    CHECK_FALSE(isFaint(1));
    CHECK(spoken(0).endsWith(", file not found"));
    CHECK(controller->count() == 2);
    controller->loadFileAdd("/music/here.wav", false);
    CHECK(isFaint(0));
    engine.missing.clear();
    engine.unreadable.insert("/music/gone.wav");
    controller->loadFileAdd("/music/gone.wav", false);
    CHECK(spoken(0).endsWith(", cannot be opened"));
    engine.unreadable.clear();
    controller->loadFileAdd("/music/gone.wav", false);
    CHECK_FALSE(isFaint(0));
    CHECK_FALSE(spoken(0).contains("cannot"));
}
