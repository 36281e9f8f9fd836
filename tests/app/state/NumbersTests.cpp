#include "app/state/Numbers.h"

#include <clocale>
#include <cmath>
#include <limits>

#include <QLocale>

#include "support/widgets/TestText.h"

using namespace qm;

TEST_CASE("fixed text has exactly the decimals asked for, rounded as the C library rounds") {
    CHECK(fixedText(1.0, 2) == "1.00");
    CHECK(fixedText(0.333, 2) == "0.33");
    CHECK(fixedText(0.125, 2) == "0.12");
    CHECK(fixedText(0.375, 2) == "0.38");
    CHECK(fixedText(-0.5, 6) == "-0.500000");
    CHECK(fixedText(-0.0, 2) == "-0.00");
}

TEST_CASE("fixed text of the largest double is whole") {
    CHECK(fixedText(std::numeric_limits<double>::max(), 6).size() == 309 + 7);
}

TEST_CASE("a rate title is six decimals followed by the characters .2") {
    CHECK(rateTitle(1.5f) == "1.500000.2");
    CHECK(rateTitle(-0.35f) == "-0.350000.2");
    CHECK(rateTitle(1.05f) == "1.050000.2");
}

TEST_CASE("numbers have a decimal point in every locale") {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    CHECK(fixedText(1234.5, 2) == "1234.50");
    CHECK(rateTitle(0.5f) == "0.500000.2");
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(before);
}

TEST_CASE("truncation goes toward zero") {
    CHECK(truncToInt32(1234.9) == 1234);
    CHECK(truncToInt32(-150.7) == -150);
    CHECK(truncToInt32(-0.6) == 0);
}

TEST_CASE("truncation of what no integer can hold stays at the ends, and not-a-number is zero") {
    CHECK(truncToInt32(1e20) == std::numeric_limits<std::int32_t>::max());
    CHECK(truncToInt32(-1e20) == std::numeric_limits<std::int32_t>::min());
    CHECK(truncToInt32(2147483647.5) == std::numeric_limits<std::int32_t>::max());
    CHECK(truncToInt32(-2147483648.5) == std::numeric_limits<std::int32_t>::min());
    CHECK(truncToInt32(std::numeric_limits<double>::infinity()) == std::numeric_limits<std::int32_t>::max());
    CHECK(truncToInt32(std::nan("")) == 0);
}
