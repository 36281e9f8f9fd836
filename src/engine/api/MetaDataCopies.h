// The copies of tags that are in use: handles to lists of items. Main thread only.
#pragma once

#include <unordered_map>
#include <vector>

#include "engine/api/MetaData.h"

namespace qm {

class MetaDataCopies {
public:
    QTMetaDataRef add(std::vector<Tag> tags);
    void release(QTMetaDataRef metaData) { m_copies.erase(metaData); }
    std::size_t count() const { return m_copies.size(); }

    OSErr nextItem(QTMetaDataRef metaData, std::uint32_t storageFormat, QTMetaDataItem current, std::uint32_t keyFormat,
                   QTMetaDataItem& next) const;
    OSErr itemProperty(QTMetaDataRef metaData, QTMetaDataItem item, std::uint32_t propertyClass,
                       std::uint32_t propertyId, std::size_t size, void* value, std::size_t& sizeUsed) const;

private:
    const std::vector<Tag>* find(QTMetaDataRef metaData) const;

    std::unordered_map<QTMetaDataRef, std::vector<Tag>> m_copies;
    QTMetaDataRef m_last = 0;
};

}  // namespace qm
