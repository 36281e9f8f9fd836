#include "library/TrackMetadata.h"

#include <QByteArrayView>
#include <string_view>

namespace qm {

namespace {

constexpr std::size_t kItemBytes = 255;

// At most 255 bytes, ending at the first zero byte.
std::string_view itemText(std::string_view bytes) {
    bytes = bytes.substr(0, kItemBytes);
    return bytes.substr(0, bytes.find('\0'));
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

std::optional<QString> itemValue(const std::string& value) {
    std::string_view text = itemText(value);
    if (text.size() == kItemBytes && value.size() > kItemBytes) text = withoutBrokenTail(text);
    const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
    if (!bytes.isValidUtf8()) return std::nullopt;
    return QString::fromUtf8(bytes);
}

std::optional<QString> valueIfKeyContains(const MetaDataItem& item, std::string_view letters,
                                          std::string_view reversed) {
    const std::string_view key = itemText(item.key);
    if (key.find(letters) == key.npos && key.find(reversed) == key.npos) return std::nullopt;
    return itemValue(item.value);
}

template <typename Test>
std::optional<QString> firstAccepted(const std::vector<MetaDataItem>& items, Test test) {
    for (const MetaDataItem& item : items) {
        if (auto text = test(item)) return text;
    }
    return std::nullopt;
}

}  // namespace

std::optional<QString> TrackMetadata::parseMetaDataItemForArtist(const MetaDataItem& item) {
    return valueIfKeyContains(item, "ART", "TRA");
}

std::optional<QString> TrackMetadata::parseMetaDataItemForAlbum(const MetaDataItem& item) {
    return valueIfKeyContains(item, "alb", "bla");
}

std::optional<QString> TrackMetadata::parseArtistMetaData(Movie movie) {
    return firstAccepted(m_engine.QTCopyMovieMetaData(movie), parseMetaDataItemForArtist);
}

std::optional<QString> TrackMetadata::parseAlbumMetaData(Movie movie) {
    return firstAccepted(m_engine.QTCopyMovieMetaData(movie), parseMetaDataItemForAlbum);
}

}  // namespace qm
