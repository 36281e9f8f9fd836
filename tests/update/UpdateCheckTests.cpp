#include "update/UpdateCheck.h"

#include <limits>

#include "support/widgets/TestText.h"
#include "update/CurrentVersion.h"

using namespace qm;

namespace {

constexpr VersionNumbers kCurrent{kCurrentMajorVersion, kCurrentMinorVersion, kCurrentBuildVersion};

QByteArray propertyList(const QByteArray& content) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + content + "</plist>";
}

UpdateDescription described(const QByteArray& entries) {
    const auto description = readUpdateDescription(propertyList("<dict>" + entries + "</dict>"));
    REQUIRE(description);
    return description.value();
}

std::int32_t numberIn(const QByteArray& value) {
    return versionNumber(described("<key>Minor Version</key>" + value).value("Minor Version"));
}

constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();
constexpr auto kSmallest = std::numeric_limits<std::int32_t>::min();

}  // namespace

TEST_CASE("this is version 5.91.82") {
    CHECK(kCurrentMajorVersion == 5);
    CHECK(kCurrentMinorVersion == 91);
    CHECK(kCurrentBuildVersion == 82);
}

TEST_CASE("a release is newer when any of its numbers is greater than the current one of its kind") {
    struct Case {
        VersionNumbers latest;
        bool newer;
    };
    const Case cases[] = {{{5, 91, 83}, true},      {{5, 91, 82}, false},
                          {{5, 91, 81}, false},     {{4, 95, 0}, true},
                          {{4, 0, 83}, true},       {{6, 0, 0}, true},
                          {{5, 90, 82}, false},     {{5, 90, 83}, true},
                          {{0, 0, 0}, false},       {{-6, -92, -83}, false},
                          {{5, 92, 0}, true},       {{4, 91, 82}, false},
                          {{kLargest, 0, 0}, true}, {{kSmallest, kSmallest, kLargest}, true}};
    for (const Case& release : cases) {
        CAPTURE(release.latest.major);
        CAPTURE(release.latest.minor);
        CAPTURE(release.latest.build);
        CHECK(isNewerRelease(release.latest, kCurrent) == release.newer);
    }
}

TEST_CASE("a text counts as the number it begins with") {
    const std::pair<QByteArray, std::int32_t> cases[] = {{"5", 5},
                                                         {" \t\n 91 ", 91},
                                                         {"+7", 7},
                                                         {"-7", -7},
                                                         {"82b3", 82},
                                                         {"5.91", 5},
                                                         {"1e3", 1},
                                                         {"0x10", 0},
                                                         {"", 0},
                                                         {" ", 0},
                                                         {"v5", 0},
                                                         {"+-5", 0},
                                                         {"- 5", 0},
                                                         {"-", 0},
                                                         {"+", 0},
                                                         {"007", 7},
                                                         {"2147483648", kLargest},
                                                         {"-2147483649", kSmallest},
                                                         {"99999999999999999999999", kLargest},
                                                         {"-99999999999999999999999", kSmallest}};
    for (const auto& [text, number] : cases) {
        CAPTURE(text.toStdString());
        CHECK(numberIn("<string>" + text + "</string>") == number);
    }
}

TEST_CASE("a number is truncated and kept within 32 bits, a boolean is 1 or 0, all else is 0") {
    CHECK(numberIn("<integer>83</integer>") == 83);
    CHECK(numberIn("<integer>4294967296</integer>") == kLargest);
    CHECK(numberIn("<integer>-4294967296</integer>") == kSmallest);
    CHECK(numberIn("<real>92.9</real>") == 92);
    CHECK(numberIn("<real>-92.9</real>") == -92);
    CHECK(numberIn("<real>1e300</real>") == kLargest);
    CHECK(numberIn("<true/>") == 1);
    CHECK(numberIn("<false/>") == 0);
    CHECK(numberIn("<date>2026-11-22T00:00:00Z</date>") == 0);
    CHECK(numberIn("<data>OTk=</data>") == 0);
    CHECK(numberIn("<dict><key>Minor Version</key><integer>99</integer></dict>") == 0);
    CHECK(numberIn("<array><integer>99</integer></array>") == 0);
    CHECK(versionNumber(QVariant()) == 0);
}

TEST_CASE("of two values for a key the last one counts") {
    CHECK(numberIn("<integer>1</integer><key>Minor Version</key><integer>2</integer>") == 2);
}

TEST_CASE("a description is a whole property list of one dictionary and nothing else") {
    CHECK(described("").isEmpty());
    const QByteArray others[] = {"",
                                 "<html><body>Not found</body></html>",
                                 "garbage",
                                 QByteArray(1000, '\0'),
                                 propertyList(""),
                                 propertyList("<array><integer>6</integer></array>"),
                                 propertyList("<string>6</string>"),
                                 propertyList("<dict><key>Major Version</key></dict>"),
                                 propertyList("<dict><integer>6</integer></dict>"),
                                 propertyList("<dict><key>Major Version</key><integer>6</integer></dict><dict/>"),
                                 propertyList("<dict><key>Major Version</key><integer>6</integer>"),
                                 propertyList("<dict><key>Major Version</key><integer>6</integer></dict>").chopped(9)};
    for (const QByteArray& document : others) {
        CAPTURE(document.toStdString());
        CHECK_FALSE(readUpdateDescription(document));
    }
}
