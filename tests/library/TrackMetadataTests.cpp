#include "library/TrackMetadata.h"

#include "support/widgets/FakeMediaEngine.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

using Items = std::vector<MetaDataItem>;

std::optional<QString> artist(const std::string& key, const std::string& value) {
    return TrackMetadata::parseMetaDataItemForArtist({key, value});
}

std::optional<QString> album(const std::string& key, const std::string& value) {
    return TrackMetadata::parseMetaDataItemForAlbum({key, value});
}

struct OpenedMovie {
    explicit OpenedMovie(Items items) {
        engine.usual.metaData = std::move(items);
        movie = std::move(engine.movieWithFile("/music/one.m4a").value());
    }

    EventLog log;
    FakeMediaEngine engine{log};
    std::unique_ptr<QTMovie> movie;
    TrackMetadata metadata{engine};
};

}  // namespace

TEST_CASE("an artist's key contains ART or TRA anywhere, in capitals") {
    CHECK(artist("\xa9"
                 "ART",
                 "Ella") == "Ella");
    CHECK(artist("PARTS", "Ella") == "Ella");
    CHECK(artist("TRAx", "Ella") == "Ella");
    CHECK_FALSE(artist("art", "Ella"));
    CHECK_FALSE(artist("\xa9nam", "Ella"));
    CHECK_FALSE(artist("", "Ella"));
}

TEST_CASE("an album's key contains alb or bla anywhere, in small letters") {
    CHECK(album("\xa9"
                "alb",
                "Live") == "Live");
    CHECK(album("xblay", "Live") == "Live");
    CHECK_FALSE(album("ALB", "Live"));
    CHECK_FALSE(
        album("\xa9"
              "ART",
              "Live"));
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
    CHECK_FALSE(artist("ART", "El\xffla"));
    CHECK_FALSE(artist("ART", "Ella\xc3"));
    CHECK_FALSE(artist("ART", "\xff" + std::string(300, 'x')));
}

TEST_CASE("text ends at the first zero byte") {
    CHECK(artist("ART", std::string("Ella\0\xff", 6)) == "Ella");
    CHECK_FALSE(artist(std::string("x\0ART", 5), "Ella"));
}

TEST_CASE("the first matching item in the file's order wins, also an empty one") {
    OpenedMovie opened(Items{{"\xa9nam", "Song"},
                             {"PARTS", ""},
                             {"\xa9"
                              "ART",
                              "Ella"},
                             {"\xa9"
                              "alb",
                              "Live"},
                             {"alb", "Other"}});
    CHECK(opened.metadata.parseArtistMetaData(opened.movie->quickTimeMovie()) == "");
    CHECK(opened.metadata.parseAlbumMetaData(opened.movie->quickTimeMovie()) == "Live");
}

TEST_CASE("an item whose value cannot be read is passed over for the next") {
    OpenedMovie opened(Items{{"\xa9"
                              "ART",
                              "\xff"},
                             {"aART", "Ella"}});
    CHECK(opened.metadata.parseArtistMetaData(opened.movie->quickTimeMovie()) == "Ella");
}

TEST_CASE("a movie without such items, and no movie, have neither artist nor album") {
    OpenedMovie opened(Items{{"\xa9nam", "Song"}});
    CHECK_FALSE(opened.metadata.parseArtistMetaData(opened.movie->quickTimeMovie()));
    CHECK_FALSE(opened.metadata.parseAlbumMetaData(opened.movie->quickTimeMovie()));
    CHECK_FALSE(opened.metadata.parseArtistMetaData(0));
}
