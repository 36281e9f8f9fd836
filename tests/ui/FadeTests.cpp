#include <doctest/doctest.h>

#include <QApplication>
#include <QDialog>
#include <QWindow>

#include "support/widgets/ControllerFixture.h"
#include "ui/controls/FadingWindow.h"

using namespace qm;

namespace {

// What the desktop is told of the window.
bool acceptsNoKeys(const QWidget& window) {
    return window.windowHandle()->flags().testFlag(Qt::WindowDoesNotAcceptFocus);
}

}  // namespace

TEST_CASE("a window keeps the alpha it is given, above one too, while the system gets one at most") {
    FadingWindow window;
    window.setAlphaValue(1.05);
    CHECK(window.alphaValue() == 1.05);
    CHECK(window.windowOpacity() == 1.0);
    window.setAlphaValue(0.0);
    CHECK(window.alphaValue() == 0.0);
}

TEST_CASE("the fade ends on the twenty-second step, and only then the window becomes the key window") {
    PlayerState state;
    FadingWindow window;
    Outlets outlets;
    outlets.mainWindow = &window;
    WindowChrome chrome(state, outlets);
    chrome.startFadeIn();
    CHECK(window.alphaValue() == 0.0);
    REQUIRE(state.fadeInTimer);
    CHECK(state.fadeInTimer->interval() == 50);
    window.show();
    CHECK(acceptsNoKeys(window));
    for (int step = 1; step <= 21; ++step) {
        chrome.fadeinMainWindow();
        CHECK(window.alphaValue() == doctest::Approx(0.05 * step).epsilon(1e-6));
        CHECK(window.alphaValue() == static_cast<double>(static_cast<float>(window.alphaValue())));
        CHECK_FALSE(window.keyWindow);
        CHECK(acceptsNoKeys(window));
        CHECK(state.fadeInTimer->isActive());
    }
    chrome.fadeinMainWindow();
    CHECK(window.keyWindow);
    CHECK_FALSE(acceptsNoKeys(window));
    CHECK(window.isVisible());
    CHECK_FALSE(state.fadeInTimer->isActive());
}

TEST_CASE("a panel that waits for its answer keeps the keyboard when the window behind it would take it") {
    FadingWindow window;
    QDialog panel(&window);
    panel.setModal(true);
    window.show();
    panel.show();
    panel.activateWindow();
    QApplication::processEvents();
    REQUIRE(QApplication::activeWindow() == &panel);
    window.makeKeyAndOrderFront();
    QApplication::processEvents();
    CHECK(window.keyWindow);
    CHECK(QApplication::activeWindow() == &panel);
    panel.close();
    window.makeKeyAndOrderFront();
    QApplication::processEvents();
    CHECK(QApplication::activeWindow() == &window);
}

TEST_CASE("closing a window tells its owner once before it is gone") {
    FadingWindow window;
    int told = 0;
    window.willClose = [&] {
        ++told;
        CHECK(window.isVisible());
    };
    window.show();
    window.close();
    CHECK(told == 1);
    CHECK_FALSE(window.isVisible());
}
