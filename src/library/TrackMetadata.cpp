#include "library/TrackMetadata.h"

#include <QByteArrayView>
#include <array>

namespace qm {

namespace {

constexpr std::size_t kMostBytes = 255;

// Room for what is read of a key or a value and the zero byte behind it.
using ItemBuffer = std::array<char, kMostBytes + 1>;

bool readProperty(MetaDataToolbox& toolbox, QTMetaDataRef metaData, QTMetaDataItem item, std::uint32_t property,
                  ItemBuffer& buffer) {
    buffer.fill('\0');
    std::size_t used = 0;
    if (toolbox.QTMetaDataGetItemProperty(metaData, item, kPropertyClass_MetaDataItem, property, kMostBytes,
                                          buffer.data(), used) != kNoErr)
        return false;
    buffer[used] = '\0';
    return true;
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

// A cut may have gone through a character: without its beginning.
std::string_view withoutBrokenTail(std::string_view text) {
    std::size_t start = text.size();
    while (start > 0 && isContinuation(text[start - 1])) --start;
    if (start == 0 || static_cast<unsigned char>(text[start - 1]) < 0x80) return text;
    --start;
    const QByteArrayView tail(text.data() + start, static_cast<qsizetype>(text.size() - start));
    return tail.isValidUtf8() ? text : text.substr(0, start);
}

std::optional<QString> decodedValue(const ItemBuffer& buffer) {
    std::string_view text(buffer.data());
    if (text.size() == kMostBytes) text = withoutBrokenTail(text);
    const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
    if (!bytes.isValidUtf8()) return std::nullopt;
    return QString::fromUtf8(bytes);
}

}  // namespace

std::optional<QString> TrackMetadata::parseArtistMetaData(Movie movie) {
    return firstAccepted(movie, &TrackMetadata::parseMetaDataItemForArtist);
}

std::optional<QString> TrackMetadata::parseAlbumMetaData(Movie movie) {
    return firstAccepted(movie, &TrackMetadata::parseMetaDataItemForAlbum);
}

std::optional<QString> TrackMetadata::firstAccepted(Movie movie, ItemTest test) {
    QTMetaDataRef metaData = 0;
    if (m_toolbox.QTCopyMovieMetaData(movie, metaData) != kNoErr) return std::nullopt;
    std::optional<QString> text;
    QTMetaDataItem item = kQTMetaDataItemUninitialized;
    while (!text && m_toolbox.QTMetaDataGetNextItem(metaData, kQTMetaDataStorageFormatWildcard, item,
                                                    kQTMetaDataKeyFormatWildcard, item) == kNoErr)
        text = (this->*test)(metaData, item);
    m_toolbox.QTMetaDataRelease(metaData);
    return text;
}

std::optional<QString> TrackMetadata::parseMetaDataItemForArtist(QTMetaDataRef metaData, QTMetaDataItem item) {
    return valueIfKeyContains(metaData, item, kArtistLetters);
}

std::optional<QString> TrackMetadata::parseMetaDataItemForAlbum(QTMetaDataRef metaData, QTMetaDataItem item) {
    return valueIfKeyContains(metaData, item, kAlbumLetters);
}

std::optional<QString> TrackMetadata::valueIfKeyContains(QTMetaDataRef metaData, QTMetaDataItem item,
                                                         const TellingLetters& letters) {
    ItemBuffer key, value;
    if (!readProperty(m_toolbox, metaData, item, kQTMetaDataItemPropertyID_Key, key) ||
        !readProperty(m_toolbox, metaData, item, kQTMetaDataItemPropertyID_Value, value))
        return std::nullopt;
    if (!holdsLetters(key.data(), letters)) return std::nullopt;
    return decodedValue(value);
}

}  // namespace qm
