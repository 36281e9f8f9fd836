#include <doctest/doctest.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QUrl>

#include "support/widgets/LivingWindow.h"
#include "ui/controls/BackgroundViewBlack.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/Decks.h"
#include "ui/windows/HeroView.h"
#include "ui/windows/MainToolbar.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"
#include "ui/windows/PlayListCard.h"
#include "ui/windows/SoundCards.h"

using namespace qm;

namespace {

struct BuiltWindow {
    Outlets outlets;
    MainWindow window{outlets};
};

QRect inWindow(const QWidget* widget) {
    return {widget->mapTo(widget->window(), QPoint(0, 0)), widget->size()};
}

}  // namespace

TEST_CASE("every outlet of the main window is a control of that name") {
    BuiltWindow built;
    const Outlets& o = built.outlets;
    const std::vector<std::pair<const QWidget*, const char*>> expected = {{o.mainWindow, "mainWindow"},
                                                                          {o.toolbar, "toolbar"},
                                                                          {o.playForwardButton, "playForwardButton"},
                                                                          {o.playBackwardButton, "playBackwardButton"},
                                                                          {o.pauseButton, "pauseButton"},
                                                                          {o.cueSlider, "cueSlider"},
                                                                          {o.timecode, "timecode"},
                                                                          {o.timeRemaining, "timeRemaining"},
                                                                          {o.loopButton, "loopButton"},
                                                                          {o.markAButton, "markAButton"},
                                                                          {o.markBButton, "markBButton"},
                                                                          {o.resetMarksButton, "resetMarksButton"},
                                                                          {o.loopIn, "loopIn"},
                                                                          {o.loopOut, "loopOut"},
                                                                          {o.playList, "playList"},
                                                                          {o.trackTotal, "trackTotal"},
                                                                          {o.format, "format"},
                                                                          {o.speedSlider, "speedSlider"},
                                                                          {o.speedResetButton, "speedResetButton"},
                                                                          {o.pitchSlider, "pitchSlider"},
                                                                          {o.pitchResetButton, "pitchResetButton"},
                                                                          {o.gainSlider, "gainSlider"},
                                                                          {o.gainResetButton, "gainResetButton"},
                                                                          {o.balanceSlider, "balanceSlider"},
                                                                          {o.balanceResetButton, "balanceResetButton"},
                                                                          {o.bassSlider, "bassSlider"},
                                                                          {o.bassResetButton, "bassResetButton"},
                                                                          {o.trebleSlider, "trebleSlider"},
                                                                          {o.trebleResetButton, "trebleResetButton"},
                                                                          {o.speedTitle, "speedTitle"},
                                                                          {o.speed_2, "speed_2"},
                                                                          {o.speed_1, "speed_1"},
                                                                          {o.speedMinDown, "speedMinDown"},
                                                                          {o.speedMinDotDown, "speedMinDotDown"},
                                                                          {o.speed0, "speed0"},
                                                                          {o.speedMinDotUp, "speedMinDotUp"},
                                                                          {o.speedMinUp, "speedMinUp"},
                                                                          {o.speed1, "speed1"},
                                                                          {o.speed2, "speed2"},
                                                                          {o.speedNormal, "speedNormal"},
                                                                          {o.pitchTitle, "pitchTitle"},
                                                                          {o.pitch_1200, "pitch_1200"},
                                                                          {o.pitch_100, "pitch_100"},
                                                                          {o.pitchMinDot, "pitchMinDot"},
                                                                          {o.pitch0, "pitch0"},
                                                                          {o.pitchMaxDot, "pitchMaxDot"},
                                                                          {o.pitch100, "pitch100"},
                                                                          {o.pitch1200, "pitch1200"}};
    for (const auto& [control, name] : expected) {
        CAPTURE(name);
        REQUIRE(control);
        CHECK(control->objectName() == name);
    }
}

TEST_CASE("the sliders have their bounds and start where they rest") {
    BuiltWindow built;
    struct Expected {
        const Slider* slider;
        double minimum, maximum, value;
    };
    const Outlets& o = built.outlets;
    for (const Expected& e : {Expected{o.speedSlider, -2.5, 2.5, 1}, Expected{o.pitchSlider, -1200, 1200, 0},
                              Expected{o.gainSlider, 0, 1, 0.5}, Expected{o.balanceSlider, -1, 1, 0},
                              Expected{o.bassSlider, 0, 256, 128}, Expected{o.trebleSlider, 0, 256, 128}}) {
        CHECK(e.slider->minimum() == e.minimum);
        CHECK(e.slider->maximum() == e.maximum);
        CHECK(e.slider->value() == e.value);
    }
}

TEST_CASE("the window has its title, its default size and its smallest one") {
    BuiltWindow built;
    CHECK(built.window.windowTitle() == "Quillmere");
    CHECK(built.window.size() == QSize(980, 650));
    CHECK(built.window.minimumSize() == QSize(980, 592));
}

TEST_CASE("the areas stand on the grid at the default size") {
    BuiltWindow built;
    built.window.show();
    MainGrid& grid = built.window.grid();
    CHECK(inWindow(grid.hero) == QRect(16, 78, 632, 168));
    CHECK(inWindow(grid.transport) == QRect(16, 246, 350, 120));
    CHECK(inWindow(grid.loop) == QRect(378, 246, 270, 120));
    CHECK(inWindow(grid.speed) == QRect(660, 78, 304, 138));
    CHECK(inWindow(grid.pitch) == QRect(660, 228, 304, 138));
    CHECK(inWindow(grid.playList) == QRect(16, 378, 632, 260));
    CHECK(inWindow(grid.tone) == QRect(660, 378, 304, 194));
    CHECK(inWindow(grid.bar) == QRect(660, 584, 304, 54));
}

TEST_CASE("extra width goes three quarters to the left column until the right one is 400 wide") {
    BuiltWindow built;
    built.window.show();
    MainGrid& grid = built.window.grid();
    built.window.resize(1080, 650);
    CHECK(grid.speed->width() == 329);
    CHECK(grid.playList->width() == 707);
    built.window.resize(1800, 650);
    CHECK(grid.speed->width() == 400);
    CHECK(grid.playList->width() == 1800 - 32 - 12 - 400);
}

TEST_CASE("extra height goes to the play list, the tone card stops at 236") {
    BuiltWindow built;
    built.window.show();
    MainGrid& grid = built.window.grid();
    built.window.resize(980, 750);
    CHECK(grid.playList->height() == 360);
    CHECK(grid.tone->height() == 236);
    CHECK(inWindow(grid.bar).bottom() == 737);
    CHECK(grid.speed->height() == 138);
    built.window.resize(980, 592);
    CHECK(grid.playList->height() == 202);
    CHECK(grid.tone->height() == 136);
}

TEST_CASE("the roomy layout begins with room in both directions") {
    BuiltWindow built;
    built.window.show();
    MainGrid& grid = built.window.grid();
    built.window.resize(1200, 729);
    CHECK(grid.speed->height() == 138);
    built.window.resize(1199, 730);
    CHECK(grid.speed->height() == 138);
    built.window.resize(1200, 730);
    CHECK(grid.speed->height() == 162);
    CHECK(built.outlets.waveformStrip->height() == 92);
    CHECK(built.outlets.timecode->height() == 56);
    built.window.resize(980, 650);
    CHECK(built.outlets.waveformStrip->height() == 56);
    CHECK(built.outlets.timecode->height() == 44);
}

TEST_CASE("hiding the toolbar gives its height to the play list") {
    BuiltWindow built;
    built.window.show();
    const int before = built.window.grid().playList->height();
    built.window.actions().send(ActionId::toggleToolbar);
    QCoreApplication::sendPostedEvents();
    CHECK(built.outlets.toolbar->isHidden());
    CHECK_FALSE(built.window.actions().action(ActionId::toggleToolbar)->isChecked());
    CHECK(built.window.grid().playList->height() == before + 42);
    built.window.actions().send(ActionId::toggleToolbar);
    CHECK_FALSE(built.outlets.toolbar->isHidden());
}

TEST_CASE("the strip and the position slider share one mapping of time") {
    BuiltWindow built;
    built.window.show();
    CHECK(built.outlets.waveformStrip->width() == built.outlets.cueSlider->width());
    CHECK(built.outlets.cueSlider->xOfValue(0) == 10);
}

TEST_CASE("the longest value title fits its field") {
    BuiltWindow built;
    built.window.show();
    TitleButton& button = *built.outlets.speedResetButton;
    button.setPlainTitle(QStringLiteral("-2.500000.2"));
    const QImage image = button.grab().toImage();
    // Between the arrow and the title there is ground in every row.
    for (int y = 4; y < button.height() - 4; ++y) CHECK(image.pixelColor(27, y) == image.pixelColor(27, 4));
}

TEST_CASE("the background goes from dark grey at the bottom to black at the top") {
    BackgroundViewBlack ground;
    ground.resize(20, 300);
    const QImage image = ground.grab().toImage();
    CHECK(image.pixelColor(10, 1).red() <= 1);
    CHECK(image.pixelColor(10, 298).red() >= 0x54);
    CHECK(image.pixelColor(10, 150).red() == doctest::Approx(0x55 / 2).epsilon(0.05));
    CHECK(image.pixelColor(10, 299).red() == image.pixelColor(10, 299).blue());
}

TEST_CASE("the background's corners are cut by one pixel, and a part that is drawn alone is part of the whole") {
    BackgroundViewBlack ground;
    ground.resize(20, 300);
    QImage whole(ground.size(), QImage::Format_RGB32), part(ground.size(), QImage::Format_RGB32);
    whole.fill(Qt::red);
    part.fill(Qt::red);
    ground.render(&whole, {}, {}, QWidget::RenderFlags());
    const QRect dirty(0, 200, 20, 10);
    ground.render(&part, dirty.topLeft(), dirty, QWidget::RenderFlags());
    CHECK(part.copy(dirty) == whole.copy(dirty));
    CHECK(part.pixelColor(10, 199) == QColor(Qt::red));
    for (const QPoint corner : {QPoint(0, 0), QPoint(19, 0), QPoint(0, 299), QPoint(19, 299)}) {
        const int inward = corner.x() == 0 ? 1 : -1;
        CHECK(whole.pixelColor(corner).red() > whole.pixelColor(corner + QPoint(inward, 0)).red() + 30);
        CHECK(whole.pixelColor(corner).red() < 0xA0);
    }
    CHECK(whole.pixelColor(0, 150).red() < 0x55);
}

TEST_CASE("with nothing loaded all that needs a track is dimmed, and only drawn so") {
    LivingWindow living;
    living.state.refresh();
    const Outlets& o = living.outlets;
    CHECK_FALSE(o.playForwardButton->isDimmed());
    for (const FaceButton* button :
         {static_cast<FaceButton*>(o.playBackwardButton), static_cast<FaceButton*>(o.pauseButton),
          static_cast<FaceButton*>(o.loopButton), static_cast<FaceButton*>(o.markAButton),
          static_cast<FaceButton*>(o.markBButton)}) {
        CHECK(button->isDimmed());
        CHECK(button->isEnabled());
    }
    CHECK(o.cueSlider->isDimmed());
    for (const ChipButton* chip : living.grid().transport->findChildren<ChipButton*>()) CHECK(chip->isDimmed());
    CHECK(living.window.tools().tool(ActionId::clearList)->isDimmed());
    CHECK_FALSE(living.window.tools().tool(ActionId::openFile)->isDimmed());
    CHECK(living.grid().hero->title() == "No track loaded");
    CHECK(living.grid().hero->byLine() == "Add a track, select it, then press Space.");
    living.addTrack(QStringLiteral("/music/a.mp3"));
    living.state.refresh();
    CHECK(living.grid().hero->byLine() == "Select a track, then press Space, or double-click it.");
    CHECK_FALSE(living.window.tools().tool(ActionId::clearList)->isDimmed());
}

TEST_CASE("until something has been played the window says how") {
    LivingWindow living;
    const auto hint = [&] {
        living.state.refresh();
        return living.grid().hero->byLine();
    };
    living.addTrack(QStringLiteral("/music/b.mp3"));
    living.outlets.playList->selectRowIndex(0);
    CHECK(hint() == "Press Space to play the selected track.");
    living.loadTrack();
    CHECK(hint() == "Marlow Quartet — Night Ferry · press Space to play");
    living.controller.artistArray[0] = living.controller.albumArray[0] = QStringLiteral(" ");
    CHECK(hint() == "Press Space to play.");
    living.controller.playForward();
    CHECK(hint().isEmpty());
    living.controller.pause();
    CHECK(hint().isEmpty());
    living.fixture.engine.unreadable.insert("/music/b.mp3");
    living.outlets.playList->selectRowIndex(1);
    living.controller.selectTrack();
    CHECK(hint() == "Double-click a track to play it.");
}

TEST_CASE("the tag says what is heard: a gain that was put back for one track only is silent again with the next") {
    LivingWindow living;
    const auto silent = [&] {
        living.state.refresh();
        return living.grid().hero->stateTexts().last();
    };
    living.addTrack(QStringLiteral("/music/b.mp3"));
    living.loadTrack();
    living.controller.volumeMin();
    CHECK(silent() == "Silent");
    living.controller.resetAudio();
    CHECK(silent().isEmpty());
    living.outlets.playList->selectRowIndex(1);
    living.controller.selectTrack();
    CHECK(living.outlets.gainSlider->value() == 0.5);
    CHECK(silent() == "Silent");
    living.fixture.engine.unreadable.insert("/music/b.mp3");
    living.controller.selectTrack();
    CHECK(silent() == "Silent");
    living.outlets.gainSlider->moveByUser(0.5);
    CHECK(silent().isEmpty());
}

TEST_CASE("what is dragged anywhere over the window goes to the play list") {
    LivingWindow living;
    living.window.show();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/music/a.mp3"))});
    QDragEnterEvent enter(QPoint(10, 60), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&living.window, &enter);
    CHECK(enter.isAccepted());
    CHECK(living.outlets.playList->showsDropMarker());
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&living.window, &leave);
    CHECK_FALSE(living.outlets.playList->showsDropMarker());
    QList<QUrl> taken;
    living.outlets.playList->acceptDrop = [&](const QList<QUrl>& urls) {
        taken = urls;
        return true;
    };
    QApplication::sendEvent(&living.window, &enter);
    QDropEvent drop(QPointF(10, 60), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&living.window, &drop);
    CHECK(drop.isAccepted());
    CHECK(taken == data.urls());
}

TEST_CASE("a loaded track shows its name and its people and lights the controls") {
    LivingWindow living;
    living.loadTrack();
    living.controller.playForward();
    living.state.refresh();
    CHECK(living.grid().hero->title() == "Blue Lantern");
    CHECK(living.grid().hero->byLine() == "Marlow Quartet — Night Ferry");
    CHECK_FALSE(living.outlets.pauseButton->isDimmed());
    CHECK_FALSE(living.outlets.cueSlider->isDimmed());
    CHECK(living.outlets.waveformStrip->isActive());
}

TEST_CASE("state tags tell only what is away from rest") {
    LivingWindow living;
    living.loadTrack();
    living.state.refresh();
    CHECK(living.grid().hero->stateTexts() == QStringList{"", "", "", ""});
    living.controller.speed075();
    living.controller.semiToneDown();
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK(living.grid().hero->stateTexts() == QStringList{"0.75× speed", "−100 cents", "Loop A–B", ""});
    living.controller.volumeMin();
    living.state.refresh();
    CHECK(living.grid().hero->stateTexts().last() == "Silent");
    living.controller.playBackward();
    living.state.refresh();
    CHECK(living.grid().hero->stateTexts().first() == "0.75× backward");
}

TEST_CASE("exactly the preset that equals the speed is lit") {
    LivingWindow living;
    const auto lit = [&] {
        QStringList names;
        for (const ChipButton* chip : living.grid().speed->findChildren<ChipButton*>())
            if (chip->isLit()) names << chip->text();
        return names;
    };
    living.state.refresh();
    CHECK(lit().isEmpty());
    living.controller.speed150();
    living.state.refresh();
    CHECK(lit() == QStringList{"1.5"});
    living.controller.speedUp();
    living.state.refresh();
    CHECK(lit().isEmpty());
}

TEST_CASE("the position slider is locked while the loop is on and B is set") {
    LivingWindow living;
    living.loadTrack();
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK_FALSE(living.outlets.cueSlider->isLocked());
    living.controller.markBUpdate();
    living.state.refresh();
    CHECK(living.outlets.cueSlider->isLocked());
    CHECK(living.outlets.cueSlider->toolTip() == "Switch the loop off to move freely");
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK_FALSE(living.outlets.cueSlider->isLocked());
}

TEST_CASE("the strip's playhead follows the position slider") {
    LivingWindow living;
    living.loadTrack();
    living.outlets.cueSlider->setRange(0, 60000);
    living.outlets.cueSlider->setValue(15000);
    living.state.refresh();
    CHECK(living.outlets.waveformStrip->position() == 0.25);
}

TEST_CASE("the strip shows the waveform as it comes in, and none without a track") {
    LivingWindow living;
    living.loadTrack();
    WaveformStrip& strip = *living.outlets.waveformStrip;
    living.fixture.engine.movie()->pictured = {{}, 0, false};
    living.state.refresh();
    living.fixture.engine.movie()->pictured = {{0.5f, 0, 0}, 1, false};
    living.state.refresh();
    CHECK(strip.peaks() == std::vector<float>{0.5f, 0, 0});
    living.fixture.engine.movie()->pictured = {{0.5f, 0.25f, 1}, 3, true};
    living.state.refresh();
    CHECK(strip.peaks() == std::vector<float>{0.5f, 0.25f, 1});
    living.controller.qtMovie.reset();
    living.state.refresh();
    CHECK(strip.peaks().empty());
}

TEST_CASE("the strip's bars are as tall as the sound is loud on the whole, and end with it") {
    WaveformStrip strip;
    strip.resize(320, 60);
    std::vector<float> peaks(2000, 0.0f);
    for (std::size_t i = 0; i < 1000; ++i) peaks[i] = i % 2 ? 0.2f : 0.6f;
    strip.setPeaks(peaks);
    const QImage drawn = strip.grab().toImage();
    const auto heightAt = [&](double fraction) {
        const int x = 10 + int(fraction * 100) * 3 + 1;
        int tall = 0;
        for (int y = 2; y < drawn.height() - 2; ++y) tall += qGray(drawn.pixel(x, y)) > 40;
        return tall;
    };
    CHECK(heightAt(0.2) == doctest::Approx(0.4 * 50).epsilon(0.1));
    CHECK(heightAt(0.8) <= 4);
}
