// Tags that lie about themselves. None of these may crash, hang or grow; what can be read is.
#include <doctest/doctest.h>

#include "engine/media/TextEncoding.h"
#include "engine/media/tags/ReadTags.h"

using namespace qm;
using namespace qm::test;
using namespace std::string_literals;

namespace {

constexpr int kMany = 10000;

FileContent repeated(const FileContent& content, int times) {
    Bytes all;
    for (int i = 0; i < times; ++i) {
        all.add(content);
    }
    return all.get();
}

std::size_t bytesIn(const std::vector<Tag>& tags) {
    std::size_t bytes = 0;
    for (const Tag& tag : tags) {
        bytes += tag.key.size() + tag.value.size();
    }
    return bytes;
}

void writeSize(FileContent& file, std::size_t at, std::uint32_t size) {
    for (std::size_t i = 0; i < 4; ++i) {
        file[at + i] = static_cast<std::uint8_t>(size >> (24 - 8 * i));
    }
}

}  // namespace

TEST_CASE("an artist behind ten thousand items is found in every kind of file") {
    const FileContent frames = repeated(id3Frame(3, "TIT2", "\0Song"s), kMany);
    const std::vector<Named> many(kMany, Named{"INAM", "Song"});
    std::vector<Named> info = many;
    info.push_back({"IART", "Ella"});
    std::vector<Named> values(kMany, Named{"title", "Song"});
    values.push_back({"Artist", "Ella"});
    const std::vector<FileContent> files = {
        mp3WithTag(id3Tag(3, {frames, id3Frame(3, "TPE1", "\0Ella"s)})),
        waveWithChunks(infoList(info), {}),
        aiffWithChunks(joined({repeated(aiffChunk("ANNO", bytesOf("Note")), kMany),
                               aiffChunk("ID3 ", id3Tag(3, {id3Frame(3, "TPE1", "\0Ella"s)}))})),
        cafWithInfo(values),
        asfFile("Song", "", values),
        joined({mpegAudio(), apeTag(values)}),
        movieFile(itemList({repeated(listItem(kTitle, "Song"), kMany), listItem(kArtist, "Ella")})),
        movieFile(userData({repeated(userText(kTitle, "Song"), kMany), userText(kArtist, "Ella")})),
    };
    for (const FileContent& file : files) {
        CHECK(firstValue(tagsOf(file), kArtist) == "Ella");
    }
}

TEST_CASE("a million items and items of megabytes do not grow into memory") {
    const FileContent small = movieFile(itemList({repeated(listItem(kTitle, "x"), 1000000)}));
    CHECK(tagsOf(small).size() <= 20000);
    const std::string text(1 << 20, 't');
    const FileContent large = movieFile(itemList({repeated(listItem(kTitle, text), 20)}));
    CHECK(bytesIn(tagsOf(large)) <= 20 * 4200);
    const FileContent frames = id3Tag(3, {repeated(id3Frame(3, "TIT2", "\0"s + text), 20)});
    CHECK(bytesIn(tagsOf(mp3WithTag(frames))) <= 20 * 4200);
}

TEST_CASE("sizes of four gigabytes end with the file") {
    FileContent frame = id3Frame(3, "TPE1", "\0Ella"s);
    writeSize(frame, 4, 0xffffffff);
    CHECK(firstValue(tagsOf(id3Tag(3, {frame})), kArtist) == "Ella");

    FileContent item = listItem(kArtist, "Ella");
    writeSize(item, 0, 0xffffffff);
    writeSize(item, 8, 0xfffffff0);
    CHECK(firstValue(tagsOf(movieFile(itemList({item}))), kArtist) == "Ella");

    FileContent chunk = aiffChunk("NAME", bytesOf("Song"));
    writeSize(chunk, 4, 0xffffffff);
    CHECK(firstValue(tagsOf(aiffWithChunks(chunk)), kTitle) == "Song");

    FileContent longBox = Bytes().big(1, 4).text("moov").big(0xffffffffffffffff, 8).get();
    CHECK(tagsOf(joined({box("ftyp", bytesOf("M4A ")), longBox})).empty());
}

TEST_CASE("boxes within boxes without end are not followed") {
    FileContent nested = userText(kArtist, "Ella");
    for (int i = 0; i < 2000; ++i) {
        nested = box(i % 2 == 0 ? "meta" : "udta", nested);
    }
    CHECK(tagsOf(movieFile(nested)).empty());
    FileContent list = listItem(kArtist, "Ella");
    for (int i = 0; i < 2000; ++i) {
        list = box("ilst", list);
    }
    CHECK(tagsOf(movieFile(itemList({list}))).empty());
}

TEST_CASE("tags of no size, sizes of zero and counts that are wrong come to an end") {
    tagsOf(id3Tag(3, {}));
    CHECK(tagsOf(mp3WithTag(id3Tag(3, {repeated(id3Frame(3, "PRIV", ""), 300000)}))).empty());
    tagsOf(movieFile(box("udta", repeated(Bytes().big(0, 4).text("udta").get(), kMany))));
    tagsOf(repeated(id3Tag(4, {}), 3000));
    const FileContent emptyObjects = repeated(Bytes().repeat(0, 16).little(24, 8).get(), 100000);
    tagsOf(joined({bytesOf("\x30\x26\xb2\x75\x8e\x66\xcf\x11\xa6\xd9\x00\xaa\x00\x62\xce\x6c"s),
                   Bytes().little(0xffffffffffffffff, 8).little(1, 4).little(0, 2).get(), emptyObjects}));
}

TEST_CASE("a tag that says it is unsynchronised for hundreds of megabytes is given up") {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.mp3", Bytes()
                                                       .text("ID3")
                                                       .big(3, 1)
                                                       .big(0, 1)
                                                       .big(0x80, 1)
                                                       .big(0x7f7f7f7f, 4)
                                                       .text("APIC")
                                                       .big(0xfffffff, 4)
                                                       .big(0, 2)
                                                       .get());
    std::filesystem::resize_file(path, 300 << 20);  // zeros that take no space
    CHECK(tagsOfFile(path).empty());
}

TEST_CASE("many tags that have to be looked at byte by byte are given up together") {
    const FileContent part = Bytes().text("APIC").big(2 << 20, 4).big(0, 2).repeat(0, 2 << 20).get();
    FileContent tag = id3Tag(3, {part}, 0x80);
    std::vector<FileContent> chunks(12, riffChunk("id3 ", tag));
    chunks.push_back(infoList({{"IART", "Ella"}}));
    CHECK(tagsOf(waveWithChunks({}, joined(chunks))).empty());
    chunks.erase(chunks.begin(), chunks.begin() + 8);
    CHECK(firstValue(tagsOf(waveWithChunks({}, joined(chunks))), kArtist) == "Ella");
}

TEST_CASE("chunks far apart in a huge file come to an end") {
    const TemporaryFolder folder;
    const std::string path =
        folder.write("a.wav", Bytes().text("RIFF").little(4, 4).text("WAVE").text("junk").little(0xfffffff0, 4).get());
    std::filesystem::resize_file(path, std::uintmax_t{40} << 30);
    CHECK(tagsOfFile(path).empty());
}

TEST_CASE("whatever the bytes are, the tags of all but movie files are valid UTF-8") {
    std::string every;
    for (int i = 1; i < 256; ++i) {
        every += static_cast<char>(i);
    }
    const std::string reversed(every.rbegin(), every.rend());
    for (const std::string& text : {every, reversed, "\xd8\x00\xdc"s, "\xff\xfe\x00\xd8"s}) {
        std::vector<FileContent> files = {waveWithChunks(infoList({{"IART", text}}), {}),
                                          cafWithInfo({{"artist", text}}),
                                          joined({mpegAudio(), apeTag({{"Artist", text}})})};
        for (const char encoding : {'\0', '\1', '\2', '\3', '\7'}) {
            files.push_back(mp3WithTag(id3Tag(3, {id3Frame(3, "TPE1", encoding + text)})));
        }
        for (const FileContent& file : files) {
            const auto tags = tagsOf(file);
            CHECK_FALSE(tags.empty());
            for (const Tag& tag : tags) {
                CHECK(isUtf8(tag.value));
            }
        }
    }
}
