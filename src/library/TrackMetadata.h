// Artist and album of a movie, found in the tags of its file by the letters of their keys. Main thread only. What
// cannot be read is nothing, silently.
#pragma once

#include <QString>
#include <optional>

#include "engine/api/MediaEngine.h"

namespace qm {

class TrackMetadata {
public:
    explicit TrackMetadata(MediaEngine& engine) : m_engine(engine) {}

    // The first item in file order that the item test accepts.
    std::optional<QString> parseArtistMetaData(Movie movie);
    std::optional<QString> parseAlbumMetaData(Movie movie);

    // The value of an item whose key contains "ART" or "TRA" ("alb" or "bla"), cut after 255 bytes.
    static std::optional<QString> parseMetaDataItemForArtist(const MetaDataItem& item);
    static std::optional<QString> parseMetaDataItemForAlbum(const MetaDataItem& item);

private:
    MediaEngine& m_engine;
};

}  // namespace qm
