#include "engine/media/TextEncoding.h"

#include <doctest/doctest.h>

using namespace qm;

TEST_CASE("valid UTF-8 is told from what is not") {
    CHECK(isUtf8(""));
    CHECK(isUtf8("plain"));
    CHECK(isUtf8("\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80"));
    for (const char* wrong :
         {"\xe9", "\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80", "a\xc3", "\xff"}) {
        CAPTURE(wrong);
        CHECK_FALSE(isUtf8(wrong));
    }
}

TEST_CASE("a character cut short is dropped, a whole one stays") {
    CHECK(withoutBrokenTail("ab\xc3") == "ab");
    CHECK(withoutBrokenTail("ab\xf0\x9f\x98") == "ab");
    CHECK(withoutBrokenTail("ab\xc3\xa9") == "ab\xc3\xa9");
    CHECK(withoutBrokenTail("ab") == "ab");
    CHECK(withoutBrokenTail("") == "");
}

TEST_CASE("text that is not UTF-8 is taken for Windows-1252, of which Latin-1 is a part") {
    CHECK(utf8FromUnknown("Caf\xe9") == "Caf\xc3\xa9");
    CHECK(utf8FromUnknown("\x93hi\x94 \x80") == "\xe2\x80\x9chi\xe2\x80\x9d \xe2\x82\xac");
    CHECK(utf8FromUnknown("Caf\xc3\xa9") == "Caf\xc3\xa9");
}

TEST_CASE("old movie text that is not UTF-8 is Mac Roman") {
    CHECK(utf8FromUnknownMac("Caf\x8e \xa9") == "Caf\xc3\xa9 \xc2\xa9");
    CHECK(utf8FromUnknownMac("Caf\xc3\xa9") == "Caf\xc3\xa9");
}

TEST_CASE("UTF-16 follows its mark, else what is stated, else the place of its zero bytes") {
    using namespace std::string_literals;
    const std::string wanted = "\xc3\xa9g";
    CHECK(utf8FromUtf16("\xff\xfe\xe9\0g\0"s, Utf16Order::Big) == wanted);
    CHECK(utf8FromUtf16("\xfe\xff\0\xe9\0g"s, Utf16Order::Little) == wanted);
    CHECK(utf8FromUtf16("\0\xe9\0g"s, Utf16Order::Big) == wanted);
    CHECK(utf8FromUtf16("\0\xe9\0g"s) == wanted);
    CHECK(utf8FromUtf16("\xe9\0g\0"s) == wanted);
}

TEST_CASE("UTF-16 pairs are one character, and half a pair is the replacement character") {
    using namespace std::string_literals;
    CHECK(utf8FromUtf16("\xd8\x3d\xde\x00"s, Utf16Order::Big) == "\xf0\x9f\x98\x80");
    CHECK(utf8FromUtf16("\xd8\x3d\0g"s, Utf16Order::Big) == "\xef\xbf\xbdg");
    CHECK(utf8FromUtf16("\xde\x00"s, Utf16Order::Big) == "\xef\xbf\xbd");
    CHECK(utf8FromUtf16("\0g\0"s, Utf16Order::Big) == "g");  // half a unit at the end
}
