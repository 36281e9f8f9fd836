// Reads an XML property list as a sequence of events, without building it in memory. Depth is limited; the document
// type is never followed. Any thread. Damage ends the reading: every event before it stands.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <string_view>
#include <vector>

#include "library/XmlScanner.h"

namespace qm {

enum class PropertyListEvent {
    BeginArray,
    EndArray,
    BeginDict,
    EndDict,
    Key,
    String,
    Integer,
    Real,
    True,
    False,
    Date,  // text() as written
    Data,  // text() in base 64
    End,
    Damaged
};

class PropertyListReader {
public:
    static constexpr std::size_t kMaximumDepth = 256;

    explicit PropertyListReader(const QByteArray& document) : m_scanner(document) {}

    // The next event. In a dictionary, every Key is followed by its value. After End or Damaged, the same again.
    PropertyListEvent next();

    // Reads on to the end of the value whose first event has just been read. False on damage.
    bool skipValue(PropertyListEvent first);

    std::string_view text() const { return m_text; }  // of Key, String, Date and Data, UTF-8; until the next event
    QString string() const { return QString::fromUtf8(m_text.data(), static_cast<qsizetype>(m_text.size())); }
    std::int64_t integer() const { return m_integer; }  // of Integer, saturated
    double real() const { return m_real; }              // of Real

    const char* damage() const;  // why the last event was Damaged
    qsizetype line() const { return m_scanner.line(); }

private:
    enum class Stage { BeforePlist, BeforeValue, AfterValue, AfterPlist, Finished, Broken };
    enum class Container : char { Array, Dict, DictAfterKey };

    PropertyListEvent damaged(const char* reason);
    PropertyListEvent enterPlist(XmlScanner::Tag tag);
    PropertyListEvent closeContainer(std::string_view name);
    PropertyListEvent openElement(XmlScanner::Tag tag);
    PropertyListEvent openContainer(XmlScanner::Tag tag, Container kind);
    PropertyListEvent readLeaf(XmlScanner::Tag tag, PropertyListEvent event);
    bool readLeafText(XmlScanner::Tag tag);
    void valueDone();

    XmlScanner m_scanner;
    Stage m_stage = Stage::BeforePlist;
    std::vector<Container> m_containers;
    bool m_closeEmpty = false;  // the last event began an empty-element container
    std::string_view m_text;
    std::int64_t m_integer = 0;
    double m_real = 0;
    const char* m_damage = nullptr;
};

// A whole number as property lists write it: blanks around it, a sign, decimal or 0x digits. None for anything else;
// saturates beyond 64 bits.
std::optional<std::int64_t> parsePropertyListInteger(std::string_view text);

}  // namespace qm
