// Splits an XML document into tags and character data, front to back and without recursion, so that neither depth nor
// size of a hostile document costs more than reading it once. References to other documents are never followed and a
// document type's own entities are not known. Any thread. What is not well-formed ends the scan with a reason.
#pragma once

#include <QByteArray>
#include <optional>
#include <string>
#include <string_view>

namespace qm {

class XmlScanner {
public:
    enum class TagKind { Open, Close, Empty, EndOfDocument, Damaged };

    struct Tag {
        TagKind kind;
        std::string_view name;
    };

    explicit XmlScanner(const QByteArray& document);

    // The next tag. Only blanks, comments and instructions may stand before it, and before the first tag a document
    // type.
    Tag nextTag();

    // The character data up to the next tag: UTF-8, references replaced, line ends as line feeds. None if it is
    // damaged. The view is valid until the next text().
    std::optional<std::string_view> text();

    const char* damage() const { return m_damage; }  // the reason, null while all is well
    qsizetype line() const;                          // the line the scan has reached, from 1

private:
    bool isAt(char c, std::size_t ahead = 0) const {
        return m_position + ahead < m_text.size() && m_text[m_position + ahead] == c;
    }
    bool startsWith(std::string_view prefix) const;
    bool skipPast(std::string_view end);
    void skipBlanks();
    bool skipMarkup();
    bool skipDocumentType();
    std::string_view scanName();
    bool skipAttributes();
    Tag scanTag();
    bool appendCharacterData();
    bool appendReference();
    Tag damagedTag(const char* reason);

    QByteArray m_document;  // UTF-8; holds what the views point at
    std::string_view m_text;
    std::size_t m_position = 0;
    std::string m_buffer;  // character data that is not one run of the document
    bool m_sawTag = false;
    const char* m_damage = nullptr;
};

}  // namespace qm
