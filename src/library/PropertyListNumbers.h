// The numbers of a property list from their text. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qm {

std::string_view trimmedXml(std::string_view text);  // without blanks at its ends

// A whole number: blanks around it, a sign, decimal or 0x digits. None for anything else; saturates beyond 64 bits.
std::optional<std::int64_t> parsePropertyListInteger(std::string_view text);

// A decimal number, blanks around it. None for anything else.
std::optional<double> parsePropertyListReal(std::string_view text);

}  // namespace qm
