#include "library/PropertyListWriter.h"

#include <QIODevice>
#include <QStringEncoder>
#include <charconv>

namespace qm {

namespace {

constexpr qsizetype kBufferBytes = 1 << 18;

bool isXmlCharacter(QChar c) {
    return c.unicode() >= 0x20 ? c.unicode() < 0xfffe : c == u'\t' || c == u'\n' || c == u'\r';
}

// The text without what XML cannot hold: control characters, halves of surrogate pairs, U+FFFE and U+FFFF.
QString xmlText(const QString& text) {
    QString kept;
    kept.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            kept += c;
            kept += text[++i];
        } else if (!c.isSurrogate() && isXmlCharacter(c)) {
            kept += c;
        }
    }
    return kept;
}

bool isPlain(const QString& text) {
    for (const QChar c : text) {
        if (c.isSurrogate() || !isXmlCharacter(c)) return false;
    }
    return true;
}

std::string_view escapeFor(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '\r':
            return "&#13;";  // a bare one would be read back as a line feed
        default:
            return {};
    }
}

}  // namespace

PropertyListWriter::PropertyListWriter(QIODevice& device) : m_device(device) {
    m_buffer.reserve(kBufferBytes + 4096);
    append(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n");
}

bool PropertyListWriter::holds(const QString& text) {
    return isPlain(text) || xmlText(text) == text;
}

void PropertyListWriter::key(std::string_view name) {
    openLine();
    append("<key>");
    append(name);
    append("</key>\n");
}

void PropertyListWriter::string(const QString& value) {
    openLine();
    append("<string>");
    appendEscaped(value);
    append("</string>\n");
}

void PropertyListWriter::integer(std::int64_t value) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    openLine();
    append("<integer>");
    append({digits, static_cast<std::size_t>(end - digits)});
    append("</integer>\n");
}

bool PropertyListWriter::finish() {
    append("</plist>\n");
    flush();
    return !m_failed;
}

// The tag is written with the first element, because an empty container has a tag of its own.
void PropertyListWriter::beginContainer(std::string_view name) {
    openLine();
    append("<");
    append(name);
    ++m_depth;
    m_containerIsEmpty = true;
}

void PropertyListWriter::endContainer(std::string_view name) {
    --m_depth;
    if (m_containerIsEmpty) {
        m_containerIsEmpty = false;
        append("/>\n");
        return;
    }
    openLine();
    append("</");
    append(name);
    append(">\n");
}

void PropertyListWriter::openLine() {
    if (m_containerIsEmpty) {
        append(">\n");
        m_containerIsEmpty = false;
    }
    for (int level = 0; level < m_depth; ++level) m_buffer.append('\t');
}

void PropertyListWriter::append(std::string_view text) {
    m_buffer.append(text.data(), static_cast<qsizetype>(text.size()));
    if (m_buffer.size() >= kBufferBytes) flush();
}

void PropertyListWriter::appendEscaped(const QString& text) {
    const QByteArray utf8 = (isPlain(text) ? text : xmlText(text)).toUtf8();
    const std::string_view bytes(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    std::size_t start = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::string_view escape = escapeFor(bytes[i]);
        if (escape.empty()) continue;
        append(bytes.substr(start, i - start));
        append(escape);
        start = i + 1;
    }
    append(bytes.substr(start));
}

void PropertyListWriter::flush() {
    if (m_device.write(m_buffer) != m_buffer.size()) m_failed = true;
    m_buffer.resize(0);
}

}  // namespace qm
