#include <doctest/doctest.h>

#include <QAccessible>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>
#include <functional>
#include <limits>

#include "support/widgets/Gestures.h"
#include "support/widgets/TestText.h"
#include "ui/controls/Slider.h"

using namespace qm;

namespace {

struct WatchedSlider {
    WatchedSlider() {
        slider.resize(220, 24);
        slider.setRange(-1, 1);
        slider.setResetValue(0.5);
        QObject::connect(&slider, &Slider::action, &slider, [this] { ++actions; });
    }
    QPointF knob() const { return {slider.xOfValue(slider.value()), slider.look().knobCentreY}; }
    QPointF at(double value) const { return {slider.xOfValue(value), slider.look().knobCentreY}; }

    Slider slider;
    int actions = 0;
};

}  // namespace

TEST_CASE("a slider keeps its value inside its bounds") {
    WatchedSlider watched;
    watched.slider.setValue(7);
    CHECK(watched.slider.value() == 1.0);
    watched.slider.setValue(-7);
    CHECK(watched.slider.value() == -1.0);
    watched.slider.setRange(0, 4294967296.0);
    CHECK(watched.slider.value() == 0.0);
    watched.slider.setValue(4294967295.5);
    CHECK(watched.slider.value() == 4294967295.5);
}

TEST_CASE("narrowing the bounds of a slider moves its value inside them") {
    WatchedSlider watched;
    watched.slider.setValue(0.75);
    watched.slider.setMaximum(0.25);
    CHECK(watched.slider.value() == 0.25);
    watched.slider.setMinimum(0.5);
    CHECK(watched.slider.minimum() == 0.5);
    CHECK(watched.slider.maximum() == 0.5);
    CHECK(watched.slider.value() == 0.5);
}

TEST_CASE("a slider never keeps a negative zero or something that is no number") {
    WatchedSlider watched;
    watched.slider.setValue(0.5);
    watched.slider.setValue(-0.0);
    CHECK(watched.slider.value() == 0.0);
    CHECK_FALSE(std::signbit(watched.slider.value()));
    watched.slider.setValue(0.25);
    watched.slider.setValue(std::numeric_limits<double>::quiet_NaN());
    CHECK(watched.slider.value() == 0.25);
}

TEST_CASE("setting a slider's value or bounds from the program sends no action") {
    WatchedSlider watched;
    watched.slider.setValue(0.75);
    watched.slider.setRange(-2, 0.5);
    watched.slider.setMinimum(0);
    watched.slider.setResetValue(0.1);
    CHECK(watched.actions == 0);
}

TEST_CASE("dragging the knob sends the action all the way and holds the knob until the button is released") {
    WatchedSlider watched;
    Slider& slider = watched.slider;
    pressMouse(slider, watched.knob());
    CHECK(slider.isHeld());
    CHECK(watched.actions == 0);
    moveMouse(slider, watched.at(0.25));
    moveMouse(slider, watched.at(0.5));
    CHECK(watched.actions == 2);
    CHECK(slider.value() == doctest::Approx(0.5));
    CHECK(slider.isHeld());
    releaseMouse(slider, watched.at(0.5));
    CHECK_FALSE(slider.isHeld());
    CHECK(watched.actions == 2);
}

TEST_CASE("a knob gripped off its centre does not jump under the pointer") {
    WatchedSlider watched;
    pressMouse(watched.slider, watched.knob() + QPointF(6, 0));
    moveMouse(watched.slider, watched.at(0.5) + QPointF(6, 0));
    CHECK(watched.slider.value() == doctest::Approx(0.5));
}

TEST_CASE("a click on the groove jumps there and sends one action") {
    WatchedSlider watched;
    pressMouse(watched.slider, watched.at(0.75));
    CHECK(watched.slider.value() == doctest::Approx(0.75));
    CHECK(watched.actions == 1);
}

TEST_CASE("a double-click on the knob returns to the reset value, one on the groove does not") {
    WatchedSlider watched;
    doubleClickMouse(watched.slider, watched.knob());
    CHECK(watched.slider.value() == 0.5);
    CHECK(watched.actions == 1);
    doubleClickMouse(watched.slider, watched.at(-0.75));
    CHECK(watched.slider.value() == doctest::Approx(-0.75));
}

TEST_CASE("a slider whose fill starts elsewhere returns to its own resting value") {
    WatchedSlider watched;
    watched.slider.setResetValue(-1);
    watched.slider.setDoubleClickValue(0.25);
    doubleClickMouse(watched.slider, watched.knob());
    CHECK(watched.slider.value() == 0.25);
}

TEST_CASE("up and down and the wheel move by a step, left and right stay with the window") {
    WatchedSlider watched;
    watched.slider.setStep(0.125);
    CHECK(pressKey(watched.slider, Qt::Key_Up));
    CHECK(watched.slider.value() == 0.125);
    CHECK(pressKey(watched.slider, Qt::Key_Down));
    CHECK(pressKey(watched.slider, Qt::Key_Down));
    CHECK(watched.slider.value() == -0.125);
    CHECK(watched.actions == 3);
    CHECK_FALSE(pressKey(watched.slider, Qt::Key_Left));
    CHECK_FALSE(pressKey(watched.slider, Qt::Key_Right));
    CHECK_FALSE(pressKey(watched.slider, Qt::Key_Space));
    CHECK(watched.actions == 3);
    turnWheel(watched.slider, 2);
    CHECK(watched.slider.value() == 0.125);
    CHECK(watched.actions == 4);
}

TEST_CASE("half a notch of the wheel waits for the other half") {
    WatchedSlider watched;
    watched.slider.setStep(0.25);
    turnWheel(watched.slider, 0.5);
    CHECK(watched.actions == 0);
    turnWheel(watched.slider, 0.5);
    CHECK(watched.slider.value() == 0.25);
}

TEST_CASE("the bounds of a slider lie a knob's radius inside its edges") {
    WatchedSlider watched;
    CHECK(watched.slider.xOfValue(-1) == 10);
    CHECK(watched.slider.xOfValue(1) == 210);
    CHECK(watched.slider.xOfValue(0) == 110);
    CHECK(watched.slider.xOfValue(99) == 210);
}

TEST_CASE("a locked slider shows the forbidden pointer and still sends what the user does") {
    WatchedSlider watched;
    watched.slider.setLocked(true);
    CHECK(watched.slider.cursor().shape() == Qt::ForbiddenCursor);
    pressMouse(watched.slider, watched.at(0.75));
    CHECK(watched.actions == 1);
    watched.slider.setLocked(false);
    CHECK(watched.slider.cursor().shape() == Qt::PointingHandCursor);
}

TEST_CASE("a dimmed slider is fainter and still works") {
    WatchedSlider watched;
    const QImage plain = watched.slider.grab().toImage();
    watched.slider.setDimmed(true);
    CHECK(watched.slider.grab().toImage() != plain);
    pressMouse(watched.slider, watched.at(0.75));
    CHECK(watched.actions == 1);
}

TEST_CASE("assistive tools hear a slider's value in words and move it as the hand does") {
    WatchedSlider watched;
    watched.slider.setAccessibleName(QStringLiteral("Balance"));
    watched.slider.setSpokenForm([](double value) { return QStringLiteral("at %1").arg(value); });
    watched.slider.setValue(0.25);
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&watched.slider);
    REQUIRE(access);
    CHECK(access->role() == QAccessible::Slider);
    CHECK(access->text(QAccessible::Name) == "Balance");
    CHECK(access->text(QAccessible::Value) == "at 0.25");
    REQUIRE(access->valueInterface());
    access->valueInterface()->setCurrentValue(0.5);
    CHECK(watched.slider.value() == 0.5);
    CHECK(watched.actions == 1);
}

namespace {

struct GappedSlider : WatchedSlider {
    GappedSlider() {
        slider.setRange(-2.5, 2.5);
        slider.setStep(0.05);
        slider.setGap(0.35);
    }
    double after(const std::function<void()>& act) {
        act();
        return slider.value();
    }
};

}  // namespace

TEST_CASE("a knob dragged through a slider's gap snaps to 0 and to the gap's edges") {
    GappedSlider gapped;
    Slider& slider = gapped.slider;
    slider.setValue(1);
    pressMouse(slider, gapped.knob());
    const std::pair<double, double> places[] = {{0.4, 0.4}, {0.3, 0.35}, {0.2, 0.35},   {0.15, 0},
                                                {0, 0},     {-0.15, 0},  {-0.2, -0.35}, {-0.34, -0.35},
                                                {-1, -1},   {-0.15, 0},  {0.3, 0.35}};
    for (const auto& [place, value] : places) {
        CAPTURE(place);
        moveMouse(slider, gapped.at(place));
        CHECK(slider.value() == doctest::Approx(value));
    }
    moveMouse(slider, gapped.at(0.1));
    CHECK(slider.value() == 0.0);
}

TEST_CASE("a click into a slider's gap snaps, and a value from the program may lie there") {
    GappedSlider gapped;
    gapped.slider.setValue(1);
    clickMouse(gapped.slider, gapped.at(0.05));
    CHECK(gapped.slider.value() == 0.0);
    gapped.slider.setValue(0.1);
    CHECK(gapped.slider.value() == 0.1);
}

TEST_CASE("steps of keys and wheel lead across a slider's gap, by its edge, 0 and the other edge") {
    GappedSlider gapped;
    Slider& slider = gapped.slider;
    const auto down = [&] { pressKey(slider, Qt::Key_Down); };
    const auto up = [&] { pressKey(slider, Qt::Key_Up); };
    slider.setValue(0.38);
    for (const double value : {0.35, 0.0, -0.35, -0.4}) CHECK(gapped.after(down) == doctest::Approx(value));
    for (const double value : {-0.35, 0.0, 0.35, 0.4}) CHECK(gapped.after(up) == doctest::Approx(value));
    slider.setValue(0.45);
    CHECK(gapped.after([&] { turnWheel(slider, -4); }) == doctest::Approx(-0.35));
    // The edge as a number of less precision.
    slider.setValue(static_cast<double>(0.35f));
    CHECK(gapped.after(down) == 0.0);
    slider.setValue(static_cast<double>(-0.35f));
    CHECK(gapped.after(up) == 0.0);
}

TEST_CASE("assistive tools that change a slider by its step come across its gap") {
    GappedSlider gapped;
    Slider& slider = gapped.slider;
    slider.setValue(0.35);
    auto* access = QAccessible::queryAccessibleInterface(&slider)->valueInterface();
    for (const double value : {0.0, -0.35, -0.4}) {
        access->setCurrentValue(slider.value() - access->minimumStepSize().toDouble());
        CHECK(slider.value() == doctest::Approx(value));
    }
    access->setCurrentValue(1.5);
    CHECK(slider.value() == 1.5);
}
