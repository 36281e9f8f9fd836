#include "library/XmlProlog.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>

namespace qm {

namespace {

// The encoding that the XML declaration names, empty if it names none.
QByteArray declaredEncoding(const QByteArray& document) {
    if (!document.startsWith("<?xml")) return {};
    const QByteArray declaration = document.left(std::max<qsizetype>(document.indexOf("?>"), 0));
    const qsizetype attribute = declaration.indexOf("encoding");
    if (attribute < 0) return {};
    const qsizetype open = declaration.indexOf(declaration.indexOf('"', attribute) < 0 ? '\'' : '"', attribute);
    if (open < 0) return {};
    const qsizetype close = declaration.indexOf(declaration[open], open + 1);
    return close < 0 ? QByteArray() : declaration.mid(open + 1, close - open - 1);
}

std::size_t past(std::string_view end, std::string_view text, std::size_t position) {
    const std::size_t found = text.find(end, position);
    return found == std::string_view::npos ? text.size() : found + end.size();
}

// A ">" ends the document type unless it stands in quotes, in a comment or in the brackets of its declarations.
std::size_t pastDocumentType(std::string_view text, std::size_t position) {
    int brackets = 0;
    while (position < text.size()) {
        const char c = text[position];
        if (c == '>' && brackets == 0) return position + 1;
        if (c == '[') ++brackets;
        if (c == ']') --brackets;
        if (c == '"' || c == '\'') {
            position = past({&c, 1}, text, position + 1);
        } else {
            position = text.substr(position).starts_with("<!--") ? past("-->", text, position) : position + 1;
        }
    }
    return position;
}

}  // namespace

QByteArray xmlInUtf8(const QByteArray& document) {
    if (document.startsWith("\xef\xbb\xbf")) return document.sliced(3);
    auto encoding = QStringConverter::encodingForData(document);
    if (!encoding || *encoding == QStringConverter::Utf8)
        encoding = QStringConverter::encodingForName(declaredEncoding(document).constData());
    if (!encoding || *encoding == QStringConverter::Utf8) return document;
    return QString(QStringDecoder(*encoding)(document)).toUtf8();
}

std::size_t xmlPrologLength(std::string_view utf8) {
    std::size_t position = 0;
    for (;;) {
        position = std::min(utf8.find_first_not_of(" \t\r\n", position), utf8.size());
        const std::string_view rest = utf8.substr(position);
        if (rest.starts_with("<?")) {
            position = past("?>", utf8, position);
        } else if (rest.starts_with("<!--")) {
            position = past("-->", utf8, position);
        } else if (rest.starts_with("<!DOCTYPE")) {
            position = pastDocumentType(utf8, position);
        } else {
            return position;
        }
    }
}

}  // namespace qm
