#include "engine/movie/FileEngine.h"

namespace qm {

OSErr FileEngine::QTCopyMovieMetaData(Movie movie, QTMetaDataRef& metaData) {
    metaData = 0;
    const FileMovie* found = find(movie);
    if (!found) return kInvalidMovie;
    metaData = m_metaData.add(found->tags());
    return kNoErr;
}

OSErr FileEngine::QTMetaDataGetNextItem(QTMetaDataRef metaData, std::uint32_t storageFormat, QTMetaDataItem current,
                                        std::uint32_t keyFormat, QTMetaDataItem& next) {
    return m_metaData.nextItem(metaData, storageFormat, current, keyFormat, next);
}

OSErr FileEngine::QTMetaDataGetItemProperty(QTMetaDataRef metaData, QTMetaDataItem item, std::uint32_t propertyClass,
                                            std::uint32_t propertyId, std::size_t size, void* value,
                                            std::size_t& sizeUsed) {
    return m_metaData.itemProperty(metaData, item, propertyClass, propertyId, size, value, sizeUsed);
}

void FileEngine::QTMetaDataRelease(QTMetaDataRef metaData) {
    m_metaData.release(metaData);
}

}  // namespace qm
