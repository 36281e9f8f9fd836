#include "engine/api/MediaKinds.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <set>
#include <string>

#include "engine/media/FileKind.h"
#include "engine/media/MediaFiles.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::size_t kFileBytes = 64;

// A file that begins so, any byte of a mark being zero.
MediaKind kindOfFile(std::string begin) {
    std::replace(begin.begin(), begin.end(), '*', '\0');
    begin.resize(kFileBytes);
    const TemporaryFolder folder;
    const auto file = FileBytes::open(folder.write("file", {begin.begin(), begin.end()}));
    REQUIRE(file);
    return fileKind(*file.value());
}

std::vector<int> places(int FileExtension::*place) {
    std::vector<int> found;
    for (const MediaKindRow& row : mediaKinds()) {
        for (const FileExtension& extension : row.extensions) {
            if (extension.*place > 0) {
                found.push_back(extension.*place);
            }
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

}  // namespace

TEST_CASE("each kind has the row that is found by it") {
    for (const MediaKindRow& row : mediaKinds()) {
        CHECK(&rowOf(row.kind) == &row);
    }
    CHECK(rowOf(MediaKind::MovieFile).demuxer == "mov");
    CHECK(&rowOf(MediaKind::MovieFile) == &mediaKinds().back());
}

TEST_CASE("each mark that is long enough makes a file one of its kind") {
    for (const MediaKindRow& row : mediaKinds()) {
        if (row.marksAreShort) continue;
        for (const std::string_view mark : row.marks) {
            CAPTURE(mark);
            CHECK(kindOfFile(std::string(mark)) == row.kind);
        }
    }
}

TEST_CASE("the two kinds of AC-3 are told apart by the version behind their mark, and from others by the rest") {
    CHECK(kindOfFile({"\x0b\x77\0\0\x14\x40", 6}) == MediaKind::Ac3);
    CHECK(kindOfFile({"\x0b\x77\0\x3f\0\x80", 6}) == MediaKind::Eac3);
    CHECK(kindOfFile({"\x0b\x77\0\0\x14\xf8", 6}) == MediaKind::MpegAudio);
    CHECK(kindOfFile({"\x0b\x77\0\0\xff\x40", 6}) == MediaKind::MpegAudio);
}

TEST_CASE("a file without a mark, or cut within it, is taken for MPEG audio") {
    CHECK(kindOfFile("no mark at all") == MediaKind::MpegAudio);
    CHECK(kindOfFile("RIFF****WAVX") == MediaKind::MpegAudio);
    CHECK(kindOfFile("FORM") == MediaKind::MpegAudio);
}

TEST_CASE("behind a tag only the kinds count whose row says so") {
    const std::string tag("ID3\3\0\0\0\0\0\0", 10);
    for (const MediaKindRow& row : mediaKinds()) {
        if (row.marksAreShort) continue;
        for (const std::string_view mark : row.marks) {
            CAPTURE(mark);
            CHECK(kindOfFile(tag + std::string(mark)) == (row.marksBehindId3 ? row.kind : MediaKind::MpegAudio));
        }
    }
    CHECK(rowOf(MediaKind::Wave).marksBehindId3);
    CHECK_FALSE(rowOf(MediaKind::MovieFile).marksBehindId3);
}

TEST_CASE("an extension belongs to one kind and is found in small letters") {
    std::set<std::string_view> names;
    for (const MediaKindRow& row : mediaKinds()) {
        for (const FileExtension& extension : row.extensions) {
            CAPTURE(extension.name);
            CHECK(names.insert(extension.name).second);
            CHECK(findExtension(extension.name) == &extension);
        }
    }
    CHECK(findExtension("xyz") == nullptr);
    CHECK(findExtension("MP3") == nullptr);
}

TEST_CASE("the places in the lists of the panel and of the drop are taken once each, without a gap") {
    for (const auto place : {&FileExtension::panelPlace, &FileExtension::dropPlace}) {
        const std::vector<int> taken = places(place);
        for (std::size_t i = 0; i < taken.size(); ++i) {
            CHECK(taken[i] == static_cast<int>(i) + 1);
        }
    }
}

TEST_CASE("a kind that is offered anywhere has a name on the desktop, and no other has one") {
    for (const MediaKindRow& row : mediaKinds()) {
        CAPTURE(row.demuxer);
        CHECK((row.mimeTypes.empty() && row.otherMimeTypes.empty()) == row.extensions.empty());
    }
}
