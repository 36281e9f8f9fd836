#include <doctest/doctest.h>

#include "engine/media/tags/ReadTags.h"

using namespace qm;
using namespace qm::test;
using namespace std::string_literals;

TEST_CASE("items of a movie keep their raw keys and the order of the file") {
    const auto tags = tagsOf(movieFile(
        itemList({listItem("aART", "Various"), listItem(kAlbum, "Live"), listItem(kArtist, "Ella"),
                  listItem("trkn", "\0\0\0\7"s, 0), listItem(kArtist, "Billie"), listItem("zzzz", "unknown")})));
    CHECK(tags == std::vector<Tag>{{"aART", "Various"},
                                   {kAlbum, "Live"},
                                   {kArtist, "Ella"},
                                   {"trkn", "\0\0\0\7"s},
                                   {kArtist, "Billie"},
                                   {"zzzz", "unknown"}});
}

TEST_CASE("an item in UTF-16 comes out as UTF-8, one that is wrongly called UTF-8 as it is") {
    const auto tags = tagsOf(movieFile(itemList({listItem(kArtist, "\0\xe9"s, 2), listItem(kAlbum, "Caf\xe9")})));
    CHECK(firstValue(tags, kArtist) == "\xc3\xa9");
    CHECK(firstValue(tags, kAlbum) == "Caf\xe9");
}

TEST_CASE("a free item's name is part of its key, but for the number of a track") {
    const auto tags = tagsOf(
        movieFile(itemList({freeItem("org.example", "PARTNER", "Joe"), freeItem("org.example", "TRACKTOTAL", "12")})));
    CHECK(tags == std::vector<Tag>{{"----:org.example:PARTNER", "Joe"}, {"----:org.example", "12"}});
}

TEST_CASE("user data of a movie is read in its order, in every language") {
    const FileContent twice =
        box(kTitle, Bytes().big(3, 2).big(0, 2).text("One").big(3, 2).big(11, 2).text("Zwo").get());
    const auto tags = tagsOf(movieFile(userData({userText("\xa9wrt", "Writer"), twice, userText(kArtist, "Ella")})));
    CHECK(tags == std::vector<Tag>{{"\xa9wrt", "Writer"}, {kTitle, "One"}, {kTitle, "Zwo"}, {kArtist, "Ella"}});
}

TEST_CASE("user data with a language of the old system is Mac Roman unless it is UTF-8") {
    const auto tags = tagsOf(movieFile(userData({userText(kArtist, "Bj\x9ark"), userText(kAlbum, "Bj\xc3\xb6rk"),
                                                 userText(kTitle, "\xfe\xff\0\xf6"s, 0x55c4)})));
    CHECK(firstValue(tags, kArtist) == "Bj\xc3\xb6rk");
    CHECK(firstValue(tags, kAlbum) == "Bj\xc3\xb6rk");
    CHECK(firstValue(tags, kTitle) == "\xc3\xb6");
}

TEST_CASE("user data behind a version and a language is read") {
    const FileContent album = box("albm", Bytes().big(0, 4).big(0x55c4, 2).text("Live\0\5"s).get());
    const FileContent notice = box("cprt", Bytes().big(0, 4).big(0x55c4, 2).text("\xfe\xff\0\xa9"s).get());
    const auto tags = tagsOf(movieFile(userData({album, notice})));
    CHECK(tags == std::vector<Tag>{{"albm", "Live"}, {"cprt", "\xc2\xa9"}});
}

TEST_CASE("a meta box without a version is read too") {
    const FileContent handler = box("hdlr", Bytes().repeat(0, 8).text("mdir").repeat(0, 13).get());
    const FileContent meta = box("meta", joined({handler, box("ilst", listItem(kArtist, "Ella"))}));
    CHECK(firstValue(tagsOf(movieFile(meta)), kArtist) == "Ella");
}

TEST_CASE("items that refer to names have the key of that field") {
    const auto name = [](const std::string& text) { return box("mdta", bytesOf(text)); };
    const FileContent keys = box("keys", joined({Bytes().big(0, 4).big(3, 4).get(), name("com.example.media.software"),
                                                 name("com.example.media.artist"), name("com.example.media.album")}));
    const auto item = [](std::uint8_t number, const std::string& value) {
        return listItem(std::string{0, 0, 0, static_cast<char>(number)}, value);
    };
    const FileContent list = box("ilst", joined({item(3, "Live"), item(2, "Ella"), item(1, "Camera"), item(9, "?")}));
    const FileContent handler = box("hdlr", Bytes().repeat(0, 8).text("mdta").repeat(0, 13).get());
    const auto tags = tagsOf(movieFile(box("meta", joined({handler, keys, list}))));
    CHECK(tags == std::vector<Tag>{{kAlbum, "Live"}, {kArtist, "Ella"}, {"software", "Camera"}, {"\0\0\0\x09"s, "?"}});
}

TEST_CASE("what a single track says of itself is not the movie's") {
    CHECK(tagsOf(movieFile(box("trak", userData({userText(kArtist, "Ella")})))).empty());
}

TEST_CASE("the copyright is the first that is text") {
    const auto tags = tagsOf(movieFile(joined(
        {itemList({listItem("cprt", "\xff"), listItem("cprt", "Mine")}), userData({userText(kCopyright, "Old")})})));
    REQUIRE(findCopyright(tags));
    CHECK(findCopyright(tags)->value == "Mine");
    CHECK_FALSE(findCopyright({}));
}
