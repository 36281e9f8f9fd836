#include "engine/media/tags/AsfTags.h"

#include <algorithm>
#include <array>
#include <optional>

#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

constexpr int kMostObjects = 10000;
constexpr std::int64_t kObjectHeader = 24;  // identifier and size
constexpr std::int64_t kHeaderObject = 30;  // with its count of objects
constexpr std::int64_t kExtensionObject = 46;
constexpr std::int64_t kRecordWork = 64;  // of passing over a value, in bytes looked at
constexpr int kUnicodeText = 0;           // type of a value

// The first eight bytes of an object's identifier tell these apart.
constexpr std::uint64_t kContentDescription = 0x3326b2758e66cf11;
constexpr std::uint64_t kExtendedDescription = 0x40a4d0d207e3d211;
constexpr std::uint64_t kHeaderExtension = 0xb503bf5f2ea9cf11;
constexpr std::uint64_t kMetadata = 0xeacbf8c5af5b7748;
constexpr std::uint64_t kMetadataLibrary = 0x941c23449894d149;

class AsfReader {
public:
    AsfReader(const FileBytes& file, TagList& tags) : m_bytes(file), m_tags(tags) {}

    void readObjects(std::int64_t position, std::int64_t end) {
        while (position + kObjectHeader <= end && ++m_objects <= kMostObjects && !m_tags.isFull()) {
            const std::uint8_t* p = m_bytes.at(position, kObjectHeader);
            const std::uint64_t size = p ? littleEndian64(p + 16) : 0;
            if (size < static_cast<std::uint64_t>(kObjectHeader)) {
                return;
            }
            const bool whole = size <= static_cast<std::uint64_t>(end - position);
            const std::int64_t objectEnd = whole ? position + static_cast<std::int64_t>(size) : end;
            readObject(bigEndian64(p), position, objectEnd);
            position = objectEnd;
        }
    }

private:
    void readObject(std::uint64_t identifier, std::int64_t position, std::int64_t end) {
        if (identifier == kContentDescription) {
            readDescription(position + kObjectHeader, end);
        } else if (identifier == kExtendedDescription) {
            readNamedValues(position + kObjectHeader, end);
        } else if (identifier == kMetadata || identifier == kMetadataLibrary) {
            readRecords(position + kObjectHeader, end);
        } else if (identifier == kHeaderExtension && !m_inExtension) {
            m_inExtension = true;
            readObjects(position + kExtensionObject, end);
            m_inExtension = false;
        }
    }

    std::optional<std::uint16_t> number(std::int64_t position, std::int64_t end) {
        const std::uint8_t* p = position + 2 <= end ? m_bytes.at(position, 2) : nullptr;
        return p ? std::optional(littleEndian16(p)) : std::nullopt;
    }

    std::string text(std::int64_t position, std::int64_t bytes, std::int64_t end) {
        const std::string stored = m_bytes.text(position, std::min(end, position + bytes), 2 * TagList::kLongestText);
        return std::string(untilZero(utf8FromUtf16(stored, Utf16Order::Little)));
    }

    // Five texts whose lengths stand in front.
    void readDescription(std::int64_t position, std::int64_t end) {
        constexpr std::array kNames = {"title", "artist", "copyright", "description", "rating"};
        std::int64_t value = position + 2 * static_cast<std::int64_t>(kNames.size());
        for (const char* name : kNames) {
            const auto bytes = number(position, end);
            if (!bytes) {
                return;
            }
            if (*bytes > 2) {  // nothing, or nothing but its zero character, is a field that is not there
                m_tags.addForeign(name, text(value, *bytes, end));
            }
            value += *bytes;
            position += 2;
        }
    }

    void readNamedValues(std::int64_t position, std::int64_t end) {
        const auto count = number(position, end);
        position += 2;
        for (int i = 0; count && i < *count && !m_tags.isFull(); ++i) {
            const auto nameBytes = number(position, end);
            const auto type = nameBytes ? number(position + 2 + *nameBytes, end) : std::nullopt;
            const auto valueBytes = type ? number(position + 4 + *nameBytes, end) : std::nullopt;
            if (!valueBytes) {
                return;
            }
            m_tags.spend(kRecordWork);
            const std::int64_t value = position + 6 + *nameBytes;
            if (*type == kUnicodeText) {
                m_tags.addForeign(text(position + 2, *nameBytes, end), text(value, *valueBytes, end));
            }
            position = value + *valueBytes;
        }
    }

    // As above, with a language and a stream in front; only what concerns the whole file counts.
    void readRecords(std::int64_t position, std::int64_t end) {
        constexpr std::int64_t kRecordHeader = 12;
        const auto count = number(position, end);
        position += 2;
        for (int i = 0; count && i < *count && !m_tags.isFull(); ++i) {
            const std::uint8_t* p = position + kRecordHeader <= end ? m_bytes.at(position, kRecordHeader) : nullptr;
            if (!p) {
                return;
            }
            m_tags.spend(kRecordWork);
            const bool isText = littleEndian16(p + 2) == 0 && littleEndian16(p + 6) == kUnicodeText;
            const std::int64_t nameBytes = littleEndian16(p + 4);
            const std::int64_t valueBytes = littleEndian32(p + 8);
            const std::int64_t value = position + kRecordHeader + nameBytes;
            if (isText) {
                m_tags.addForeign(text(position + kRecordHeader, nameBytes, end), text(value, valueBytes, end));
            }
            position = value + valueBytes;
        }
    }

    ByteWindow m_bytes;
    TagList& m_tags;
    int m_objects = 0;
    bool m_inExtension = false;
};

}  // namespace

void readAsfTags(const FileBytes& file, std::int64_t begin, TagList& tags) {
    ByteWindow bytes(file);
    const std::uint8_t* p = bytes.at(begin, static_cast<std::size_t>(kHeaderObject));
    if (!p) {
        return;
    }
    const std::uint64_t stated = littleEndian64(p + 16);
    const auto rest = static_cast<std::uint64_t>(file.size() - begin);
    const std::int64_t end = begin + static_cast<std::int64_t>(std::min(stated, rest));
    AsfReader(file, tags).readObjects(begin + kHeaderObject, end);
}

}  // namespace qm
