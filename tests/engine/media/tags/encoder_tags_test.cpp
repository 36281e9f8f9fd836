// Tags that another program wrote.
#include <doctest/doctest.h>

#include "engine/media/tags/ReadTags.h"

using namespace qm;
using namespace qm::test;

namespace {

const std::string kMeta =
    "-f lavfi -i sine=d=0.1 -metadata track=7 -metadata album_artist=Various -metadata title=Süß "
    "-metadata artist='Björk & Ella' -metadata album='Café «Ö»' -metadata copyright=© ";

}  // namespace

TEST_CASE("artist and album that another program wrote come back, in every kind of file that holds them") {
    const TemporaryFolder folder;
    for (const char* name : {"a.m4a", "a.mov", "a.mp3", "a.wav", "a.avi", "a.wma", "a.aiff"}) {
        CAPTURE(name);
        const std::string path = folder.file(name);
        const bool chooses = path.ends_with(".aiff");
        REQUIRE(encode(kMeta + (chooses ? "-write_id3v2 1" : ""), path));
        const auto tags = tagsOfFile(path);
        CHECK(firstValue(tags, kArtist) == "Björk & Ella");
        CHECK(firstValue(tags, kAlbum) == "Café «Ö»");
        CHECK(firstValue(tags, kTitle) == "Süß");
        REQUIRE(findCopyright(tags));
        CHECK(findCopyright(tags)->value == "©");
    }
}

TEST_CASE("ID3 of both versions from another program comes back") {
    const TemporaryFolder folder;
    for (const char* version : {"3", "4"}) {
        REQUIRE(encode(kMeta + "-id3v2_version " + version + " -write_id3v1 1", folder.file("a.mp3")));
        const auto tags = tagsOfFile(folder.file("a.mp3"));
        CHECK(firstValue(tags, kArtist) == "Björk & Ella");
        CHECK(firstValue(tags, kAlbum) == "Café «Ö»");
    }
}
