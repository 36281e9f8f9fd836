#include "library/XmlScanner.h"

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace qm {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

constexpr std::array<bool, 256> kNameBytes = [] {
    std::array<bool, 256> name{};
    for (std::size_t c = 0; c < 256; ++c)
        name[c] = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ':' ||
                  c == '-' || c == '.' || c >= 0x80;
    return name;
}();

// Bytes that stand for themselves in character data: everything but markup, references, carriage returns and controls.
constexpr std::array<bool, 256> kPlainBytes = [] {
    std::array<bool, 256> plain{};
    for (std::size_t c = 0x20; c < 256; ++c) plain[c] = c != '<' && c != '&';
    plain['\t'] = plain['\n'] = true;
    return plain;
}();

bool isXmlCharacter(std::uint32_t c) {
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xd800) || (c >= 0xe000 && c < 0xfffe) ||
           (c >= 0x10000 && c <= 0x10ffff);
}

void appendUtf8(std::string& out, std::uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
        return;
    }
    if (c < 0x800) {
        out += static_cast<char>(0xc0 | c >> 6);
    } else {
        if (c < 0x10000) {
            out += static_cast<char>(0xe0 | c >> 12);
        } else {
            out += static_cast<char>(0xf0 | c >> 18);
            out += static_cast<char>(0x80 | (c >> 12 & 0x3f));
        }
        out += static_cast<char>(0x80 | (c >> 6 & 0x3f));
    }
    out += static_cast<char>(0x80 | (c & 0x3f));
}

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

// The document as UTF-8 without a byte order mark; unchanged if its encoding is unknown.
QByteArray toUtf8(const QByteArray& document) {
    if (document.startsWith("\xef\xbb\xbf")) return document.sliced(3);
    auto encoding = QStringConverter::encodingForData(document);
    if (!encoding || *encoding == QStringConverter::Utf8)
        encoding = QStringConverter::encodingForName(declaredEncoding(document).constData());
    if (!encoding || *encoding == QStringConverter::Utf8) return document;
    return QString(QStringDecoder(*encoding)(document)).toUtf8();
}

}  // namespace

XmlScanner::XmlScanner(const QByteArray& document)
    : m_document(toUtf8(document)), m_text(m_document.constData(), static_cast<std::size_t>(m_document.size())) {}

qsizetype XmlScanner::line() const {
    return 1 + std::count(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(m_position), '\n');
}

bool XmlScanner::startsWith(std::string_view prefix) const {
    return m_text.compare(m_position, prefix.size(), prefix) == 0;
}

bool XmlScanner::skipPast(std::string_view end) {
    const std::size_t found = m_text.find(end, m_position);
    m_position = found == std::string_view::npos ? m_text.size() : found + end.size();
    return found != std::string_view::npos;
}

void XmlScanner::skipBlanks() {
    while (m_position < m_text.size() && isBlank(m_text[m_position])) ++m_position;
}

// Skips one comment or instruction; false if something else stands here or it does not end.
bool XmlScanner::skipMarkup() {
    if (startsWith("<!--")) return skipPast("-->");
    if (startsWith("<?")) return skipPast("?>");
    return false;
}

bool XmlScanner::skipDocumentType() {
    int brackets = 0;
    while (m_position < m_text.size()) {
        const char c = m_text[m_position];
        if (startsWith("<!--")) {
            if (!skipPast("-->")) return false;
            continue;
        }
        ++m_position;
        if (c == '"' || c == '\'') {
            if (!skipPast({&c, 1})) return false;
        } else if (c == '[') {
            ++brackets;
        } else if (c == ']') {
            --brackets;
        } else if (c == '>' && brackets == 0) {
            return true;
        }
    }
    return false;
}

XmlScanner::Tag XmlScanner::damagedTag(const char* reason) {
    m_damage = reason;
    return {TagKind::Damaged, {}};
}

XmlScanner::Tag XmlScanner::nextTag() {
    if (m_damage != nullptr) return {TagKind::Damaged, {}};
    for (;;) {
        skipBlanks();
        if (m_position == m_text.size()) return {TagKind::EndOfDocument, {}};
        if (m_text[m_position] != '<') return damagedTag("text where a tag belongs");
        if (!isAt('!', 1) && !isAt('?', 1)) break;
        const bool documentType = startsWith("<!DOCTYPE") && !m_sawTag;
        if (!(documentType ? skipDocumentType() : skipMarkup())) return damagedTag("malformed or unfinished markup");
    }
    m_sawTag = true;
    return scanTag();
}

std::string_view XmlScanner::scanName() {
    const std::size_t start = m_position;
    while (m_position < m_text.size() && kNameBytes[static_cast<unsigned char>(m_text[m_position])]) ++m_position;
    return m_text.substr(start, m_position - start);
}

// Skips attributes and the blanks around them, up to the end of the tag.
bool XmlScanner::skipAttributes() {
    for (;;) {
        const std::size_t before = m_position;
        skipBlanks();
        if (m_position == m_text.size()) return false;
        if (m_text[m_position] == '>' || m_text[m_position] == '/') return true;
        if (m_position == before || scanName().empty()) return false;
        skipBlanks();
        if (!isAt('=')) return false;
        ++m_position;
        skipBlanks();
        if (!isAt('"') && !isAt('\'')) return false;
        const std::string_view quote = m_text.substr(m_position, 1);
        ++m_position;
        if (!skipPast(quote)) return false;
    }
}

XmlScanner::Tag XmlScanner::scanTag() {
    ++m_position;
    const bool closing = isAt('/');
    if (closing) ++m_position;
    const std::string_view name = scanName();
    if (name.empty()) return damagedTag("malformed tag");
    if (closing) {
        skipBlanks();
    } else if (!skipAttributes()) {
        return damagedTag("malformed tag");
    }
    const bool empty = !closing && isAt('/');
    if (empty) ++m_position;
    if (!isAt('>')) return damagedTag("malformed tag");
    ++m_position;
    return {closing ? TagKind::Close : empty ? TagKind::Empty : TagKind::Open, name};
}

std::optional<std::string_view> XmlScanner::text() {
    if (m_damage != nullptr) return std::nullopt;
    const std::size_t start = m_position;
    while (m_position < m_text.size() && kPlainBytes[static_cast<unsigned char>(m_text[m_position])]) ++m_position;
    std::string_view found = m_text.substr(start, m_position - start);

    const bool endsAtTag = m_position + 1 < m_text.size() && m_text[m_position] == '<' &&
                           m_text[m_position + 1] != '!' && m_text[m_position + 1] != '?';
    if (!endsAtTag) {
        m_buffer = found;
        if (!appendCharacterData()) return std::nullopt;
        found = m_buffer;
    }
    if (!QByteArrayView(found.data(), static_cast<qsizetype>(found.size())).isValidUtf8()) {
        m_damage = "text that is not UTF-8";
        return std::nullopt;
    }
    return found;
}

// The slow way of text(): references, marked sections, comments and carriage returns, into the buffer.
bool XmlScanner::appendCharacterData() {
    constexpr std::string_view kSection = "<![CDATA[";
    while (m_position < m_text.size()) {
        const char c = m_text[m_position];
        if (startsWith(kSection)) {
            const std::size_t start = m_position + kSection.size();
            if (!skipPast("]]>")) break;
            m_buffer += m_text.substr(start, m_position - 3 - start);
        } else if (c == '<') {
            if (startsWith("<!") || startsWith("<?")) {
                if (!skipMarkup()) break;
            } else {
                return true;
            }
        } else if (c == '&') {
            if (!appendReference()) break;
        } else if (c == '\r') {
            m_position += startsWith("\r\n") ? 2 : 1;
            m_buffer += '\n';
        } else if (kPlainBytes[static_cast<unsigned char>(c)]) {
            m_buffer += c;
            ++m_position;
        } else {
            break;
        }
    }
    m_damage = m_position == m_text.size() ? "the document ends too early" : "malformed text";
    return false;
}

bool XmlScanner::appendReference() {
    const std::size_t end = m_text.find(';', m_position);
    if (end == std::string_view::npos || end - m_position > 12) return false;
    std::string_view name = m_text.substr(m_position + 1, end - m_position - 1);
    m_position = end + 1;
    if (name.starts_with('#')) {
        name.remove_prefix(1);
        const bool hexadecimal = name.starts_with('x');
        if (hexadecimal) name.remove_prefix(1);
        std::uint32_t character = 0;
        const auto [last, error] =
            std::from_chars(name.data(), name.data() + name.size(), character, hexadecimal ? 16 : 10);
        if (error != std::errc() || last != name.data() + name.size() || !isXmlCharacter(character)) return false;
        appendUtf8(m_buffer, character);
        return true;
    }
    constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    const auto entity =
        std::find_if(kEntities.begin(), kEntities.end(), [name](const auto& e) { return e.first == name; });
    if (entity == kEntities.end()) return false;
    m_buffer += entity->second;
    return true;
}

}  // namespace qm
