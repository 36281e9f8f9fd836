#include "sound/LevelMeters.h"

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QMenu>
#include <QThread>
#include <QTimer>
#include <memory>

#include "support/HeapWatch.h"
#include "support/NotRun.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/controls/MeterView.h"

using namespace qm;

namespace {

using Values = std::vector<float>;

struct MeterFixture : ControllerFixture {
    // One channel's indicators in the order of the tags 3, 2, 1, 0; a missing one is left out.
    static Values shown(const MeterView* view) {
        Values values;
        for (int tag = 3; tag >= 0; --tag)
            if (const LevelIndicator* indicator = view->viewWithTag(tag)) values.push_back(indicator->floatValue());
        return values;
    }

    void measure(const Values& levels) { std::copy(levels.begin(), levels.end(), engine.frequencyLevels.level); }
    void measurePower(float left, float right) {
        engine.averagePower.level[0] = left;
        engine.averagePower.level[1] = right;
    }
    void tick() { fire(controller->mTimer.get()); }
    Events readOuts() const {
        return {outlets.audioLevelLeft->text().toStdString(), outlets.audioLevelRight->text().toStdString()};
    }

    static void stop(QEventLoop& loop) {
        loop.quit();
        if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
    }

    // Lets time go by until the meters have been read so often, or for far longer than that should take.
    int ticksWhile(int wanted, const std::function<void(QEventLoop&)>& wait) {
        int ticks = 0;
        QEventLoop loop;
        engine.atMeterRead = [&](const std::string& call) {
            if (call == "readVolumeLevels" && ++ticks >= wanted) stop(loop);
        };
        QTimer::singleShot(20000, &loop, [&] { stop(loop); });
        wait(loop);
        engine.atMeterRead = {};
        return ticks;
    }
};

}  // namespace

TEST_CASE_FIXTURE(MeterFixture, "start-up makes the records for two channels and four bands, to be kept") {
    init();
    CHECK(controller->mFreqResults == nullptr);
    awakeWith(*controller, outlets);
    REQUIRE(controller->mFreqResults);
    CHECK(controller->pAveragePowerLevels->numChannels == 2);
    CHECK(controller->pPeakHoldLevels->numChannels == 2);
    CHECK(controller->mFreqResults->numChannels == 2);
    CHECK(controller->mFreqResults->numFrequencyBands == 4);
    CHECK(sizeof *controller->pAveragePowerLevels == 12);
    CHECK(sizeof *controller->pPeakHoldLevels == 12);
    CHECK(sizeof *controller->mFreqResults == 40);
}

TEST_CASE_FIXTURE(MeterFixture, "start-up turns both meter views by ninety degrees") {
    CHECK(outlets.meterView1->frameRotation() == 0);
    start();
    CHECK(outlets.meterView1->frameRotation() == 90);
    CHECK(outlets.meterView2->frameRotation() == 90);
}

TEST_CASE_FIXTURE(MeterFixture,
                  "start-up collects the indicators of each view from tag 3 down to 0 and disables them") {
    start();
    std::vector<LevelIndicator*> expected;
    for (const MeterView* view : {outlets.meterView1, outlets.meterView2})
        for (int tag = 3; tag >= 0; --tag) expected.push_back(view->viewWithTag(tag));
    CHECK(controller->mArray == expected);
    for (const LevelIndicator* indicator : controller->mArray) CHECK_FALSE(indicator->isEnabled());
}

TEST_CASE_FIXTURE(MeterFixture, "a missing indicator is skipped and those after it move up by one place") {
    delete outlets.meterView1->viewWithTag(2);
    startWithLoadedTrack();
    CHECK(controller->mArray.size() == 7);
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    tick();
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6});
    CHECK(shown(outlets.meterView2) == Values{8, 10, 12, 14});
}

TEST_CASE_FIXTURE(MeterFixture, "without a meter view the other one shows what is left") {
    outlets.meterView1 = nullptr;
    startWithLoadedTrack();
    CHECK(controller->mArray.size() == 4);
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    tick();
    CHECK(shown(outlets.meterView2) == Values{2, 4, 6, 8});
}

TEST_CASE_FIXTURE(MeterFixture, "loading sets up the metering of the movie and then switches the meters on") {
    start();
    CHECK_FALSE(controller->audioLevelIndicatorsState);
    CHECK(controller->mTimer == nullptr);
    Events seen;
    log.atEvent = [&](const std::string& event) {
        if (event.starts_with("meter"))
            seen.push_back(event + (controller->audioLevelIndicatorsState ? ", meters on" : ", meters off"));
    };
    controller->loadFileAdd(QStringLiteral("/music/one.wav"), true);
    CHECK(seen == Events{"meterVolume YES, meters off", "meterBands YES, meters off"});
    CHECK(controller->audioLevelIndicatorsState);
    REQUIRE(controller->mTimer);
    CHECK(controller->mTimer->isActive());
    CHECK(controller->mTimer->interval() == 100);
    CHECK_FALSE(controller->mTimer->isSingleShot());

    const QTimer* running = controller->mTimer.get();
    controller->loadFileAdd(QStringLiteral("/music/two.wav"), true);
    CHECK(seen.size() == 4);
    CHECK(controller->mTimer.get() == running);
}

TEST_CASE_FIXTURE(MeterFixture, "while the meters are not wanted, a load sets up the metering only") {
    prefs.setBool(QStringLiteral("AudioLevels"), false);
    start();
    log.take();
    controller->loadFileAdd(QStringLiteral("/music/one.wav"), true);
    CHECK(log.count("meterVolume YES") == 1);
    CHECK_FALSE(controller->audioLevelIndicatorsState);
    CHECK(controller->mTimer == nullptr);
}

TEST_CASE_FIXTURE(MeterFixture, "a tick shows twenty times each band's level, the lowest band at tag 3") {
    startWithLoadedTrack();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.45f, 0.5f, 0.75f, 1.0f});
    tick();
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6, 8});
    CHECK(shown(outlets.meterView2) == Values{9, 10, 15, 20});
}

TEST_CASE_FIXTURE(MeterFixture, "a tick shows the average power of each channel in decibels with one decimal") {
    startWithLoadedTrack();
    measurePower(-14.23f, -15.76f);
    tick();
    CHECK(readOuts() == Events{"-14.2", "-15.8"});
    measurePower(-96, -0.02f);
    tick();
    CHECK(readOuts() == Events{"-96.0", "0.0"});
}

TEST_CASE_FIXTURE(MeterFixture,
                  "a tick reads the bands of the stereo mix first and then the volume of the device mix") {
    startWithLoadedTrack();
    Events calls;
    engine.atMeterRead = [&](const std::string& call) { calls.push_back(call); };
    tick();
    CHECK(calls == Events{"readFrequencyLevels", "readVolumeLevels"});
}

TEST_CASE_FIXTURE(MeterFixture, "a tick whose bands cannot be read asks for no volume and shows nothing") {
    startWithLoadedTrack();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    engine.givesFrequencyLevels = false;
    Events calls;
    engine.atMeterRead = [&](const std::string& call) { calls.push_back(call); };
    tick();
    CHECK(calls == Events{"readFrequencyLevels"});
    CHECK(shown(outlets.meterView1) == Values{0, 0, 0, 0});
    CHECK(readOuts() == Events{"as laid out", "as laid out"});
}

TEST_CASE_FIXTURE(MeterFixture,
                  "a tick whose volume cannot be read shows not even the bands, and the next one is whole") {
    startWithLoadedTrack();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    measurePower(-20, -30);
    engine.givesVolumeLevels = false;
    tick();
    CHECK(shown(outlets.meterView1) == Values{0, 0, 0, 0});
    CHECK(shown(outlets.meterView2) == Values{0, 0, 0, 0});
    CHECK(readOuts() == Events{"as laid out", "as laid out"});
    engine.givesVolumeLevels = true;
    tick();
    CHECK(shown(outlets.meterView2) == Values{10, 12, 14, 16});
    CHECK(readOuts() == Events{"-20.0", "-30.0"});
}

TEST_CASE_FIXTURE(MeterFixture, "the counts of a tick are those that the engine gives back with it") {
    startWithLoadedTrack();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    engine.frequencyLevels.numFrequencyBands = 2;
    tick();
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6, 8});
    CHECK(shown(outlets.meterView2) == Values{0, 0, 0, 0});
    engine.frequencyLevels.numChannels = 1;
    measurePower(-20, -30);
    tick();
    CHECK(readOuts() == Events{"-20.0", "0.0"});
}

TEST_CASE_FIXTURE(MeterFixture, "counts beyond the records and the indicators reach nothing") {
    startWithLoadedTrack();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    engine.frequencyLevels.numChannels = 70000;
    engine.frequencyLevels.numFrequencyBands = 300;
    tick();
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6, 8});
    CHECK(shown(outlets.meterView2) == Values{10, 12, 14, 16});
}

TEST_CASE_FIXTURE(MeterFixture, "the held peaks are read with every tick and never shown") {
    startWithLoadedTrack();
    engine.peakHold.level[0] = -3;
    engine.peakHold.level[1] = -4;
    measurePower(-20, -30);
    tick();
    CHECK(controller->pPeakHoldLevels->level[0] == -3);
    CHECK(controller->pPeakHoldLevels->level[1] == -4);
    CHECK(readOuts() == Events{"-20.0", "-30.0"});
    CHECK(shown(outlets.meterView1) == Values{0, 0, 0, 0});
}

TEST_CASE_FIXTURE(MeterFixture, "ticks refill the same records and the same list") {
    startWithLoadedTrack();
    const void* before[] = {controller->mFreqResults.get(), controller->pAveragePowerLevels.get(),
                            controller->pPeakHoldLevels.get(), controller->mArray.data()};
    for (int i = 0; i < 20; ++i) tick();
    const void* after[] = {controller->mFreqResults.get(), controller->pAveragePowerLevels.get(),
                           controller->pPeakHoldLevels.get(), controller->mArray.data()};
    for (int i = 0; i < 4; ++i) CHECK(before[i] == after[i]);
    CHECK(controller->mArray.size() == 8);
}

TEST_CASE_FIXTURE(MeterFixture, "switching off ends the ticks and empties the indicators but keeps the read-outs") {
    startWithLoadedTrack();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    measurePower(-20, -30);
    tick();
    controller->switchAudioLevels(false);
    CHECK_FALSE(controller->audioLevelIndicatorsState);
    CHECK(controller->mTimer == nullptr);
    CHECK(shown(outlets.meterView1) == Values{0, 0, 0, 0});
    CHECK(shown(outlets.meterView2) == Values{0, 0, 0, 0});
    CHECK(readOuts() == Events{"-20.0", "-30.0"});
    controller->switchAudioLevels(false);
    CHECK_FALSE(controller->audioLevelIndicatorsState);
    controller->switchAudioLevels(true);
    tick();
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6, 8});
}

TEST_CASE_FIXTURE(MeterFixture, "pausing, changing tracks and losing the movie leave the meters running") {
    startWithLoadedTrack();
    const QTimer* timer = controller->mTimer.get();
    controller->playForward();
    controller->pause();
    outlets.playList->selectRowIndex(1);
    controller->selectTrack();
    engine.unreadable.insert("/music/two.wav");
    controller->selectTrack();
    CHECK(controller->mTimer.get() == timer);
    CHECK(controller->mTimer->isActive());
    CHECK(controller->audioLevelIndicatorsState);
}

TEST_CASE_FIXTURE(MeterFixture, "without a movie a tick leaves the display as it was") {
    startWithLoadedTrack();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    measurePower(-20, -30);
    tick();
    controller->qtMovie.reset();
    measure({1, 1, 1, 1, 1, 1, 1, 1});
    tick();
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6, 8});
    CHECK(readOuts() == Events{"-20.0", "-30.0"});
    controller->quickTimeMovie = 0;
    tick();
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6, 8});
}

TEST_CASE_FIXTURE(MeterFixture, "after a pause the read-outs say dB until the next tick that succeeds") {
    startWithLoadedTrack();
    measurePower(-20, -30);
    controller->playForward();
    tick();
    controller->pause();
    CHECK(readOuts() == Events{"dB", "dB"});
    engine.givesVolumeLevels = false;
    tick();
    CHECK(readOuts() == Events{"dB", "dB"});
    engine.givesVolumeLevels = true;
    tick();
    CHECK(readOuts() == Events{"-20.0", "-30.0"});
}

TEST_CASE_FIXTURE(MeterFixture, "displayLevels hides and shows the panel and the meters go on behind it") {
    startWithLoadedTrack();
    const QTimer* timer = controller->mTimer.get();
    CHECK(outlets.audioLevelsPanel->isVisible());
    controller->displayLevels();
    CHECK_FALSE(outlets.audioLevelsPanel->isVisible());
    CHECK(controller->mTimer.get() == timer);
    CHECK(timer->isActive());
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    tick();
    controller->displayLevels();
    CHECK(outlets.audioLevelsPanel->isVisible());
    CHECK(shown(outlets.meterView1) == Values{2, 4, 6, 8});
    CHECK(controller->audioLevelIndicatorsState);
}

TEST_CASE_FIXTURE(MeterFixture, "displayLevels neither starts nor stops the meters and stores nothing") {
    prefs.setBool(QStringLiteral("AudioLevels"), false);
    start();
    log.take();
    CHECK_FALSE(outlets.audioLevelsPanel->isVisible());
    controller->displayLevels();
    CHECK(outlets.audioLevelsPanel->isVisible());
    CHECK(controller->mTimer == nullptr);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(MeterFixture, "without its panel and its read-outs the meters show what they can") {
    outlets.audioLevelsPanel = nullptr;
    outlets.audioLevelLeft = outlets.audioLevelRight = nullptr;
    startWithLoadedTrack();
    controller->displayLevels();
    measure({0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f});
    tick();
    CHECK(shown(outlets.meterView2) == Values{10, 12, 14, 16});
}

TEST_CASE_FIXTURE(MeterFixture, "the meters go on by themselves, on the main thread, while a slider is held") {
    startWithLoadedTrack();
    pressKnob(outlets.gainSlider);
    bool mainThread = true;
    const int ticks = ticksWhile(2, [&](QEventLoop& loop) {
        const auto count = engine.atMeterRead;
        engine.atMeterRead = [&, count](const std::string& call) {
            mainThread = mainThread && QThread::currentThread() == qApp->thread();
            count(call);
        };
        loop.exec();
    });
    CHECK(outlets.gainSlider->isHeld());
    releaseKnob(outlets.gainSlider);
    CHECK(ticks == 2);
    CHECK(mainThread);
}

TEST_CASE_FIXTURE(MeterFixture, "the meters go on while a menu is open") {
    startWithLoadedTrack();
    outlets.mainWindow->show();
    QMenu menu(outlets.mainWindow);
    menu.addAction(QStringLiteral("An item"));
    bool open = true;
    const int ticks = ticksWhile(2, [&](QEventLoop&) {
        const auto count = engine.atMeterRead;
        engine.atMeterRead = [&, count](const std::string& call) {
            open = open && menu.isVisible();
            count(call);
        };
        menu.exec(QPoint(10, 10));
    });
    CHECK(open);
    CHECK(ticks == 2);
}

TEST_CASE_FIXTURE(MeterFixture, "a tick takes nothing from the heap as long as the tenth of a decibel stays") {
    if (!test::kWatchCounts) NOT_RUN_BECAUSE("a sanitizer stands in front of the same functions");
    startWithLoadedTrack();
    const auto heapCalls = [](const std::function<void()>& act) {
        test::t_heapCalls = 0;
        test::t_isWatched = true;
        act();
        test::t_isWatched = false;
        return test::t_heapCalls;
    };
    measurePower(-20.01f, -30.02f);
    controller->audioLevelFireMethod();
    const int readingAlone = heapCalls([this] {
        engine.toolbox.GetMovieAudioFrequencyLevels(controller->quickTimeMovie, kStereoMix, *controller->mFreqResults);
        engine.toolbox.GetMovieAudioVolumeLevels(controller->quickTimeMovie, kDeviceMix,
                                                 *controller->pAveragePowerLevels, *controller->pPeakHoldLevels);
    });
    measurePower(-20.04f, -29.98f);
    CHECK(heapCalls([this] { controller->audioLevelFireMethod(); }) == readingAlone);
    CHECK(readOuts() == Events{"-20.0", "-30.0"});
    measurePower(-20.06f, -29.98f);
    CHECK(heapCalls([this] { controller->audioLevelFireMethod(); }) > readingAlone);
    CHECK(readOuts() == Events{"-20.1", "-30.0"});
}
