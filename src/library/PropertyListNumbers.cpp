#include "library/PropertyListNumbers.h"

#include <charconv>
#include <limits>

namespace qm {

std::string_view trimmedXml(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\n") - first + 1);
}

std::optional<std::int64_t> parsePropertyListInteger(std::string_view text) {
    text = trimmedXml(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal) text.remove_prefix(2);
    std::uint64_t magnitude = 0;
    const auto [last, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, hexadecimal ? 16 : 10);
    if (error == std::errc::invalid_argument || last != text.data() + text.size()) return std::nullopt;

    constexpr auto kMaximum = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (error == std::errc::result_out_of_range || magnitude > kMaximum)
        return negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
    const auto value = static_cast<std::int64_t>(magnitude);
    return negative ? -value : value;
}

std::optional<double> parsePropertyListReal(std::string_view text) {
    text = trimmedXml(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [last, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || last != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace qm
