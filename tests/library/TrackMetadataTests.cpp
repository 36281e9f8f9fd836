#include "library/TrackMetadata.h"

#include "support/widgets/FakeMediaEngine.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

using Tags = std::vector<Tag>;

const std::string kArtist =
    "\xa9"
    "ART";
const std::string kAlbum =
    "\xa9"
    "alb";

struct OpenedMovie {
    explicit OpenedMovie(Tags tags) {
        engine.usual.tags = std::move(tags);
        movie = std::move(engine.movieWithFile("/music/one.m4a").value());
    }

    std::optional<QString> artist() { return metadata.parseArtistMetaData(movie->quickTimeMovie()); }
    std::optional<QString> album() { return metadata.parseAlbumMetaData(movie->quickTimeMovie()); }

    EventLog log;
    FakeMediaEngine engine{log};
    std::unique_ptr<QTMovie> movie;
    TrackMetadata metadata{engine.metaData};
};

std::optional<QString> artist(const std::string& key, const std::string& value) {
    return OpenedMovie(Tags{{key, value}}).artist();
}

std::optional<QString> album(const std::string& key, const std::string& value) {
    return OpenedMovie(Tags{{key, value}}).album();
}

}  // namespace

TEST_CASE("an artist's key contains ART or TRA anywhere, in capitals") {
    CHECK(artist(kArtist, "Ella") == "Ella");
    CHECK(artist("PARTS", "Ella") == "Ella");
    CHECK(artist("TRAx", "Ella") == "Ella");
    CHECK_FALSE(artist("art", "Ella"));
    CHECK_FALSE(artist("\xa9nam", "Ella"));
    CHECK_FALSE(artist("", "Ella"));
}

TEST_CASE("an album's key contains alb or bla anywhere, in small letters") {
    CHECK(album(kAlbum, "Live") == "Live");
    CHECK(album("xblay", "Live") == "Live");
    CHECK_FALSE(album("ALB", "Live"));
    CHECK_FALSE(album(kArtist, "Live"));
}

TEST_CASE("the order of the items decides, not which of the two letters their keys contain") {
    CHECK(OpenedMovie(Tags{{"TRAx", "Ella"}, {kArtist, "Billie"}}).artist() == "Ella");
    CHECK(OpenedMovie(Tags{{"xbla", "Live"}, {kAlbum, "Studio"}}).album() == "Live");
}

TEST_CASE("key and value are cut after 255 bytes") {
    CHECK(artist("ART", std::string(300, 'x')) == QString(255, 'x'));
    CHECK(artist(std::string(252, 'x') + "ART", "Ella") == "Ella");
    CHECK_FALSE(artist(std::string(253, 'x') + "ART", "Ella"));
}

TEST_CASE("a character that the cut breaks is dropped") {
    CHECK(artist("ART", std::string(254, 'x') + "\xc3\xbc") == QString(254, 'x'));
    CHECK(artist("ART", std::string(253, 'x') + "\xc3\xbc"
                                                "y") == QString(253, 'x') + QChar(0xfc));
    CHECK(artist("ART", std::string(253, 'x') + "\xf0\x9f\x98\x80") == QString(253, 'x'));
}

TEST_CASE("text that is not UTF-8 is nothing") {
    CHECK(artist("ART", "Bj\xc3\xb6rk") == QStringLiteral(u"Björk"));
    CHECK_FALSE(artist("ART", "El\xffla"));
    CHECK_FALSE(artist("ART", "Ella\xc3"));
    CHECK_FALSE(artist("ART", "\xff" + std::string(300, 'x')));
}

TEST_CASE("text ends at the first zero byte") {
    CHECK(artist("ART", std::string("Ella\0\xff", 6)) == "Ella");
    CHECK_FALSE(artist(std::string("x\0ART", 5), "Ella"));
}

TEST_CASE("the first matching item in the file's order wins, also an empty one") {
    OpenedMovie opened(Tags{{"\xa9nam", "Song"}, {"PARTS", ""}, {kArtist, "Ella"}, {kAlbum, "Live"}, {"alb", "Other"}});
    CHECK(opened.artist() == "");
    CHECK(opened.album() == "Live");
}

TEST_CASE("an item whose value is no text is passed over for the next") {
    CHECK(OpenedMovie(Tags{{kArtist, "\xff"}, {"aART", "Ella"}}).artist() == "Ella");
}

TEST_CASE("tags that cannot be copied give nothing") {
    OpenedMovie opened(Tags{{kArtist, "Ella"}, {kAlbum, "Live"}});
    const Movie handle = opened.movie->quickTimeMovie();
    opened.movie.reset();
    CHECK_FALSE(opened.metadata.parseArtistMetaData(handle));
    CHECK_FALSE(opened.metadata.parseAlbumMetaData(handle));
}

TEST_CASE("the copy of the tags is released, whether something was found or not") {
    OpenedMovie opened(Tags{{kArtist, "Ella"}});
    CHECK(opened.artist());
    CHECK_FALSE(opened.album());
    CHECK(opened.engine.metaData.copiesInUse() == 0);
}

TEST_CASE("a movie without such items, and no movie, have neither artist nor album") {
    OpenedMovie opened(Tags{{"\xa9nam", "Song"}});
    CHECK_FALSE(opened.artist());
    CHECK_FALSE(opened.album());
    CHECK_FALSE(opened.metadata.parseArtistMetaData(0));
}
