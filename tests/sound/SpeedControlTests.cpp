#include "sound/SpeedControl.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <functional>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

const Events kForwardImages = {"db_Play_F_on.png", "db_Pause_off.png", "db_Play_R_off.png"};
const Events kBackwardImages = {"db_Play_F_off.png", "db_Pause_off.png", "db_Play_R_on.png"};

using Action = std::function<void(QMController&)>;

void speedUpdate(QMController& controller) {
    controller.speedUpdate(controller.speedSlider->value());
}

const Action kSpeedActions[] = {speedUpdate,
                                &QMController::speed05,
                                &QMController::speed075,
                                &QMController::speed150,
                                &QMController::speed20,
                                &QMController::speedDown,
                                &QMController::speedUp,
                                &QMController::speedReset};

// The speed controls alone, without a program around them.
struct SpeedAlone {
    PlayerState state;
    Slider slider;
    TitleButton title;
    Outlets outlets;
    EventLog log;
    FakeMediaEngine engine{log};
    PositionClock clock{state, outlets, engine.toolbox};
    SpeedControl speed{state, outlets, clock};

    SpeedAlone() {
        slider.setRange(-10, 10);
        outlets.speedSlider = &slider;
        outlets.speedResetButton = &title;
    }
};

}  // namespace

TEST_CASE_FIXTURE(ControllerFixture, "the speed is one at the start, and a load does not change it") {
    start();
    CHECK(controller->rate == 1.0f);
    controller->speed05();
    startWithRows({"/music/one.wav"});
    controller->speed150();
    outlets.playList->selectRowIndex(0);
    controller->selectTrack();
    CHECK(controller->rate == 1.5f);
}

TEST_CASE_FIXTURE(ControllerFixture, "the speed slider's value is the signed rate itself") {
    start();
    drag(outlets.speedSlider, -1.25, &QMController::speedUpdate);
    CHECK(controller->rate == -1.25f);
    CHECK(outlets.speedSlider->value() == -1.25);
    CHECK(outlets.speedResetButton->title() == "-1.250000.2");
}

TEST_CASE_FIXTURE(ControllerFixture, "the four presets set their speeds and turn backward playing forward") {
    startWithLoadedTrack();
    const std::tuple<Action, float, const char*> presets[] = {{&QMController::speed05, 0.5f, "0.500000.2"},
                                                              {&QMController::speed075, 0.75f, "0.750000.2"},
                                                              {&QMController::speed150, 1.5f, "1.500000.2"},
                                                              {&QMController::speed20, 2.0f, "2.000000.2"}};
    for (const auto& [action, rate, title] : presets) {
        CAPTURE(title);
        controller->playBackward();
        action(*controller);
        CHECK(controller->rate == rate);
        CHECK(outlets.speedSlider->value() == rate);
        CHECK(outlets.speedResetButton->title() == title);
        CHECK(transportImages() == kForwardImages);
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "a preset while playing backward at a half plays forward at its speed") {
    startWithLoadedTrack();
    drag(outlets.speedSlider, -0.5, &QMController::speedUpdate);
    controller->playBackward();
    log.take();
    controller->speed150();
    CHECK(log.events() == Events{"setRate 1.5"});
}

TEST_CASE_FIXTURE(ControllerFixture, "every speed title is drawn with the value titles' attributes") {
    start();
    for (const Action& action : kSpeedActions) {
        outlets.speedResetButton->setPlainTitle("plain");
        action(*controller);
        CHECK(outlets.speedResetButton->titleAttributes() == controller->controlColorAttributes);
    }
    CHECK(outlets.speedResetButton->title() == "1.0");
}

TEST_CASE("a rate inside the limits stays, one outside goes to its limit, and zero passes") {
    SpeedAlone alone;
    const std::pair<float, float> cases[] = {{0.1f, 0.35f},   {0.349f, 0.35f},  {0.35f, 0.35f},   {0.36f, 0.36f},
                                             {-0.1f, -0.35f}, {-0.35f, -0.35f}, {-0.36f, -0.36f}, {0.0f, 0.0f},
                                             {2.5f, 2.5f},    {2.51f, 2.5f},    {100.0f, 2.5f},   {-2.5f, -2.5f},
                                             {-2.51f, -2.5f}, {1e-30f, 0.35f},  {-1e-30f, -0.35f}};
    for (const auto& [asked, kept] : cases) {
        CAPTURE(asked);
        alone.state.rate = asked;
        alone.speed.speedValidate();
        CHECK(alone.state.rate == kept);
        CHECK(alone.slider.value() == kept);
        CHECK(alone.title.title() == QString::asprintf("%1f.2", double(kept)));
    }
}

TEST_CASE("the slider's action does not limit a rate beyond two and a half") {
    SpeedAlone alone;
    alone.slider.setValue(3.0);
    alone.speed.speedUpdate(alone.slider.value());
    CHECK(alone.state.rate == 3.0f);
    CHECK(alone.slider.value() == 3.0);
    CHECK(alone.title.title() == "3.000000.2");
}

TEST_CASE_FIXTURE(ControllerFixture, "a slider value below the slowest speed goes to it and takes the slider along") {
    start();
    drag(outlets.speedSlider, 0.2, &QMController::speedUpdate);
    CHECK(controller->rate == 0.35f);
    CHECK(outlets.speedSlider->value() == 0.35f);
    drag(outlets.speedSlider, -0.1, &QMController::speedUpdate);
    CHECK(controller->rate == -0.35f);
    CHECK(outlets.speedSlider->value() == -0.35f);
    CHECK(outlets.speedResetButton->title() == "-0.350000.2");
}

TEST_CASE_FIXTURE(ControllerFixture, "a slider at the slowest speed takes the value that a float can hold") {
    start();
    drag(outlets.speedSlider, 0.35, &QMController::speedUpdate);
    CHECK(controller->rate == 0.35f);
    CHECK(outlets.speedSlider->value() == double(0.35f));
}

TEST_CASE_FIXTURE(ControllerFixture, "the slider at exactly zero makes a playing movie stand still and shows forward") {
    startWithLoadedTrack();
    controller->playBackward();
    log.take();
    drag(outlets.speedSlider, 0, &QMController::speedUpdate);
    CHECK(controller->rate == 0.0f);
    CHECK(outlets.speedSlider->value() == 0.0);
    CHECK(controller->isPlaying);
    CHECK(log.events() == Events{"setRate 0"});
    CHECK(transportImages() == kForwardImages);
}

TEST_CASE_FIXTURE(ControllerFixture, "without a movie a speed action changes rate, slider and title only") {
    start();
    log.take();
    const Events images = transportImages();
    for (const Action action : {&QMController::speed05, &QMController::speedUp, &QMController::speedDown}) {
        action(*controller);
    }
    CHECK(controller->rate == 0.5f);
    CHECK(outlets.speedSlider->value() == 0.5);
    CHECK(outlets.speedResetButton->title() == "0.500000.2");
    CHECK(log.events() == Events{});
    CHECK(controller->movieTimer == nullptr);
    CHECK(transportImages() == images);
    CHECK(QApplication::activeModalWidget() == nullptr);
}

TEST_CASE_FIXTURE(ControllerFixture, "while paused a speed action leaves the movie alone but restarts the clock") {
    startWithLoadedTrack();
    const Events images = transportImages();
    for (const Action& action : {Action(speedUpdate), Action(&QMController::speed05), Action(&QMController::speedUp),
                                 Action(&QMController::speedDown)}) {
        const QPointer<QTimer> before = controller->movieTimer.get();
        action(*controller);
        CHECK(before.isNull());
        CHECK(controller->movieTimer->isActive());
    }
    CHECK(log.events() == Events{});
    CHECK(transportImages() == images);
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "while playing a speed action shows the value, sets the movie's rate, then the images, then restarts the clock") {
    startWithLoadedTrack();
    controller->playForward();
    const QPointer<QTimer> timer = controller->movieTimer.get();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", slider " + std::to_string(outlets.speedSlider->value()) + ", title " +
                       outlets.speedResetButton->title().toStdString() + ", " + transportImages()[0] +
                       (timer ? ", same clock" : ", new clock"));
    };
    controller->rate = 0.0f;
    controller->speedUp();
    CHECK(seen == Events{"setRate -0.35, slider -0.350000, title -0.350000.2, db_Play_F_on.png, same clock"});
    CHECK(transportImages() == kBackwardImages);
    CHECK(timer.isNull());
}

TEST_CASE_FIXTURE(ControllerFixture, "the steps stop at the slowest and at the fastest speed in both directions") {
    start();
    const std::pair<Action, float> ends[] = {{&QMController::speedUp, 2.5f},
                                             {&QMController::speedDown, 0.35f},
                                             {&QMController::speedDown, -0.35f},
                                             {&QMController::speedUp, -2.5f}};
    for (const auto& [action, end] : ends) {
        CAPTURE(end);
        controller->rate = end;
        action(*controller);
        CHECK(controller->rate == end);
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "steps go toward zero and away from zero in both directions") {
    start();
    const std::tuple<Action, float, float> steps[] = {{&QMController::speedUp, 1.0f, 1.05f},
                                                      {&QMController::speedDown, 1.0f, 0.95f},
                                                      {&QMController::speedUp, -1.0f, -1.05f},
                                                      {&QMController::speedDown, -1.0f, -0.95f}};
    for (const auto& [action, from, to] : steps) {
        CAPTURE(from);
        CAPTURE(to);
        controller->rate = from;
        action(*controller);
        CHECK(controller->rate == to);
    }
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "from zero a step up goes backward and a step down goes forward, at the slowest speed") {
    startWithLoadedTrack();
    controller->playForward();
    drag(outlets.speedSlider, 0, &QMController::speedUpdate);
    controller->speedUp();
    CHECK(controller->rate == -0.35f);
    CHECK(transportImages() == kBackwardImages);
    drag(outlets.speedSlider, 0, &QMController::speedUpdate);
    controller->speedDown();
    CHECK(controller->rate == 0.35f);
    CHECK(transportImages() == kForwardImages);
}

TEST_CASE_FIXTURE(ControllerFixture, "twenty steps up from one do not land exactly on two") {
    start();
    for (int i = 0; i < 20; ++i) controller->speedUp();
    CHECK(controller->rate == 1.9999990463256836f);
    CHECK(outlets.speedResetButton->title() == "1.999999.2");
}

TEST_CASE_FIXTURE(ControllerFixture, "one step up from one reads with the float's six decimals") {
    start();
    controller->speedUp();
    CHECK(outlets.speedResetButton->title() == "1.050000.2");
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "thirteen steps down from one reach the slowest speed and thirty-one up the fastest") {
    start();
    for (int i = 0; i < 12; ++i) controller->speedDown();
    CHECK(controller->rate > 0.35f);
    controller->speedDown();
    CHECK(controller->rate == 0.35f);

    controller->speedReset();
    for (int i = 0; i < 30; ++i) controller->speedUp();
    CHECK(controller->rate < 2.5f);
    controller->speedUp();
    CHECK(controller->rate == 2.5f);
}

TEST_CASE_FIXTURE(ControllerFixture, "every speed action keeps the magnitude between 0.35 and 2.5") {
    start();
    for (const Action& action : kSpeedActions) {
        for (const double from : {-2.5, -0.35, -0.01, 0.01, 0.35, 2.5}) {
            CAPTURE(from);
            outlets.speedSlider->setValue(from);
            controller->rate = float(from);
            action(*controller);
            CHECK(std::abs(controller->rate) >= 0.35f);
            CHECK(std::abs(controller->rate) <= 2.5f);
        }
    }
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the speed reset while playing backward sets rate, title, slider and images, then the movie, and "
                  "leaves the pause button and the clock") {
    startWithLoadedTrack();
    controller->playBackward();
    outlets.pauseButton->setImageName("as before");
    const QPointer<QTimer> timer = controller->movieTimer.get();
    Events seen;
    log.atEvent = [&](const std::string& event) {
        seen.push_back(event + ", title " + outlets.speedResetButton->title().toStdString() + ", slider " +
                       std::to_string(outlets.speedSlider->value()) + ", " + transportImages()[0] + ", " +
                       transportImages()[2]);
    };
    controller->speedReset();
    CHECK(seen == Events{"setRate 1, title 1.0, slider 1.000000, db_Play_F_on.png, db_Play_R_off.png"});
    CHECK(controller->rate == 1.0f);
    CHECK(outlets.pauseButton->imageName() == "as before");
    CHECK(controller->movieTimer.get() == timer.data());
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "the speed reset while paused turns the backward button off and touches neither the other buttons nor the movie") {
    startWithLoadedTrack();
    controller->speed05();
    outlets.playForwardButton->setImageName("forward as before");
    outlets.pauseButton->setImageName("pause as before");
    outlets.playBackwardButton->setImageName("db_Play_R_on.png");
    log.take();
    controller->speedReset();
    CHECK(controller->rate == 1.0f);
    CHECK(outlets.speedResetButton->title() == "1.0");
    CHECK(transportImages() == Events{"forward as before", "pause as before", "db_Play_R_off.png"});
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(ControllerFixture, "no speed action starts, stops or changes playing") {
    startWithLoadedTrack();
    for (const bool playing : {false, true}) {
        controller->isPlaying = playing;
        for (const Action& action : kSpeedActions) {
            action(*controller);
            CHECK(controller->isPlaying == playing);
        }
    }
    CHECK(log.count("play") == 0);
    CHECK(log.count("stop") == 0);
    CHECK(log.count("setRate") == int(std::size(kSpeedActions)));
}

TEST_CASE_FIXTURE(ControllerFixture, "a track loaded while playing starts at the signed rate as it is") {
    startWithLoadedTrack();
    drag(outlets.speedSlider, -0.5, &QMController::speedUpdate);
    controller->playBackward();
    outlets.playList->selectRowIndex(1);
    log.take();
    controller->selectTrack();
    const Events events = log.take();
    REQUIRE(events.size() > 2);
    CHECK(Events(events.end() - 2, events.end()) == Events{"play", "setRate -0.5"});
}

TEST_CASE_FIXTURE(ControllerFixture, "no action writes the texts of the scale labels") {
    startWithLoadedTrack();
    for (const Action& action : kSpeedActions) action(*controller);
    controller->semiToneUp();
    controller->resetAudio();
    for (const QLabel* label :
         {outlets.speedTitle, outlets.speed_2, outlets.speed_1, outlets.speedMinDown, outlets.speedMinDotDown,
          outlets.speed0, outlets.speedMinDotUp, outlets.speedMinUp, outlets.speedNormal, outlets.speed1,
          outlets.speed2, outlets.pitchTitle, outlets.pitch_1200, outlets.pitch_100, outlets.pitchMinDot,
          outlets.pitch0, outlets.pitchMaxDot, outlets.pitch100, outlets.pitch1200}) {
        CHECK(label->text() == "as laid out");
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "value titles have a decimal point in every locale") {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    start();
    controller->speed05();
    drag(outlets.gainSlider, 0.25, &QMController::gainUpdate);
    drag(outlets.balanceSlider, -0.5, &QMController::balanceUpdate);
    CHECK(outlets.speedResetButton->title() == "0.500000.2");
    CHECK(outlets.gainResetButton->title() == "0.25");
    CHECK(outlets.balanceResetButton->title() == "L0.5");
    QLocale::setDefault(before);
}
