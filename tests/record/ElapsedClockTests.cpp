#include "record/ElapsedClock.h"

#include <doctest/doctest.h>

#include <clocale>

#include "support/widgets/TestText.h"

using namespace qm;

TEST_CASE("elapsed seconds are taken apart toward zero") {
    CHECK(elapsedTime(0) == ElapsedTime{0, 0, 0});
    CHECK(elapsedTime(0.999) == ElapsedTime{0, 0, 0});
    CHECK(elapsedTime(9.9) == ElapsedTime{0, 0, 9});
    CHECK(elapsedTime(59.999) == ElapsedTime{0, 0, 59});
    CHECK(elapsedTime(60) == ElapsedTime{0, 1, 0});
    CHECK(elapsedTime(3599.5) == ElapsedTime{0, 59, 59});
    CHECK(elapsedTime(3665.25) == ElapsedTime{1, 1, 5});
    CHECK(elapsedTime(360000) == ElapsedTime{100, 0, 0});
    CHECK(elapsedTime(-61.5) == ElapsedTime{0, -1, -1});
}

TEST_CASE("the clock is written with two digits a part, whichever parts are below ten") {
    CHECK(elapsedClockText({1, 2, 3}) == "01:02:03");
    CHECK(elapsedClockText({11, 2, 3}) == "11:02:03");
    CHECK(elapsedClockText({1, 12, 3}) == "01:12:03");
    CHECK(elapsedClockText({11, 12, 3}) == "11:12:03");
    CHECK(elapsedClockText({1, 2, 13}) == "01:02:13");
    CHECK(elapsedClockText({11, 2, 13}) == "11:02:13");
    CHECK(elapsedClockText({1, 12, 13}) == "01:12:13");
    CHECK(elapsedClockText({11, 12, 13}) == "11:12:13");
}

TEST_CASE("the clock turns where its parts get a second digit") {
    CHECK(elapsedClockText(elapsedTime(9)) == "00:00:09");
    CHECK(elapsedClockText(elapsedTime(10)) == "00:00:10");
    CHECK(elapsedClockText(elapsedTime(599)) == "00:09:59");
    CHECK(elapsedClockText(elapsedTime(600)) == "00:10:00");
    CHECK(elapsedClockText(elapsedTime(3665)) == "01:01:05");
    CHECK(elapsedClockText(elapsedTime(35999)) == "09:59:59");
    CHECK(elapsedClockText(elapsedTime(36000)) == "10:00:00");
}

TEST_CASE("a hundred hours have three digits, and a clock that was set back shows its sign") {
    CHECK(elapsedClockText(elapsedTime(360000)) == "100:00:00");
    CHECK(elapsedClockText(elapsedTime(-5)) == "00:00:0-5");
}
