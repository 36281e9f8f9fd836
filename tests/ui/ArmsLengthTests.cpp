// What is read from afar, with both hands on an instrument.
#include <doctest/doctest.h>

#include <QHeaderView>
#include <QLabel>
#include <cmath>

#include "app/state/ReadableForms.h"
#include "support/widgets/LivingWindow.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/PlayListHeader.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/Decks.h"
#include "ui/windows/HeroView.h"
#include "ui/windows/PlayListCard.h"
#include "ui/windows/SoundCards.h"

using namespace qm;

namespace {

constexpr double kFlag = 17;

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one) + 0.05, b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

QList<StateTag*> shownTags(const HeroView& hero, int height) {
    QList<StateTag*> tags;
    for (auto* tag : hero.findChildren<StateTag*>())
        if (!tag->isHidden() && tag->height() == height) tags.append(tag);
    return tags;
}

// The edges of a groove that nothing covers, on that ground.
double grooveContrast(const SliderLook& look, double scale, const QColor& ground) {
    Slider slider;
    slider.setLook(look);
    slider.setRange(0, 1);
    slider.resize(200, 24);
    QImage image(slider.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(ground);
    slider.render(&image, {}, {}, QWidget::DrawChildren);
    const int x = static_cast<int>(140 * scale);
    double best = 1;
    for (int y = 0; y < image.height(); ++y) best = std::max(best, contrast(image.pixelColor(x, y), ground));
    return best;
}

}  // namespace

TEST_CASE("speed and pitch in large letters are empty at rest, and name what was changed") {
    CHECK(speedPercent(1.0f).isEmpty());
    CHECK(speedPercent(0.7f) == "70 %");
    CHECK(speedPercent(-0.75f) == "−75 %");
    CHECK(speedPercent(2.5f) == "250 %");
    CHECK(speedPercent(0.355f) == "35.5 %");
    CHECK(pitchSteps(0).isEmpty());
    CHECK(pitchSteps(100) == "+1");
    CHECK(pitchSteps(-200) == "−2");
    CHECK(pitchSteps(50) == "+0.5");
}

TEST_CASE("speed and pitch stand large beside the time while they are away from rest") {
    LivingWindow living;
    living.window.show();
    living.loadTrack();
    living.state.refresh();
    HeroView& hero = *living.grid().hero;
    CHECK(hero.largeTexts() == QStringList{"", ""});
    CHECK(shownTags(hero, 34).isEmpty());
    living.controller.speed075();
    living.controller.semiToneUp();
    living.state.refresh();
    CHECK(hero.largeTexts() == QStringList{"75 %", "+1"});
    const QList<StateTag*> tags = shownTags(hero, 34);
    REQUIRE(tags.size() == 2);
    const QRect time = living.outlets.timecode->geometry();
    CHECK(tags[1]->geometry().right() < time.left());
    CHECK(tags[0]->geometry().right() < tags[1]->geometry().left());
    for (const StateTag* tag : tags) CHECK(time.adjusted(-300, 0, 0, 0).contains(tag->geometry()));
    for (const auto* label : hero.findChildren<TextLabel*>()) {
        CAPTURE(label->text().toStdString());
        for (const StateTag* tag : tags)
            CHECK_FALSE((label->isVisible() && label->geometry().intersects(tag->geometry())));
    }
    living.window.resize(1300, 800);
    CHECK(shownTags(hero, 44).size() == 2);
}

TEST_CASE("the scales are quieter than the values and the large tags") {
    LivingWindow living;
    living.controller.speed075();
    living.state.refresh();
    const double loud = shownTags(*living.grid().hero, 34).value(0)->font().pointSizeF();
    for (const QLabel* label : {living.outlets.speed_2, living.outlets.speed1, living.outlets.speedNormal,
                                living.outlets.pitch0, living.outlets.pitch100}) {
        CHECK(label->font().weight() == 400);
        CHECK(label->font().pointSizeF() * 2 <= loud);
    }
    CHECK(living.outlets.speedTitle->font().weight() < 600);
}

TEST_CASE("unset marks in the list are faint, set ones amber") {
    LivingWindow living;
    living.loadTrack();
    living.window.show();
    PlayListView& list = *living.outlets.playList;
    const auto brightest = [&](const char* column) {
        const int number = PlayListView::columnIndex(column);
        const QRect cell = list.visualRect(list.model()->index(0, number)).adjusted(1, 4, -1, -4);
        const QPoint place = list.viewport()->mapTo(&living.window, cell.topLeft());
        const QImage image = living.window.grab(QRect(place, cell.size())).toImage();
        QColor best = Qt::black;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (luminance(image.pixelColor(x, y)) > luminance(best)) best = image.pixelColor(x, y);
        return best;
    };
    list.clearSelection();
    CHECK(luminance(brightest("IBmarkA")) < luminance(brightest("IBduration")) / 2);
    CHECK(luminance(brightest("IBmarkB")) < luminance(brightest("IBduration")) / 2);
    living.controller.markAarray[0] = 6000;
    list.viewport()->update();
    CHECK(luminance(brightest("IBmarkA")) > luminance(brightest("IBmarkB")) * 2);
}

TEST_CASE("times of an hour and more have room in their columns, others keep the measure") {
    LivingWindow living;
    living.window.show();
    PlayListView& list = *living.outlets.playList;
    living.addTrack(QStringLiteral("/music/short.mp3"));
    for (int column = 4; column < 6; ++column) CHECK(list.columnWidth(column) == 64);
    living.controller.insertEntry(0, {QStringLiteral("/music/long.mp3"), QString(), QString(), QStringLiteral("Long"),
                                      600LL * (11 * 3600 + 23 * 60 + 45), 600, 128, 128, 0, 600LL * 40000});
    list.reloadData();
    for (const char* name : {"IBduration", "IBmarkA", "IBmarkB"}) {
        const int column = PlayListView::columnIndex(name);
        const PlayListCell cell = playListCell(column);
        const QString text = list.model()->index(0, column).data().toString();
        CAPTURE(text.toStdString());
        CHECK(textWidth(playListTimeFont(), text) <= list.columnWidth(column) - cell.left - cell.right);
    }
    CHECK(list.horizontalHeader()->length() == list.viewport()->width());
}

TEST_CASE("the flags of a passage that has room for both hang inside it") {
    const auto [a, b] = flagPlaces(100, 200, 600);
    CHECK(a.left == 100);
    CHECK(a.hangsRight);
    CHECK(b.left == 200 - kFlag);
    CHECK_FALSE(b.hangsRight);
}

TEST_CASE("the flags of a short passage hang outside it and never cover each other, also at the strip's ends") {
    const auto [a, b] = flagPlaces(300, 305, 600);
    CHECK(a.left == 300 - kFlag);
    CHECK_FALSE(a.hangsRight);
    CHECK(b.left == 305);
    CHECK(b.hangsRight);
    for (double left = 10; left <= 590; left += 0.5) {
        for (const double length : {0.0, 1.0, 5.0, 20.0, 33.9, 34.0, 60.0}) {
            if (left + length > 590) continue;
            const auto [first, second] = flagPlaces(left, left + length, 600);
            CAPTURE(left);
            CAPTURE(length);
            CHECK(first.left >= 0);
            CHECK(second.left + kFlag <= 600);
            CHECK(second.left >= first.left + kFlag);
        }
    }
}

TEST_CASE("a slider's groove has three times the contrast of its ground, at every sharpness of the screen") {
    SliderLook plain, hero, tone;
    hero.grooveHeight = 6;
    hero.knobCentreY = 12;
    tone.knobRadius = 9;
    tone.grooveHeight = 4;
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        for (const QColor& ground : {QColor(0, 0, 0), QColor(0x1B, 0x1C, 0x1E), QColor(0x2B, 0x2C, 0x2E)}) {
            CAPTURE(scale);
            CAPTURE(ground.red());
            CHECK(grooveContrast(plain, scale, ground) >= 3);
            CHECK(grooveContrast(hero, scale, ground) >= 3);
            CHECK(grooveContrast(tone, scale, ground) >= 3);
        }
    }
}

TEST_CASE("in a wide window the decks keep their measure in the middle, and the strip grows") {
    LivingWindow living;
    living.window.show();
    MainGrid& grid = living.grid();
    living.window.resize(1400, 900);
    const int strip = living.outlets.waveformStrip->height();
    CHECK(strip == 92);
    CHECK(grid.transport->x() == 16);
    for (const QSize& size : {QSize(1920, 1030), QSize(2560, 1390)}) {
        CAPTURE(size.width());
        living.window.resize(size);
        CHECK(grid.transport->size() == QSize(560, 120));
        CHECK(grid.loop->size() == QSize(270, 120));
        const int left = grid.transport->x() - grid.hero->x();
        const int right = grid.hero->geometry().right() - grid.loop->geometry().right();
        CHECK(std::abs(left - right) <= 1);
        CHECK(living.outlets.waveformStrip->height() > strip + 40);
        CHECK(living.outlets.waveformStrip->width() == grid.hero->width());
        CHECK(grid.playList->y() == grid.loop->geometry().bottom() + 1 + 12);
        CHECK(grid.playList->height() >= 320);
    }
    living.window.resize(1920, 760);
    CHECK(grid.playList->height() >= 320);
}
