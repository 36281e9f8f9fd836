// What stands before the first element of an XML document: its encoding and, read over, its document type. Any thread.
#pragma once

#include <QByteArray>
#include <string_view>

namespace qm {

// The document as UTF-8 without a byte order mark, by its mark or the encoding that it declares; unchanged if that is
// unknown.
QByteArray xmlInUtf8(const QByteArray& document);

// How many bytes stand before the first element: blanks, the XML declaration, instructions, comments and the document
// type, of which nothing is followed or remembered. All, if one of them does not end.
std::size_t xmlPrologLength(std::string_view utf8);

}  // namespace qm
