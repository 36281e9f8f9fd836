// Tags of FLAC, Ogg, Matroska and WavPack files, written by the ffmpeg program.
#include <doctest/doctest.h>

#include <algorithm>

#include "../Encodings.h"
#include "engine/media/tags/ReadTags.h"

using namespace qm;
using namespace qm::test;

namespace {

std::string valueOf(const std::vector<Tag>& tags, const std::string& letters) {
    const auto found = std::find_if(tags.begin(), tags.end(),
                                    [&](const Tag& tag) { return tag.key.find(letters) != std::string::npos; });
    return found == tags.end() ? "" : found->value;
}

}  // namespace

TEST_CASE("artist and album of open formats are found by a movie's letters, and the track's number is neither") {
    const Encodings encodings;
    const std::string tagged =
        "SOURCE -metadata track=7/12 -metadata artist='J\xc3\xbcrgen' -metadata album=Nocturnes -metadata title=First ";
    for (const Encoded& encoded :
         {Encoded{tagged + "-c:a flac", "a.flac"}, Encoded{tagged + "-c:a libvorbis", "a.ogg"},
          Encoded{tagged + "-c:a libopus", "a.opus"}, Encoded{tagged + "-c:a flac", "flac.oga"},
          Encoded{tagged + "-c:a libopus", "a.webm"}, Encoded{tagged + "-c:a flac", "a.mka"},
          Encoded{tagged + "-c:a wavpack", "a.wv"}}) {
        CAPTURE(encoded.name);
        const auto media = openMedia(encodings.make(encoded));
        REQUIRE(media);
        const auto& tags = media.value().tags;
        CHECK(valueOf(tags, "ART") == "J\xc3\xbcrgen");
        CHECK(valueOf(tags, "alb") == "Nocturnes");
        CHECK(valueOf(tags, "TRA") == "");
        CHECK(valueOf(tags, "nam") == "First");
    }
}
