// Four letters as one number, the first highest: what formats and properties are named by.
#pragma once

#include <cstdint>
#include <string>

namespace qm {

constexpr std::uint32_t fourCharCode(const char (&s)[5]) {
    return std::uint32_t(std::uint8_t(s[0])) << 24 | std::uint32_t(std::uint8_t(s[1])) << 16 |
           std::uint32_t(std::uint8_t(s[2])) << 8 | std::uint32_t(std::uint8_t(s[3]));
}

inline std::string fourLetters(std::uint32_t code) {
    return {char(code >> 24), char(code >> 16 & 0xff), char(code >> 8 & 0xff), char(code & 0xff)};
}

}  // namespace qm
