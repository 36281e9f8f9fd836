#include <doctest/doctest.h>

#include "support/widgets/PaintWatch.h"
#include "ui/controls/BackgroundViewBlack.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/MeterView.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/WaveformStrip.h"

using namespace qm;

namespace {

int areaOf(const QRegion& region) {
    int area = 0;
    for (const QRect& each : region) area += each.width() * each.height();
    return area;
}

struct Cursor {
    Cursor() {
        slider.resize(620, 24);
        slider.setRange(0, 6000);  // ten to a pixel
        slider.setValue(3000);
    }
    Slider slider;
};

struct Clock {
    Clock() {
        label.setTextFont(uiFont(44, 400, -0.03), 44);
        label.setTextAlignment(Qt::AlignRight);
        label.resize(260, 44);
    }
    TimeLabel label{QStringLiteral("0:01:23.45")};
};

struct Strip {
    Strip() {
        strip.resize(620, 56);
        strip.setPeaks(std::vector<float>(200, 0.5f));
        strip.setActive(true);
        strip.setPosition(0.5);
    }
    WaveformStrip strip;
};

}  // namespace

TEST_CASE_FIXTURE(Cursor, "a cursor is painted again when it has moved far enough to be seen, and not before") {
    PaintWatch watch(slider);
    CHECK(watch.paintsAfter([&] { slider.setValue(3001); }) == 0);
    CHECK(watch.paintsAfter([&] { slider.setValue(3002); }) == 0);
    CHECK(watch.paintsAfter([&] { slider.setValue(3003); }) == 1);
    CHECK(watch.paintsAfter([&] { slider.setValue(3004); }) == 0);
    CHECK(slider.value() == 3004);
}

TEST_CASE_FIXTURE(Cursor, "only where the knob was and is the slider is painted") {
    PaintWatch watch(slider);
    CHECK(watch.paintsAfter([&] { slider.setValue(3010); }) == 1);
    CHECK(areaOf(watch.region()) < 30 * 24);
    CHECK(watch.looksWholeAfter([&] { slider.setValue(3055); }));
    CHECK(watch.looksWholeAfter([&] { slider.setValue(2500); }));
    CHECK(watch.looksWholeAfter([&] { slider.setValue(0); }));
    CHECK(watch.looksWholeAfter([&] { slider.setValue(6000); }));
}

TEST_CASE_FIXTURE(Cursor, "a slider painted as a whole shows its value exactly") {
    PaintWatch watch(slider);
    watch.paintsAfter([&] { slider.setValue(3002); });
    CHECK(watch.looksWholeAfter([&] { slider.update(); }));
    CHECK(watch.paintsAfter([&] { slider.setValue(3004); }) == 0);
    CHECK(watch.paintsAfter([&] { slider.setValue(3005); }) == 1);
}

TEST_CASE_FIXTURE(Strip, "the playhead in the strip is painted again when it has moved far enough to be seen") {
    PaintWatch watch(strip);
    CHECK(watch.paintsAfter([&] { strip.setPosition(0.5002); }) == 0);
    CHECK(watch.paintsAfter([&] { strip.setPosition(0.5004); }) == 0);
    CHECK(watch.paintsAfter([&] { strip.setPosition(0.5006); }) == 1);
    CHECK(strip.position() == 0.5006);
}

TEST_CASE_FIXTURE(Strip, "a strip painted where the playhead was and is looks as a whole") {
    strip.setLoop(std::pair(0.2, 0.7));
    PaintWatch watch(strip);
    for (double position : {0.51, 0.69, 0.71, 0.2, 0.0, 1.0})
        CHECK(watch.looksWholeAfter([&] { strip.setPosition(position); }));
}

TEST_CASE_FIXTURE(Clock, "of a clock only the digits that change are painted") {
    PaintWatch watch(label);
    CHECK(watch.paintsAfter([&] { label.setText(QStringLiteral("0:01:23.45")); }) == 0);
    watch.paintsAfter([&] { label.setText(QStringLiteral("0:01:23.46")); });
    const int one = areaOf(watch.region());
    watch.paintsAfter([&] { label.setText(QStringLiteral("0:01:23.57")); });
    const int two = areaOf(watch.region());
    CHECK(one > 0);
    CHECK(one < two);
    CHECK(two < label.width() * label.height() / 3);
}

TEST_CASE_FIXTURE(Clock, "a clock painted in part looks as a whole") {
    PaintWatch watch(label);
    for (const char* time : {"0:01:23.46", "0:01:23.57", "0:01:24.00", "0:02:00.11", "0:59:59.99", "1:00:00.00",
                             "1:07:14.71", "1:11:11.11", "8:08:08.88", "-8:08:08.88"}) {
        CAPTURE(time);
        CHECK(watch.looksWholeAfter([&] { label.setText(QString::fromLatin1(time)); }));
    }
}

TEST_CASE("of a level bar only the cells between the level before and now are painted") {
    for (int turns : {0, 1, 3}) {
        CAPTURE(turns);
        LevelIndicator bar(0, nullptr);
        bar.setQuarterTurns(turns);
        bar.resize(turns % 2 ? bar.uprightSize().transposed() : bar.uprightSize());
        bar.setFloatValue(10);
        PaintWatch watch(bar);
        CHECK(watch.paintsAfter([&] { bar.setFloatValue(10.4f); }) == 0);
        CHECK(watch.paintsAfter([&] { bar.setFloatValue(11); }) == 1);
        CHECK(areaOf(watch.region()) == 6 * LevelIndicator::kThickness);
        CHECK(watch.looksWholeAfter([&] { bar.setFloatValue(18); }));
        CHECK(watch.looksWholeAfter([&] { bar.setFloatValue(0); }));
        CHECK(watch.looksWholeAfter([&] { bar.setPeakValue(20); }));
        CHECK(watch.looksWholeAfter([&] { bar.setPeakValue(3); }));
        CHECK(watch.looksWholeAfter([&] { bar.setPeakValue(0); }));
    }
}

TEST_CASE("a ground painted in part is the same as a whole one, corners and middle") {
    BackgroundViewBlack ground;
    ground.resize(400, 300);
    PaintWatch watch(ground);
    for (const QRect& part : {QRect(100, 100, 90, 44), QRect(0, 50, 400, 40), QRect(50, 0, 40, 300), QRect(0, 0, 9, 9),
                              QRect(390, 290, 10, 10)})
        CHECK(watch.looksWholeAfter([&] { ground.update(part); }));
}

TEST_CASE("a control that has the focus is painted no more often than without") {
    QWidget window;
    window.resize(400, 100);
    Slider slider(&window);
    slider.setGeometry(20, 20, 300, 24);
    FocusRing ring(&window);
    PaintWatch onSlider(slider), onWindow(window);
    QApplication::setActiveWindow(&window);
    slider.setFocus();
    onWindow.paintsAfter([] {});
    REQUIRE(ring.followedWidget() == &slider);
    CHECK(onSlider.paintsAfter([] {}) == 0);
    CHECK(onSlider.paintsAfter([&] { slider.update(); }) == 1);
    CHECK(onSlider.paintsAfter([] {}) == 0);
}

TEST_CASE("the ring round the knob of a slider follows it") {
    QWidget window;
    window.resize(400, 100);
    Slider slider(&window);
    slider.setGeometry(20, 20, 300, 24);
    FocusRing ring(&window);
    PaintWatch onWindow(window), onRing(ring);
    QApplication::setActiveWindow(&window);
    slider.setFocus();
    onWindow.paintsAfter([] {});
    CHECK(onRing.paintsAfter([&] { slider.setValue(0.75); }) >= 1);
    CHECK(onRing.region().boundingRect() == ring.rect());
}
