// Reads an XML property list as a sequence of events, without building it in memory. Depth is limited; the document
// type is never followed, and no entities are known but XML's own five. Any thread. Damage ends the reading: every
// event before it stands.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

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

    explicit PropertyListReader(const QByteArray& document);
    ~PropertyListReader();
    PropertyListReader(const PropertyListReader&) = delete;
    PropertyListReader& operator=(const PropertyListReader&) = delete;

    // The next event. In a dictionary, every Key is followed by its value. After End or Damaged, the same again.
    PropertyListEvent next();

    // Reads on to the end of the value whose first event has just been read. False on damage.
    bool skipValue(PropertyListEvent first);

    std::string_view text() const {
        return m_item->text;
    }  // of Key, String, Date and Data, UTF-8; until the next event
    QString string() const { return QString::fromUtf8(text().data(), static_cast<qsizetype>(text().size())); }
    std::int64_t integer() const { return m_item->integer; }  // of Integer, saturated
    double real() const { return m_item->real; }              // of Real

    const char* damage() const;  // why the last event was Damaged
    qsizetype line() const;      // the line the reading has reached, from 1

private:
    class Parser;

    struct Item {
        PropertyListEvent event = PropertyListEvent::BeginArray;
        std::string text;
        std::int64_t integer = 0;
        double real = 0;
        qsizetype position = 0;  // behind the prolog
    };

    QByteArray m_document;     // UTF-8
    std::size_t m_prolog = 0;  // its length
    std::unique_ptr<Parser> m_parser;
    Item m_nothing;
    const Item* m_item = &m_nothing;  // the last event
};

}  // namespace qm
