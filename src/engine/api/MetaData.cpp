#include "engine/api/MetaData.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "engine/api/QTMovie.h"

namespace qm {

OSErr MetaDataToolbox::QTCopyMovieMetaData(Movie movie, QTMetaDataRef& metaData) {
    metaData = 0;
    const QTMovie* found = m_movies.find(movie);
    if (!found) return kInvalidMovie;
    m_copies.emplace(++m_last, found->tags());
    metaData = m_last;
    return kNoErr;
}

const std::vector<Tag>* MetaDataToolbox::find(QTMetaDataRef metaData) const {
    const auto found = m_copies.find(metaData);
    return found == m_copies.end() ? nullptr : &found->second;
}

// Item n is the n-th of the list, counted from 1.
OSErr MetaDataToolbox::QTMetaDataGetNextItem(QTMetaDataRef metaData, std::uint32_t storageFormat,
                                             QTMetaDataItem current, std::uint32_t keyFormat,
                                             QTMetaDataItem& next) const {
    next = kQTMetaDataItemUninitialized;
    const std::vector<Tag>* tags = find(metaData);
    if (!tags) return kInvalidMetaData;
    if (storageFormat != kQTMetaDataStorageFormatWildcard) return kInvalidStorageFormat;
    if (keyFormat != kQTMetaDataKeyFormatWildcard) return kInvalidKeyFormat;
    if (current >= tags->size()) return current == tags->size() ? kNoMoreMetaDataItems : kInvalidMetaDataItem;
    next = current + 1;
    return kNoErr;
}

OSErr MetaDataToolbox::QTMetaDataGetItemProperty(QTMetaDataRef metaData, QTMetaDataItem item,
                                                 std::uint32_t propertyClass, std::uint32_t propertyId,
                                                 std::size_t size, void* value, std::size_t& sizeUsed) const {
    sizeUsed = 0;
    const std::vector<Tag>* tags = find(metaData);
    if (!tags) return kInvalidMetaData;
    if (item == kQTMetaDataItemUninitialized || item > tags->size()) return kInvalidMetaDataItem;
    const bool isKey = propertyId == kQTMetaDataItemPropertyID_Key;
    if (propertyClass != kPropertyClass_MetaDataItem || (!isKey && propertyId != kQTMetaDataItemPropertyID_Value))
        return kUnknownProperty;
    const Tag& tag = (*tags)[item - 1];
    const std::string& bytes = isKey ? tag.key : tag.value;
    sizeUsed = std::min(size, bytes.size());
    std::memcpy(value, bytes.data(), sizeUsed);
    return kNoErr;
}

}  // namespace qm
