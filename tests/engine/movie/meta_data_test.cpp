#include <doctest/doctest.h>

#include <array>

#include "engine/api/MetaData.h"
#include "engine/media/tags/ReadTags.h"
#include "engine/movie/FileEngine.h"

using namespace qm;
using namespace qm::test;
using namespace std::string_literals;

namespace {

constexpr std::uint32_t kAny = kQTMetaDataStorageFormatWildcard;

struct OpenedFile {
    explicit OpenedFile(const FileContent& content) {
        auto opened = engine.movieWithFile(folder.write("song", content));
        REQUIRE(opened);
        movie = std::move(opened.value());
    }

    QTMetaDataItem after(QTMetaDataRef metaData, QTMetaDataItem item) {
        QTMetaDataItem next = 0;
        return toolbox.QTMetaDataGetNextItem(metaData, kAny, item, kAny, next) == kNoErr ? next : 0;
    }

    std::string property(QTMetaDataRef metaData, QTMetaDataItem item, std::uint32_t id, std::size_t size = 255) {
        std::array<char, 256> buffer{};
        std::size_t used = 0;
        CHECK(toolbox.QTMetaDataGetItemProperty(metaData, item, kPropertyClass_MetaDataItem, id, size, buffer.data(),
                                                used) == kNoErr);
        return {buffer.data(), used};
    }

    TemporaryFolder folder;
    MovieRegistry movies;
    FileEngine engine{movies, openNullOutput};
    MetaDataToolbox toolbox{movies};
    std::unique_ptr<QTMovie> movie;
};

FileContent taggedWave() {
    return waveWithChunks({}, infoList({{"INAM", "Song"}, {"IART", std::string(300, 'x')}, {"ICOP", "Mine"}}));
}

}  // namespace

TEST_CASE("the items of a file are listed in order and read by property") {
    OpenedFile opened(taggedWave());
    QTMetaDataRef metaData = 0;
    REQUIRE(opened.toolbox.QTCopyMovieMetaData(opened.movie->quickTimeMovie(), metaData) == kNoErr);
    const QTMetaDataItem title = opened.after(metaData, kQTMetaDataItemUninitialized);
    const QTMetaDataItem artist = opened.after(metaData, title);
    CHECK(opened.property(metaData, title, kQTMetaDataItemPropertyID_Key) == kTitle);
    CHECK(opened.property(metaData, title, kQTMetaDataItemPropertyID_Value) == "Song");
    CHECK(opened.property(metaData, artist, kQTMetaDataItemPropertyID_Value) == std::string(255, 'x'));
    CHECK(opened.property(metaData, artist, kQTMetaDataItemPropertyID_Value, 3) == "xxx");
    CHECK(opened.after(metaData, opened.after(metaData, artist)) == kQTMetaDataItemUninitialized);
}

TEST_CASE("a copy of the tags outlives its movie and ends with its release") {
    OpenedFile opened(taggedWave());
    QTMetaDataRef metaData = 0;
    const Movie handle = opened.movie->quickTimeMovie();
    REQUIRE(opened.toolbox.QTCopyMovieMetaData(handle, metaData) == kNoErr);
    opened.movie.reset();
    CHECK(opened.property(metaData, 1, kQTMetaDataItemPropertyID_Value) == "Song");
    opened.toolbox.QTMetaDataRelease(metaData);
    QTMetaDataItem next = 0;
    CHECK(opened.toolbox.QTMetaDataGetNextItem(metaData, kAny, 0, kAny, next) == kInvalidMetaData);
    CHECK(opened.toolbox.QTCopyMovieMetaData(handle, metaData) == kInvalidMovie);
    CHECK(metaData == 0);
}

TEST_CASE("items and properties that do not exist are errors") {
    OpenedFile opened(taggedWave());
    QTMetaDataRef metaData = 0;
    REQUIRE(opened.toolbox.QTCopyMovieMetaData(opened.movie->quickTimeMovie(), metaData) == kNoErr);
    QTMetaDataItem next = 0;
    CHECK(opened.toolbox.QTMetaDataGetNextItem(metaData, kAny, 3, kAny, next) == kNoMoreMetaDataItems);
    CHECK(opened.toolbox.QTMetaDataGetNextItem(metaData, kAny, 99, kAny, next) == kInvalidMetaDataItem);
    CHECK(opened.toolbox.QTMetaDataGetNextItem(metaData, 1, 0, kAny, next) == kInvalidStorageFormat);
    CHECK(opened.toolbox.QTMetaDataGetNextItem(metaData, kAny, 0, 1, next) == kInvalidKeyFormat);
    char byte = 0;
    std::size_t used = 0;
    const auto status = [&](QTMetaDataItem item, std::uint32_t kind, std::uint32_t id) {
        return opened.toolbox.QTMetaDataGetItemProperty(metaData, item, kind, id, 1, &byte, used);
    };
    CHECK(status(0, kPropertyClass_MetaDataItem, kQTMetaDataItemPropertyID_Key) == kInvalidMetaDataItem);
    CHECK(status(4, kPropertyClass_MetaDataItem, kQTMetaDataItemPropertyID_Key) == kInvalidMetaDataItem);
    CHECK(status(1, kPropertyClass_MetaDataItem, fourCharCode("data")) == kUnknownProperty);
    CHECK(status(1, kQTPropertyClass_Audio, kQTMetaDataItemPropertyID_Key) == kUnknownProperty);
}

TEST_CASE("a movie's copyright is the file's, up to the first zero byte; its data size is the file's") {
    const FileContent content = taggedWave();
    CHECK(OpenedFile(content).movie->copyrightAttribute() == "Mine");
    CHECK(OpenedFile(content).movie->dataSizeAttribute() == static_cast<std::int64_t>(content.size()));
    CHECK_FALSE(OpenedFile(waveWithChunks({}, {})).movie->copyrightAttribute());
}
