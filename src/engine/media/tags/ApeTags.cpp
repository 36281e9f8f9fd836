#include "engine/media/tags/ApeTags.h"

#include <cstring>
#include <optional>

#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

constexpr std::int64_t kFooterBytes = 32;
constexpr std::int64_t kId3v1Bytes = 128;
constexpr std::int64_t kItemWork = 64;  // of passing over an item, in bytes looked at
constexpr std::int64_t kMostBytes = std::int64_t{64} << 20;

struct ItemRange {
    std::int64_t begin;
    std::int64_t end;
    std::uint32_t count;
};

std::optional<ItemRange> itemsBefore(ByteWindow& bytes, std::int64_t end) {
    const std::uint8_t* p = bytes.at(end - kFooterBytes, kFooterBytes);
    if (!p || std::memcmp(p, "APETAGEX", 8) != 0) {
        return std::nullopt;
    }
    const std::int64_t stated = littleEndian32(p + 12);  // the footer counts, a header does not
    if (stated < kFooterBytes || stated > end || stated > kMostBytes) {
        return std::nullopt;
    }
    return ItemRange{end - stated, end - kFooterBytes, littleEndian32(p + 16)};
}

}  // namespace

void readApe(const FileBytes& file, TagList& tags) {
    ByteWindow bytes(file);
    auto items = itemsBefore(bytes, file.size());
    items = items ? items : itemsBefore(bytes, file.size() - kId3v1Bytes);
    if (!items) {
        return;
    }
    std::int64_t position = items->begin;
    for (std::uint32_t i = 0; i < items->count && position < items->end && !tags.isFull(); ++i) {
        const std::uint8_t* p = bytes.at(position, 8);
        if (!p) {
            return;
        }
        tags.spend(kItemWork);
        const std::int64_t valueBytes = littleEndian32(p);
        const bool isText = (littleEndian32(p + 4) >> 1 & 3) == 0;
        const std::string name(untilZero(bytes.text(position + 8, items->end, TagList::kLongestKey)));
        const std::int64_t value = position + 8 + static_cast<std::int64_t>(name.size()) + 1;
        if (valueBytes > items->end - value) {
            return;
        }
        if (isText) {
            tags.addForeign(name,
                            utf8FromUnknown(untilZero(bytes.text(value, value + valueBytes, TagList::kLongestText))));
        }
        position = value + valueBytes;
    }
}

}  // namespace qm
