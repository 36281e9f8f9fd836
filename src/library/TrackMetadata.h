// Artist and album of a movie, found in the tags of its file by the letters of their keys. Main thread only. What
// cannot be read is nothing, silently.
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "engine/api/MetaData.h"
#include "engine/api/TagKeys.h"

namespace qm {

class TrackMetadata {
public:
    explicit TrackMetadata(MetaDataToolbox& toolbox) : m_toolbox(toolbox) {}

    // What the first item in file order gives that gives anything.
    std::optional<QString> parseArtistMetaData(Movie movie);
    std::optional<QString> parseAlbumMetaData(Movie movie);

    // The value of an item whose key holds the letters of an artist (an album).
    std::optional<QString> parseMetaDataItemForArtist(QTMetaDataRef metaData, QTMetaDataItem item);
    std::optional<QString> parseMetaDataItemForAlbum(QTMetaDataRef metaData, QTMetaDataItem item);

private:
    using ItemTest = std::optional<QString> (TrackMetadata::*)(QTMetaDataRef, QTMetaDataItem);
    std::optional<QString> firstAccepted(Movie movie, ItemTest test);
    std::optional<QString> valueIfKeyContains(QTMetaDataRef metaData, QTMetaDataItem item,
                                              const TellingLetters& letters);

    MetaDataToolbox& m_toolbox;
};

}  // namespace qm
