#include "engine/media/DisplayName.h"

#include <algorithm>
#include <cstdint>

namespace qm {

namespace {

// The bytes of the character that begins the text; 0 if it is no valid UTF-8.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t first = byte(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xc2 ? 0
                               : first < 0xe0 ? 2
                               : first < 0xf0 ? 3
                               : first < 0xf5 ? 4
                                              : 0;
    if (length == 0 || text.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) {
            return 0;
        }
    }
    const bool overlong = (first == 0xe0 && byte(1) < 0xa0) || (first == 0xf0 && byte(1) < 0x90);
    const bool beyond = (first == 0xed && byte(1) >= 0xa0) || (first == 0xf4 && byte(1) >= 0x90);
    return overlong || beyond ? 0 : length;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string toUtf8(std::string_view text) {
    if (isUtf8(text)) {
        return std::string(text);
    }
    std::string converted;
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (byte < 0x80) {
            converted += c;
        } else {
            converted += static_cast<char>(0xc0 | byte >> 6);
            converted += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return converted;
}

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); });
}

}  // namespace

std::string displayName(std::string_view title, std::string_view path) {
    if (!isBlank(title)) {
        return toUtf8(title);
    }
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return toUtf8(path.substr(path.find_last_of('/') + 1));
}

}  // namespace qm
