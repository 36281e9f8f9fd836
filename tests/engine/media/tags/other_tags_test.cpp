#include <doctest/doctest.h>

#include "engine/media/tags/ReadTags.h"

using namespace qm;
using namespace qm::test;
using namespace std::string_literals;

namespace {

const FileContent kId3 = id3Tag(3, {id3Frame(3, "TPE1", "\0Frame"s)});

}  // namespace

TEST_CASE("a wav file's list of information has the movie's keys, in the order of the file") {
    const auto tags = tagsOf(waveWithChunks(
        infoList({{"IPRT", "7"}, {"IPRD", "Live"}, {"IART", "Bj\xf6rk"}, {"INAM", "Caf\xc3\xa9"}, {"ICOP", "Mine"}}),
        {}));
    CHECK(
        tags ==
        std::vector<Tag>{
            {"IPRT", "7"}, {kAlbum, "Live"}, {kArtist, "Bj\xc3\xb6rk"}, {kTitle, "Caf\xc3\xa9"}, {kCopyright, "Mine"}});
}

TEST_CASE("a wav file's tags are found behind its sound, of either kind") {
    const auto tags = tagsOf(waveWithChunks({}, joined({riffChunk("id3 ", kId3), infoList({{"IART", "List"}})})));
    CHECK(tags == std::vector<Tag>{{kArtist, "Frame"}, {kArtist, "List"}});
}

TEST_CASE("chunks of an odd size are followed by a byte that belongs to none") {
    const auto tags =
        tagsOf(waveWithChunks(riffChunk("junk", {1, 2, 3}), infoList({{"INAM", "Song"}, {"IART", "Ella"}})));
    CHECK(firstValue(tags, kTitle) == "Song");
    CHECK(firstValue(tags, kArtist) == "Ella");
}

TEST_CASE("a wav file longer than its own sizes can say is walked by the sizes in front") {
    auto file = waveWithChunks(riffChunk("ds64", Bytes().little(0, 8).little(1000, 8).little(500, 8).get()),
                               infoList({{"IART", "Ella"}}));
    const std::string letters = "RF64";
    std::copy(letters.begin(), letters.end(), file.begin());
    const std::size_t dataSize = 36 + 32 + 4;
    for (std::size_t i = 0; i < 4; ++i) {
        file[dataSize + i] = 0xff;
    }
    CHECK(firstValue(tagsOf(file), kArtist) == "Ella");
}

TEST_CASE("an avi file's list of information is read") {
    const FileContent movie = riffChunk("LIST", Bytes().text("movi").repeat(0, 300).get());
    const FileContent chunks = joined({bytesOf("AVI "), movie, infoList({{"IART", "Ella"}})});
    CHECK(firstValue(tagsOf(riffChunk("RIFF", chunks)), kArtist) == "Ella");
}

TEST_CASE("an aiff file's texts and its ID3 tag are read, and its author is not taken for an artist") {
    const auto tags = tagsOf(aiffWithChunks(
        joined({aiffChunk("NAME", bytesOf("Caf\xe9")), aiffChunk("AUTH", bytesOf("Prosonic")),
                aiffChunk("(c) ", bytesOf("Mine")), aiffChunk("ID3 ", kId3), aiffChunk("ANNO", bytesOf("Note"))})));
    CHECK(tags == std::vector<Tag>{{kTitle, "Caf\xc3\xa9"},
                                   {"\xa9"
                                    "aut",
                                    "Prosonic"},
                                   {kCopyright, "Mine"},
                                   {kArtist, "Frame"},
                                   {"\xa9"
                                    "cmt",
                                    "Note"}});
}

TEST_CASE("a caf file's information is read, and an album artist is no album") {
    const auto tags = tagsOf(
        cafWithInfo({{"album artist", "Various"}, {"track number", "7"}, {"artist", "Ella"}, {"album", "Live"}}));
    CHECK(tags == std::vector<Tag>{{"----", "Various"}, {"track number", "7"}, {kArtist, "Ella"}, {kAlbum, "Live"}});
}

TEST_CASE("a wmv file's description and its further values are read") {
    const auto tags = tagsOf(
        asfFile("Song", "Ella", {{"WM/TrackNumber", "7"}, {"WM/AlbumArtist", "Various"}, {"WM/AlbumTitle", "Live"}}));
    CHECK(tags == std::vector<Tag>{{kTitle, "Song"},
                                   {kArtist, "Ella"},
                                   {"WM/TrackNumber", "7"},
                                   {"WM/AlbumArtist", "Various"},
                                   {kAlbum, "Live"}});
}

TEST_CASE("an ID3 tag in front of another kind of file is read before that file's own tags") {
    const auto tags = tagsOf(joined({kId3, waveWithChunks({}, infoList({{"IART", "List"}}))}));
    CHECK(tags == std::vector<Tag>{{kArtist, "Frame"}, {kArtist, "List"}});
}

TEST_CASE("files without tags, and files of no kind, have none") {
    CHECK(tagsOf(waveWithChunks({}, {})).empty());
    CHECK(tagsOf(mpegAudio()).empty());
    CHECK(tagsOf(bytesOf("neither sound nor picture")).empty());
    CHECK(tagsOf({}).empty());
}
