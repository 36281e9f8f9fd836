#include <doctest/doctest.h>

#include "engine/media/tags/ReadTags.h"

using namespace qm;
using namespace qm::test;
using namespace std::string_literals;

namespace {

constexpr int kUnsynchronised = 0x80;
constexpr int kExtended = 0x40;

std::vector<Tag> tagsOfTag(const FileContent& tag) {
    return tagsOf(mp3WithTag(tag));
}

}  // namespace

TEST_CASE("artist, album, title and copyright of all three versions of ID3v2 have the movie's keys") {
    const std::vector<std::vector<std::string>> names = {
        {"TP1", "TAL", "TT2", "TCR"}, {"TPE1", "TALB", "TIT2", "TCOP"}, {"TPE1", "TALB", "TIT2", "TCOP"}};
    for (int version = 2; version <= 4; ++version) {
        CAPTURE(version);
        std::vector<FileContent> frames;
        const auto& used = names[static_cast<std::size_t>(version - 2)];
        for (std::size_t i = 0; i < used.size(); ++i) {
            frames.push_back(id3Frame(version, used[i], "\0value "s + std::to_string(i)));
        }
        const auto tags = tagsOfTag(id3Tag(version, frames));
        CHECK(firstValue(tags, kArtist) == "value 0");
        CHECK(firstValue(tags, kAlbum) == "value 1");
        CHECK(firstValue(tags, kTitle) == "value 2");
        CHECK(firstValue(tags, kCopyright) == "value 3");
    }
}

TEST_CASE("a track number and an album artist never have a key of an artist or an album") {
    const auto tags = tagsOfTag(id3Tag(3, {id3Frame(3, "TRCK",
                                                    "\0"
                                                    "7"s),
                                           id3Frame(3, "TPE2", "\0Various"s),
                                           id3Frame(3, "TRAK",
                                                    "\0"
                                                    "8"s),
                                           id3Frame(3, "PART", "\0x"s)}));
    CHECK(tags == std::vector<Tag>{{"trkn", "7"}, {"TPE2", "Various"}, {"----", "8"}});
}

TEST_CASE("every encoding of ID3v2 comes out as UTF-8") {
    const std::u16string text = u"Björk";
    const std::string wanted = "Bj\xc3\xb6rk";
    for (const std::string& body :
         {"\0Bj\xf6rk"s, "\1"s + utf16(text, false, true), "\1"s + utf16(text, true, true),
          "\1"s + utf16(text, false, false), "\1"s + utf16(text, true, false), "\2"s + utf16(text, true, false),
          "\3Bj\xc3\xb6rk"s, "\0Bj\xc3\xb6rk"s, "\3Bj\xf6rk"s}) {
        CHECK(firstValue(tagsOfTag(id3Tag(4, {id3Frame(4, "TPE1", body)})), kArtist) == wanted);
    }
}

TEST_CASE("the first of several artists is the first item") {
    const auto tags = tagsOfTag(id3Tag(3, {id3Frame(3, "TPE1", "\0One"s), id3Frame(3, "TPE1", "\0Two"s)}));
    CHECK(tags == std::vector<Tag>{{kArtist, "One"}, {kArtist, "Two"}});
}

TEST_CASE("frames that follow a large picture are found") {
    const std::string picture(400000, '\x11');
    CHECK(firstValue(tagsOfTag(id3Tag(3, {id3Frame(3, "APIC", picture), id3Frame(3, "TPE1", "\0Ella"s)})), kArtist) ==
          "Ella");
}

TEST_CASE("an unsynchronised tag of the older versions is put right as a whole") {
    const std::string name = "\1\xff\xfe\xe9\0\xff\0"s;  // UTF-16 with bytes that had to be separated
    const std::string picture(3000, '\xff');
    const auto plain = joined({id3Frame(3, "APIC", picture), id3Frame(3, "TPE1", name)});
    const auto stored = bytesOf(unsynchronised({plain.begin(), plain.end()}));
    CHECK(firstValue(tagsOfTag(id3Tag(3, {stored}, kUnsynchronised)), kArtist) == "\xc3\xa9\xc3\xbf");
}

TEST_CASE("an unsynchronised frame of the newest version is put right by itself") {
    const std::string name = "\1\xff\xfe\xe9\0\xff\0"s;
    const std::string stored = unsynchronised(name);
    const std::string length = {0, 0, 0, static_cast<char>(name.size())};
    CHECK(firstValue(tagsOfTag(id3Tag(4, {id3Frame(4, "TPE1", length + stored, 0x0003)}, kUnsynchronised)), kArtist) ==
          "\xc3\xa9\xc3\xbf");
}

TEST_CASE("extended headers, grouping bytes and the footer are passed over") {
    const FileContent older = Bytes().big(6, 4).repeat(0, 6).get();
    CHECK(firstValue(tagsOfTag(id3Tag(3, {older, id3Frame(3, "TPE1", "g\0Ella"s, 0x0020)}, kExtended)), kArtist) ==
          "Ella");
    const FileContent newer = Bytes().big(6, 4).big(1, 1).big(0, 1).get();
    CHECK(firstValue(tagsOfTag(id3Tag(4, {newer, id3Frame(4, "TPE1", "g\0Ella"s, 0x0040)}, kExtended)), kArtist) ==
          "Ella");
}

TEST_CASE("compressed and encrypted frames are left out, and what follows is read") {
    const auto tags = tagsOfTag(id3Tag(3, {id3Frame(3, "TPE1", "\0xxxx"s, 0x0080),
                                           id3Frame(3, "TPE1", "\0yyyy"s, 0x0040), id3Frame(3, "TPE1", "\0Ella"s)}));
    CHECK(tags == std::vector<Tag>{{kArtist, "Ella"}});
}

TEST_CASE("frame sizes of the newest version that were written in the older way are understood") {
    const std::string comment(300, 'c');
    Bytes wrong;
    wrong.text("COMM").big(comment.size(), 4).big(0, 2).text(comment);
    CHECK(firstValue(tagsOfTag(id3Tag(4, {wrong.get(), id3Frame(4, "TPE1", "\3Ella"s)})), kArtist) == "Ella");
}

TEST_CASE("names of the oldest version in a newer tag are understood") {
    CHECK(firstValue(tagsOfTag(id3Tag(3, {id3Frame(3, "TP1\0"s, "\0Ella"s)})), kArtist) == "Ella");
}

TEST_CASE("a tag cut off by the end of the file gives what is there") {
    auto file = id3Tag(3, {id3Frame(3, "TPE1", "\0Ella"s), id3Frame(3, "TALB", "\0Live at home"s)});
    file.resize(file.size() - 5);
    const auto tags = tagsOf(file);
    CHECK(firstValue(tags, kArtist) == "Ella");
    CHECK(firstValue(tags, kAlbum) == "Live at");
}

TEST_CASE("several tags in a row are read in their order, then what stands at the end of the file") {
    const auto file =
        joined({id3Tag(3, {id3Frame(3, "TPE1", "\0One"s)}), id3Tag(4, {id3Frame(4, "TPE1", "\3Two"s)}), mpegAudio(),
                apeTag({{"Artist", "Three"}, {"Track", "4"}, {"ALBUM", "Live"}}), id3v1Tag("Song", "Five", "")});
    CHECK(tagsOf(file) == std::vector<Tag>{{kArtist, "One"},
                                           {kArtist, "Two"},
                                           {kArtist, "Three"},
                                           {"trkn", "4"},
                                           {kAlbum, "Live"},
                                           {kTitle, "Song"},
                                           {kArtist, "Five"}});
}

TEST_CASE("an ID3v1 tag is text of an unknown encoding without the blanks that fill it") {
    const auto tags = tagsOf(joined({mpegAudio(), id3v1Tag("Song   ", "Bj\xf6rk", "Caf\xe9")}));
    CHECK(firstValue(tags, kTitle) == "Song");
    CHECK(firstValue(tags, kArtist) == "Bj\xc3\xb6rk");
    CHECK(firstValue(tags, kAlbum) == "Caf\xc3\xa9");
}

TEST_CASE("of several values in one frame the first counts") {
    CHECK(firstValue(tagsOfTag(id3Tag(4, {id3Frame(4, "TPE1", "\3One\0Two"s)})), kArtist) == "One");
}
