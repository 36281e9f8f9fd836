// Any bytes as the tags of a file.
#include "engine/media/FileKind.h"
#include "engine/media/TextEncoding.h"
#include "engine/media/tags/TagFiles.h"
#include "engine/media/tags/Tags.h"
#include "fuzz/FuzzTarget.h"

using namespace qm;
using namespace qm::test;
using namespace std::string_literals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostTags = 20000, kLongestKey = 256, kLongestValue = 4096;
    const auto file = fileOf(data, size);
    const bool mayHoldRawText = fileKind(*file) == MediaKind::MovieFile;
    const std::vector<Tag> tags = readTags(*file);
    promise(tags.size() <= kMostTags);
    for (const Tag& tag : tags) {
        promise(tag.key.size() <= kLongestKey && tag.value.size() <= kLongestValue);
        promise(mayHoldRawText || isUtf8(tag.value));
    }
    const Tag* copyright = findCopyright(tags);
    promise(!copyright || isUtf8(copyright->value));
    return 0;
}

std::vector<FileContent> qm::test::fuzzSeeds() {
    const std::string mixed = "\1"s + utf16(u"Bj\u00f6rk", false, true);
    const auto tag = [&](int version, const char* artist, int flags) {
        return id3Tag(version, {id3Frame(version, artist, "\0Ella"s), id3Frame(version, artist, mixed)}, flags);
    };
    const std::vector<Named> values = {{"Artist", "Ella"}, {"album", "Live"}, {"WM/AlbumTitle", "Live"}};
    const FileContent info = infoList({{"IART", "Ella"}, {"IPRD", "Live"}});
    const auto name = [](const std::string& text) { return box("mdta", bytesOf(text)); };
    const FileContent keys = box("keys", joined({Bytes().big(0, 4).big(1, 4).get(), name("com.example.artist")}));
    const FileContent handler = box("hdlr", Bytes().repeat(0, 8).text("mdta").repeat(0, 13).get());
    const FileContent numbered = box("ilst", listItem("\0\0\0\1"s, "Ella"));
    return {
        mp3WithTag(tag(2, "TP1", 0x80)),
        mp3WithTag(tag(3, "TPE1", 0xc0)),
        mp3WithTag(tag(4, "TPE1", 0xc0)),
        joined({tag(3, "TPE1", 0), mpegAudio(), apeTag(values), id3v1Tag("Song", "Ella", "Live")}),
        waveWithChunks(info, riffChunk("id3 ", tag(3, "TPE1", 0))),
        riffChunk("RIFF", joined({bytesOf("AVI "), riffChunk("LIST", bytesOf("movi....")), info})),
        aiffWithChunks(joined({aiffChunk("NAME", bytesOf("Song")), aiffChunk("ID3 ", tag(4, "TPE1", 0))})),
        cafWithInfo(values),
        asfFile("Song", "Ella", values),
        movieFile(itemList({listItem("aART", "Ella"), freeItem("org.example", "PARTNER", "Joe")})),
        movieFile(userData({userText("\xa9nam", "Song"), box("albm", bytesOf("\0\0\0\0\0\0Live"s))})),
        movieFile(box("meta", joined({handler, keys, numbered}))),
    };
}
