#include <doctest/doctest.h>

#include "support/widgets/PaintWatch.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Slider.h"

using namespace qm;

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
