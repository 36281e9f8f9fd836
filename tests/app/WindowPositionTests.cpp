#include "app/WindowPosition.h"

#include "support/widgets/ControllerFixture.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

const QRect kScreen(0, 0, 1920, 1080);
const QSize kMinimum(100, 100);

std::optional<QRect> frameFrom(const QString& text) {
    return frameFromSavedString(text, kMinimum, kScreen, {kScreen});
}

}  // namespace

TEST_CASE_FIXTURE(ControllerFixture, "the position path has a doubled slash after the home folder") {
    CHECK(windowPositionPath() == home.path() + "//Library/Application Support/Quillmere/windowposition");
}

TEST_CASE("a frame is saved from the bottom left, the window's first and then the screen's") {
    CHECK(savedFrameString({100, 200, 960, 640}, kScreen, kScreen) == "100 240 960 640 0 0 1920 1080 ");
}

TEST_CASE("a frame on a second screen above the primary one has a y beyond it") {
    CHECK(savedFrameString({10, -700, 500, 400}, {0, -800, 1280, 800}, kScreen) == "10 1380 500 400 0 1080 1280 800 ");
}

TEST_CASE("a saved frame comes back where it was") {
    for (const QRect& frame : {QRect(100, 200, 960, 640), QRect(0, 0, 1920, 1080), QRect(1820, 980, 100, 100)}) {
        CHECK(frameFrom(savedFrameString(frame, kScreen, kScreen)) == frame);
    }
}

TEST_CASE("the first four numbers are enough") {
    CHECK(frameFrom("100 240 960 640") == QRect(100, 200, 960, 640));
}

TEST_CASE("a text that does not begin with four whole numbers is no frame") {
    for (const char* text : {"", "abc", "1 2 3", "1 2 300 x", "1.5 2 300 300", "99999999999 1 300 300",
                             "1 2 2147483647 2147483647", "100,240,960,640", "0 0 -300 -300", "0 0 0 0"}) {
        CAPTURE(text);
        CHECK_FALSE(frameFrom(text));
    }
}

TEST_CASE("a frame smaller than the window can be is no frame") {
    CHECK_FALSE(frameFrom("0 0 99 300"));
    CHECK_FALSE(frameFrom("0 0 300 99"));
    CHECK(frameFrom("0 0 100 100"));
}

TEST_CASE("a frame outside every screen is moved into one") {
    CHECK(frameFrom("5000 240 960 640") == QRect(960, 200, 960, 640));
    CHECK(frameFrom("-3000 -3000 960 640") == QRect(0, 440, 960, 640));
}

TEST_CASE("a frame larger than its screen is cut to it") {
    CHECK(frameFrom("0 0 4000 3000") == QRect(0, 0, 1920, 1080));
}

TEST_CASE("a frame stays on the screen that holds most of it") {
    const QRect second(1920, 0, 1280, 1024);
    const auto frame = frameFromSavedString(savedFrameString({1900, 100, 800, 600}, second, kScreen), kMinimum, kScreen,
                                            {kScreen, second});
    CHECK(frame == QRect(1920, 100, 800, 600));
}

TEST_CASE("without a screen there is no frame") {
    CHECK_FALSE(frameFromSavedString("100 240 960 640", kMinimum, kScreen, {}));
}
