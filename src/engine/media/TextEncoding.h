// Text of files in the encodings that tags are written in, as UTF-8. Pure. Bytes that mean nothing become the
// replacement character; what is answered is always valid UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace qm {

bool isUtf8(std::string_view text);

// Without the bytes at the end that begin a character and do not complete it.
std::string_view withoutBrokenTail(std::string_view text);

// Up to the first zero byte.
std::string_view untilZero(std::string_view bytes);

// Text that does not say what it is: UTF-8 if it is valid, else Windows-1252, of which Latin-1 is a part.
std::string utf8FromUnknown(std::string_view bytes);

// The same, but Mac Roman in place of Windows-1252.
std::string utf8FromUnknownMac(std::string_view bytes);

// UTF-16. A byte order mark in front decides the order, else `order`, else which order puts more zero bytes first in
// their pairs, as letters do.
enum class Utf16Order { Unknown, Big, Little };
std::string utf8FromUtf16(std::string_view bytes, Utf16Order order = Utf16Order::Unknown);

}  // namespace qm
