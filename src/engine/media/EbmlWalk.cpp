#include "engine/media/EbmlWalk.h"

#include <algorithm>
#include <bit>

namespace qm {

namespace {

constexpr std::uint64_t kUnknownSize = ~std::uint64_t{0};

// Length in bytes by the number of zeros in front.
int lengthOf(std::uint8_t first) {
    return std::countl_zero(first) + 1;
}

}  // namespace

std::optional<std::uint64_t> readEbmlNumber(ByteWindow& bytes, std::int64_t& position, std::int64_t end) {
    const std::uint8_t* first = position < end ? bytes.at(position, 1) : nullptr;
    if (!first || *first == 0) return std::nullopt;
    const int length = lengthOf(*first);
    const std::uint8_t* all = position + length <= end ? bytes.at(position, static_cast<std::size_t>(length)) : nullptr;
    if (!all) return std::nullopt;
    std::uint64_t value = all[0] & (0xff >> length);
    bool isUnknown = value == static_cast<std::uint64_t>(0xff >> length);
    for (int i = 1; i < length; ++i) {
        value = value << 8 | all[i];
        isUnknown = isUnknown && all[i] == 0xff;
    }
    position += length;
    return isUnknown ? kUnknownSize : value;
}

std::optional<EbmlElement> readEbmlElement(ByteWindow& bytes, std::int64_t position, std::int64_t end) {
    constexpr int kLongestId = 4;
    const std::uint8_t* first = position < end ? bytes.at(position, 1) : nullptr;
    if (!first || lengthOf(*first) > kLongestId) return std::nullopt;
    const int length = lengthOf(*first);
    const std::uint8_t* all = position + length <= end ? bytes.at(position, static_cast<std::size_t>(length)) : nullptr;
    if (!all) return std::nullopt;
    EbmlElement element;
    element.begin = position;
    for (int i = 0; i < length; ++i) element.id = element.id << 8 | all[i];
    position += length;
    const auto size = readEbmlNumber(bytes, position, end);
    if (!size) return std::nullopt;
    element.content = position;
    element.isOpenEnded = *size == kUnknownSize;
    const auto rest = static_cast<std::uint64_t>(end - position);
    element.end = position + static_cast<std::int64_t>(std::min(*size, rest));
    return element;
}

std::uint64_t ebmlUnsigned(ByteWindow& bytes, const EbmlElement& element) {
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(element.end - element.content, 8));
    const std::uint8_t* all = bytes.at(element.content, count);
    std::uint64_t value = 0;
    for (std::size_t i = 0; all && i < count; ++i) value = value << 8 | all[i];
    return value;
}

}  // namespace qm
