// The low-level calls on the tags of a movie's file, one item after the other as the file stores them. Main thread
// only. Nothing here fails for good: what cannot be read is an error code, and a copy that has been released is
// harmless.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "engine/api/FourCharCode.h"
#include "engine/api/MovieToolbox.h"
#include "engine/api/Tag.h"

namespace qm {

using QTMetaDataRef = std::uint32_t;   // a copy of a movie's tags; 0 is none
using QTMetaDataItem = std::uint64_t;  // one tag of a copy
inline constexpr QTMetaDataItem kQTMetaDataItemUninitialized = 0;
inline constexpr std::uint32_t kQTMetaDataStorageFormatWildcard = 0;
inline constexpr std::uint32_t kQTMetaDataKeyFormatWildcard = 0;

inline constexpr std::uint32_t kPropertyClass_MetaDataItem = fourCharCode("mdit");
inline constexpr std::uint32_t kQTMetaDataItemPropertyID_Key = fourCharCode("key ");
inline constexpr std::uint32_t kQTMetaDataItemPropertyID_Value = fourCharCode("valu");

inline constexpr OSErr kInvalidMetaData = -2173;
inline constexpr OSErr kInvalidMetaDataItem = -2174;
inline constexpr OSErr kInvalidStorageFormat = -2175;
inline constexpr OSErr kInvalidKeyFormat = -2176;
inline constexpr OSErr kNoMoreMetaDataItems = -2177;

class MetaDataToolbox {
public:
    explicit MetaDataToolbox(const MovieRegistry& movies) : m_movies(movies) {}

    // The caller releases the copy.
    OSErr QTCopyMovieMetaData(Movie movie, QTMetaDataRef& metaData);

    // The item after `current`, in the file's order; the first after kQTMetaDataItemUninitialized. All items are of
    // any storage format and any key: other formats than the wildcards are errors.
    OSErr QTMetaDataGetNextItem(QTMetaDataRef metaData, std::uint32_t storageFormat, QTMetaDataItem current,
                                std::uint32_t keyFormat, QTMetaDataItem& next) const;

    // Reads a property's first `size` bytes, or all of them if there are fewer, into `value`.
    OSErr QTMetaDataGetItemProperty(QTMetaDataRef metaData, QTMetaDataItem item, std::uint32_t propertyClass,
                                    std::uint32_t propertyId, std::size_t size, void* value,
                                    std::size_t& sizeUsed) const;

    void QTMetaDataRelease(QTMetaDataRef metaData) { m_copies.erase(metaData); }

    std::size_t copiesInUse() const { return m_copies.size(); }

private:
    const std::vector<Tag>* find(QTMetaDataRef metaData) const;

    const MovieRegistry& m_movies;
    std::unordered_map<QTMetaDataRef, std::vector<Tag>> m_copies;
    QTMetaDataRef m_last = 0;
};

}  // namespace qm
