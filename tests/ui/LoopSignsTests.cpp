#include <doctest/doctest.h>

#include "support/widgets/LivingWindow.h"
#include "support/widgets/TestText.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/HeroView.h"

using namespace qm;

TEST_CASE("loop times turn amber when a mark leaves the track's ends, and the strip shows the marks") {
    LivingWindow living;
    living.loadTrack();
    living.state.refresh();
    CHECK(living.outlets.loopIn->textColor() != tokens::kAmberHigh);
    CHECK_FALSE(living.outlets.waveformStrip->loop());
    living.markAt(15000, 60000);
    living.state.refresh();
    CHECK(living.outlets.loopIn->textColor() == tokens::kAmberHigh);
    CHECK(living.outlets.loopOut->textColor() != tokens::kAmberHigh);
    REQUIRE(living.outlets.waveformStrip->loop());
    CHECK_FALSE(living.outlets.waveformStrip->isLooping());
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK(living.outlets.waveformStrip->isLooping());
    REQUIRE(living.outlets.cueSlider->loopRegion());
    CHECK(living.outlets.cueSlider->loopRegion()->first == 15000);
}

TEST_CASE("strip, slider and tag show the passage that the movie was given, whichever row gave it") {
    LivingWindow living;
    living.addTrack(QStringLiteral("/music/b.mp3"));
    living.loadTrack();
    living.outlets.playList->selectRowIndex(1);
    living.markAt(6000, 12000);
    living.controller.loopSwitch();
    living.state.refresh();
    const auto shown = [&] { return living.outlets.cueSlider->loopRegion(); };
    CHECK(shown() == std::pair(6000.0, 12000.0));
    CHECK(living.outlets.waveformStrip->loop() == std::pair(0.1, 0.2));
    living.outlets.playList->selectRowIndex(0);
    living.controller.markAarray[0] = 30000;
    living.state.refresh();
    CHECK(shown() == std::pair(6000.0, 12000.0));
    CHECK(living.outlets.waveformStrip->loop() == std::pair(0.1, 0.2));
    CHECK(living.grid().hero->stateTexts()[2] == "Loop A–B");
}

TEST_CASE("with B before A the passage between them is shown") {
    LivingWindow living;
    living.loadTrack();
    living.markAt(30000, 12000);
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK(living.outlets.cueSlider->loopRegion() == std::pair(12000.0, 30000.0));
    WaveformStrip& strip = *living.outlets.waveformStrip;
    CHECK(strip.loop() == std::pair(0.5, 0.2));
    CHECK(strip.isLooping());
}

TEST_CASE("the flags of marks in either order hang inside the passage between them") {
    WaveformStrip strip;
    strip.resize(320, 60);
    strip.setActive(true);
    strip.setLoop(std::pair(0.5, 0.2), true);
    const QImage drawn = strip.grab().toImage();
    const auto isAmber = [&](double fraction, int y) {
        const QColor color = drawn.pixelColor(10 + int(fraction * 300), y);
        return color.red() > 2 * color.blue() && color.red() > 150;
    };
    CHECK(isAmber(0.17, 4) == false);
    CHECK(isAmber(0.22, 14));
    CHECK(isAmber(0.48, 14));
    CHECK(isAmber(0.53, 4) == false);
}

TEST_CASE("marks in one place repeat the whole track, and so it is shown") {
    LivingWindow living;
    living.loadTrack();
    living.markAt(12000, 12000);
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK(living.outlets.cueSlider->loopRegion() == std::pair(0.0, 60000.0));
}

TEST_CASE("a track that was loaded since plays past B, and no loop is shown") {
    LivingWindow living;
    living.loadTrack();
    living.markAt(6000, 12000);
    living.controller.loopSwitch();
    living.controller.selectTrack();
    REQUIRE(living.controller.isLooping);
    living.state.refresh();
    CHECK_FALSE(living.outlets.cueSlider->loopRegion());
    CHECK_FALSE(living.outlets.waveformStrip->isLooping());
    CHECK(living.grid().hero->stateTexts()[2].isEmpty());
    living.controller.loopSwitch();
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK(living.outlets.cueSlider->loopRegion() == std::pair(6000.0, 12000.0));
}

TEST_CASE("marks that are reset while the loop is on repeat the whole track, and so it is shown") {
    LivingWindow living;
    living.loadTrack();
    living.markAt(6000, 12000);
    living.controller.loopSwitch();
    living.controller.resetMarks();
    living.state.refresh();
    CHECK(living.outlets.cueSlider->loopRegion() == std::pair(0.0, 60000.0));
    CHECK(living.grid().hero->stateTexts()[2] == "Loop A–B");
    living.controller.loopSwitch();
    living.state.refresh();
    CHECK_FALSE(living.outlets.cueSlider->loopRegion());
}

TEST_CASE("the loop times keep the colour and the words of the row that they belong to") {
    LivingWindow living;
    living.addTrack(QStringLiteral("/music/b.mp3"));
    living.loadTrack();
    living.markAt(6000, 12000);
    living.outlets.playList->selectRowIndex(1);
    living.state.refresh();
    CHECK(living.outlets.loopIn->text() == "00:00:10");
    CHECK(living.outlets.loopIn->textColor() == tokens::kAmberHigh);
    CHECK(living.outlets.loopOut->textColor() == tokens::kAmberHigh);
    CHECK(living.outlets.markBButton->accessibleDescription() == "20 seconds");
    // Starting the other row puts B's field back to its first text, which is no mark.
    living.controller.isLooping = true;
    living.controller.markBarray[1] = 3000;
    living.controller.rowDoubleClicked();
    living.state.refresh();
    CHECK(living.outlets.loopOut->text() == "00:00:00");
    CHECK(living.outlets.loopOut->textColor() != tokens::kAmberHigh);
    CHECK(living.outlets.loopIn->textColor() != tokens::kAmberHigh);
}

TEST_CASE("a loop switched on without a selected row shows nowhere in the window") {
    LivingWindow living;
    living.loadTrack();
    living.outlets.playList->selectRowIndex(-1);
    living.state.refresh();
    const QImage before = living.window.grab().toImage();
    living.controller.loopSwitch();
    REQUIRE(living.controller.isLooping);
    living.state.refresh();
    CHECK_FALSE(living.outlets.waveformStrip->isLooping());
    CHECK_FALSE(living.outlets.cueSlider->loopRegion());
    CHECK(living.window.grab().toImage() == before);
}
