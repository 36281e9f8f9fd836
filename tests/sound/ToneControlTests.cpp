#include "sound/ToneControl.h"

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

using Action = void (QMController::*)();
using Tones = std::vector<std::int16_t>;

Events toneOf(int bass, int treble) {
    return {"setTone track 0 " + std::to_string(bass) + " " + std::to_string(treble)};
}

}  // namespace

TEST_CASE_FIXTURE(ControllerFixture, "bass and treble are neutral at the start") {
    start();
    CHECK(controller->bass == 128);
    CHECK(controller->treble == 128);
}

TEST_CASE_FIXTURE(ControllerFixture, "the presets of bass and treble set field, slider and a plain title") {
    start();
    const std::tuple<Action, std::int16_t, const char*> bass[] = {
        {&QMController::bassMax, 256, "256"}, {&QMController::bassMin, 0, "0"}, {&QMController::bassReset, 128, "128"}};
    for (const auto& [action, value, title] : bass) {
        drag(outlets.bassSlider, 17, &QMController::bassUpdate);
        (controller.get()->*action)();
        CHECK(controller->bass == value);
        CHECK(outlets.bassSlider->value() == value);
        CHECK(outlets.bassResetButton->title() == title);
        CHECK_FALSE(outlets.bassResetButton->titleAttributes());
    }
    const std::tuple<Action, std::int16_t, const char*> treble[] = {{&QMController::trebleMax, 256, "256"},
                                                                    {&QMController::trebleMin, 0, "0"},
                                                                    {&QMController::trebleReset, 128, "128"}};
    for (const auto& [action, value, title] : treble) {
        drag(outlets.trebleSlider, 17, &QMController::trebleUpdate);
        (controller.get()->*action)();
        CHECK(controller->treble == value);
        CHECK(outlets.trebleSlider->value() == value);
        CHECK(outlets.trebleResetButton->title() == title);
        CHECK_FALSE(outlets.trebleResetButton->titleAttributes());
    }
    CHECK(controller->bass == 128);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a tone slider's value is cut toward zero, the slider stays and the title has its attributes") {
    start();
    drag(outlets.bassSlider, 200.6, &QMController::bassUpdate);
    CHECK(controller->bass == 200);
    CHECK(outlets.bassSlider->value() == 200.6);
    CHECK(outlets.bassResetButton->title() == "200");
    CHECK(outlets.bassResetButton->titleAttributes() == controller->controlColorAttributes);
    drag(outlets.trebleSlider, 127.9, &QMController::trebleUpdate);
    CHECK(controller->treble == 127);
    CHECK(outlets.trebleSlider->value() == 127.9);
    CHECK(outlets.trebleResetButton->title() == "127");
    CHECK(outlets.trebleResetButton->titleAttributes() == controller->controlColorAttributes);
}

TEST_CASE_FIXTURE(ControllerFixture, "a tone value keeps its low sixteen bits") {
    start();
    outlets.bassSlider->setMaximum(100000);
    drag(outlets.bassSlider, 40000, &QMController::bassUpdate);
    CHECK(controller->bass == -25536);
    CHECK(outlets.bassResetButton->title() == "-25536");
}

TEST_CASE_FIXTURE(ControllerFixture, "a tone action sets field, slider and title, then the row, then the engine") {
    startWithLoadedTrack();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", slider " + std::to_string(int(outlets.trebleSlider->value())) + ", title " +
                       outlets.trebleResetButton->title().toStdString() + ", row " +
                       std::to_string(controller->trebleArray[0]));
    };
    controller->trebleMax();
    CHECK(seen == Events{"setTone track 0 128 256, slider 256, title 256, row 256"});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "without a movie neither the list nor the engine is touched, even with a row selected") {
    startWithRows({"/music/one.wav"});
    outlets.playList->selectRowIndex(0);
    controller->bassMax();
    drag(outlets.trebleSlider, 3, &QMController::trebleUpdate);
    CHECK(controller->bassArray == Tones{128});
    CHECK(controller->trebleArray == Tones{128});
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a tone change is kept in the selected row's own array only, and both values reach the engine") {
    startWithLoadedTrack();
    addRow("/music/three.wav");
    outlets.playList->selectRowIndex(2);
    drag(outlets.trebleSlider, 77, &QMController::trebleUpdate);
    log.take();
    controller->bassMax();
    CHECK(controller->bassArray == Tones{128, 128, 256});
    CHECK(controller->trebleArray == Tones{128, 128, 77});
    CHECK(log.events() == toneOf(256, 77));
}

TEST_CASE_FIXTURE(ControllerFixture, "with a movie but no selected row the engine gets the values and no row changes") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(-1);
    controller->bassMin();
    CHECK(log.events() == toneOf(0, 128));
    CHECK(controller->bassArray == Tones{128, 128});
}

TEST_CASE_FIXTURE(ControllerFixture, "treble set to the least before a file is added is stored with that file") {
    start();
    controller->trebleMin();
    CHECK(outlets.trebleSlider->value() == 0.0);
    CHECK(outlets.trebleResetButton->title() == "0");
    controller->loadFileAdd("/music/new.wav", true);
    CHECK(controller->trebleArray == Tones{0});
    CHECK(controller->bassArray == Tones{128});
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a movie without sound tracks gets no tone, one with two gets it on the first only") {
    engine.files["/music/one.wav"] = MovieScript{.soundTracks = 0};
    engine.files["/music/two.wav"] = MovieScript{.soundTracks = 2};
    startWithLoadedTrack();
    controller->bassMax();
    CHECK(log.count("setTone") == 0);
    CHECK(controller->bassArray[0] == 256);
    outlets.playList->selectRowIndex(1);
    controller->selectTrack();
    log.take();
    controller->bassMax();
    CHECK(log.events() == toneOf(256, 128));
}

TEST_CASE_FIXTURE(ControllerFixture, "loading a row brings its tone back to fields, sliders, titles and the engine") {
    startWithLoadedTrack();
    controller->bassArray[1] = 30;
    controller->trebleArray[1] = 200;
    outlets.playList->selectRowIndex(1);
    controller->selectTrack();
    CHECK(controller->bass == 30);
    CHECK(controller->treble == 200);
    CHECK(outlets.bassSlider->value() == 30.0);
    CHECK(outlets.trebleSlider->value() == 200.0);
    CHECK(outlets.bassResetButton->title() == "30");
    CHECK(outlets.bassResetButton->titleAttributes() == controller->controlColorAttributes);
    CHECK(outlets.trebleResetButton->title() == "200");
    CHECK(log.count(toneOf(30, 200)[0]) == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "the row written is the one selected now, also when another track is loaded") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(1);
    drag(outlets.bassSlider, 40, &QMController::bassUpdate);
    CHECK(controller->bassArray == Tones{128, 40});
}

TEST_CASE_FIXTURE(ControllerFixture, "a failing call changes nothing of the tone shown and kept") {
    startWithLoadedTrack();
    controller->quickTimeMovie = 0;
    controller->bassMax();
    CHECK(controller->bass == 256);
    CHECK(outlets.bassResetButton->title() == "256");
    CHECK(controller->bassArray == Tones{256, 128});
}
