#include "app/state/TimeFormat.h"

#include <clocale>
#include <limits>

#include <QLocale>

#include "support/widgets/TestText.h"

using namespace qm;

namespace {

QString longForm(std::int64_t value, std::int32_t scale) {
    return stringFromQTTime({value, scale, 0}).value_or("none");
}

QString shortForm(std::int64_t value, std::int32_t scale) {
    return stringFromQTTimeLite({value, scale, 0}).value_or("none");
}

}  // namespace

TEST_CASE("seventy-five and a half seconds read with two decimals in the long form and none in the short one") {
    CHECK(longForm(45300, 600) == "0:00:01:15.50");
    CHECK(shortForm(45300, 600) == "00:01:15");
}

TEST_CASE("a negative time has its sign in the long form and loses it in the short one") {
    CHECK(longForm(-600, 600) == "-0:00:00:1.00");
    CHECK(shortForm(-600, 600) == "00:00:01");
}

TEST_CASE("twenty-five hours are a day and an hour in the long form and one hour in the short one") {
    CHECK(longForm(90000, 1) == "1:01:00:0.00");
    CHECK(shortForm(90000, 1) == "01:00:00");
}

TEST_CASE("seconds below ten have no leading zero in the long form") {
    CHECK(longForm(63500, 1000) == "0:00:01:3.50");
}

TEST_CASE("the long form rounds the seconds, even to sixty, and the short form cuts them") {
    CHECK(longForm(35999, 600) == "0:00:00:60.00");
    CHECK(shortForm(35999, 600) == "00:00:59");
}

TEST_CASE("an indefinite time has no text in either form") {
    CHECK_FALSE(stringFromQTTime({600, 600, kQTTimeIsIndefinite}));
    CHECK_FALSE(stringFromQTTimeLite({600, 600, kQTTimeIsIndefinite}));
}

TEST_CASE("a time whose scale is not positive has no text in either form") {
    for (const std::int32_t scale : {0, -600, std::numeric_limits<std::int32_t>::min()}) {
        CAPTURE(scale);
        CHECK_FALSE(stringFromQTTime({600, scale, 0}));
        CHECK_FALSE(stringFromQTTimeLite({600, scale, 0}));
    }
}

TEST_CASE("the units of a day are counted in sixty-four bits") {
    const std::int32_t scale = std::numeric_limits<std::int32_t>::max();
    const std::int64_t oneDayAndTwoSeconds = std::int64_t(scale) * 86402;
    CHECK(longForm(oneDayAndTwoSeconds, scale) == "1:00:00:2.00");
    CHECK(shortForm(oneDayAndTwoSeconds, scale) == "00:00:02");
    CHECK(longForm(std::int64_t(90000) * 86400, 90000) == "1:00:00:0.00");
}

TEST_CASE("the lowest and the highest time have a text") {
    CHECK(longForm(std::numeric_limits<std::int64_t>::min(), 1) == "-106751991167300:15:30:8.00");
    CHECK(longForm(std::numeric_limits<std::int64_t>::max(), 1) == "106751991167300:15:30:7.00");
}

TEST_CASE("hours and minutes have two digits in both forms") {
    const std::int64_t time = 3600 + 2 * 60 + 15;
    CHECK(longForm(time, 1) == "0:01:02:15.00");
    CHECK(shortForm(time, 1) == "01:02:15");
    CHECK(shortForm(23 * 3600 + 59 * 60 + 59, 1) == "23:59:59");
}

TEST_CASE("the elapsed text is cut out of the engine's time string from the second hour digit to the slash") {
    CHECK(elapsedText("0:00:01:23.45/600", '/') == "0:01:23.45");
    CHECK(elapsedText(QString::fromStdString(*QTStringFromTime({50070, 600, 0})), '/') == "0:01:23.45");
}

TEST_CASE("fractions of two to six digits show up to the slash") {
    CHECK(elapsedText("0:00:01:23.45/600", '/') == "0:01:23.45");
    CHECK(elapsedText("0:00:01:23.456/600", '/') == "0:01:23.456");
    CHECK(elapsedText("0:00:01:23.4567/600", '/') == "0:01:23.4567");
    CHECK(elapsedText("0:00:01:23.45678/600", '/') == "0:01:23.45678");
    CHECK(elapsedText("0:00:01:23.456789/600", '/') == "0:01:23.456789");
}

TEST_CASE("a slash at another place, or none, gives ten characters") {
    CHECK(elapsedText("0:00:01:23.4/600", '/') == "0:01:23.4/");
    CHECK(elapsedText("0:00:01:23.4567890/600", '/') == "0:01:23.45");
    CHECK(elapsedText("0:00:01:23.456789", '/') == "0:01:23.45");
}

TEST_CASE("a time string that is too short gives what there is of it") {
    CHECK(elapsedText("0:00:01", '/') == "0:01");
    CHECK(elapsedText("", '/') == "");
}

TEST_CASE("from ten hours on the elapsed text has lost the first hour digit") {
    CHECK(elapsedText("0:12:00:00.00/600", '/') == "2:00:00.00");
}

TEST_CASE("times have a decimal point in every locale") {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    CHECK(longForm(45300, 600) == "0:00:01:15.50");
    CHECK(shortForm(45300, 600) == "00:01:15");
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(before);
}
