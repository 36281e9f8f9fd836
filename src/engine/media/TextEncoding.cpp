#include "engine/media/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace qm {

namespace {

constexpr char32_t kReplacement = 0xfffd;

// Windows-1252 from 0x80 to 0x9f; the rest is Latin-1.
constexpr std::array<char16_t, 32> kWindows = {
    0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008d, 0x017d, 0x008f, 0x0090, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178,
};

// Mac Roman from 0x80 to 0xff.
constexpr std::array<char16_t, 128> kMacRoman = {
    0x00c4, 0x00c5, 0x00c7, 0x00c9, 0x00d1, 0x00d6, 0x00dc, 0x00e1, 0x00e0, 0x00e2, 0x00e4, 0x00e3, 0x00e5,
    0x00e7, 0x00e9, 0x00e8, 0x00ea, 0x00eb, 0x00ed, 0x00ec, 0x00ee, 0x00ef, 0x00f1, 0x00f3, 0x00f2, 0x00f4,
    0x00f6, 0x00f5, 0x00fa, 0x00f9, 0x00fb, 0x00fc, 0x2020, 0x00b0, 0x00a2, 0x00a3, 0x00a7, 0x2022, 0x00b6,
    0x00df, 0x00ae, 0x00a9, 0x2122, 0x00b4, 0x00a8, 0x2260, 0x00c6, 0x00d8, 0x221e, 0x00b1, 0x2264, 0x2265,
    0x00a5, 0x00b5, 0x2202, 0x2211, 0x220f, 0x03c0, 0x222b, 0x00aa, 0x00ba, 0x03a9, 0x00e6, 0x00f8, 0x00bf,
    0x00a1, 0x00ac, 0x221a, 0x0192, 0x2248, 0x2206, 0x00ab, 0x00bb, 0x2026, 0x00a0, 0x00c0, 0x00c3, 0x00d5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201c, 0x201d, 0x2018, 0x2019, 0x00f7, 0x25ca, 0x00ff, 0x0178, 0x2044,
    0x20ac, 0x2039, 0x203a, 0xfb01, 0xfb02, 0x2021, 0x00b7, 0x201a, 0x201e, 0x2030, 0x00c2, 0x00ca, 0x00c1,
    0x00cb, 0x00c8, 0x00cd, 0x00ce, 0x00cf, 0x00cc, 0x00d3, 0x00d4, 0xf8ff, 0x00d2, 0x00da, 0x00db, 0x00d9,
    0x0131, 0x02c6, 0x02dc, 0x00af, 0x02d8, 0x02d9, 0x02da, 0x00b8, 0x02dd, 0x02db, 0x02c7,
};

std::uint8_t byteAt(std::string_view text, std::size_t i) {
    return static_cast<std::uint8_t>(text[i]);
}

// The bytes that a character with this first byte takes; 0 if none begins with it.
std::size_t statedLength(std::uint8_t first) {
    return first < 0x80 ? 1 : first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf5 ? 4 : 0;
}

// The bytes of the character that begins the text; 0 if it is no valid UTF-8.
std::size_t characterLength(std::string_view text) {
    const std::uint8_t first = byteAt(text, 0);
    const std::size_t length = statedLength(first);
    if (length == 0 || text.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, i) & 0xc0) != 0x80) {
            return 0;
        }
    }
    const std::uint8_t second = length > 1 ? byteAt(text, 1) : 0;
    const bool overlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
    const bool beyond = (first == 0xed && second >= 0xa0) || (first == 0xf4 && second >= 0x90);
    return overlong || beyond ? 0 : length;
}

void append(std::string& text, char32_t c) {
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    if (c < 0x800) {
        text += static_cast<char>(0xc0 | c >> 6);
    } else {
        if (c < 0x10000) {
            text += static_cast<char>(0xe0 | c >> 12);
        } else {
            text += static_cast<char>(0xf0 | c >> 18);
            text += static_cast<char>(0x80 | (c >> 12 & 0x3f));
        }
        text += static_cast<char>(0x80 | (c >> 6 & 0x3f));
    }
    text += static_cast<char>(0x80 | (c & 0x3f));
}

template <typename Decode>
std::string validOr(std::string_view bytes, Decode decode) {
    if (isUtf8(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    for (const char c : bytes) {
        append(text, decode(static_cast<std::uint8_t>(c)));
    }
    return text;
}

Utf16Order likelyOrder(std::string_view bytes) {
    int zeros[2] = {};
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        zeros[0] += bytes[i] == 0 && bytes[i + 1] != 0;
        zeros[1] += bytes[i + 1] == 0 && bytes[i] != 0;
    }
    return zeros[0] > zeros[1] ? Utf16Order::Big : Utf16Order::Little;
}

}  // namespace

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

std::string_view withoutBrokenTail(std::string_view text) {
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
        const std::uint8_t byte = byteAt(text, text.size() - back);
        if ((byte & 0xc0) != 0x80) {
            return statedLength(byte) > back ? text.substr(0, text.size() - back) : text;
        }
    }
    return text;
}

std::string_view untilZero(std::string_view bytes) {
    return bytes.substr(0, bytes.find('\0'));
}

std::string utf8FromUnknown(std::string_view bytes) {
    return validOr(bytes, [](std::uint8_t byte) -> char32_t {
        return byte >= 0x80 && byte < 0xa0 ? kWindows[byte - 0x80u] : byte;
    });
}

std::string utf8FromUnknownMac(std::string_view bytes) {
    return validOr(bytes, [](std::uint8_t byte) -> char32_t { return byte >= 0x80 ? kMacRoman[byte - 0x80u] : byte; });
}

std::string utf8FromUtf16(std::string_view bytes, Utf16Order order) {
    if (bytes.starts_with("\xfe\xff") || bytes.starts_with("\xff\xfe")) {
        order = bytes[0] == '\xfe' ? Utf16Order::Big : Utf16Order::Little;
        bytes.remove_prefix(2);
    } else if (order == Utf16Order::Unknown) {
        order = likelyOrder(bytes);
    }
    const std::size_t high = order == Utf16Order::Big ? 0 : 1;
    const auto unit = [&](std::size_t i) {
        return static_cast<char32_t>(byteAt(bytes, i + high) << 8 | byteAt(bytes, i + 1 - high));
    };
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t c = unit(i);
        if (c >= 0xd800 && c < 0xdc00 && i + 3 < bytes.size() && (unit(i + 2) & 0xfc00) == 0xdc00) {
            c = 0x10000 + ((c & 0x3ff) << 10) + (unit(i + 2) & 0x3ff);
            i += 2;
        } else if (c >= 0xd800 && c < 0xe000) {
            c = kReplacement;
        }
        append(text, c);
    }
    return text;
}

}  // namespace qm
