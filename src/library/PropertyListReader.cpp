#include "library/PropertyListReader.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "library/PropertyListNumbers.h"
#include "library/XmlProlog.h"

namespace qm {

using Event = PropertyListEvent;

namespace {

constexpr std::array<std::pair<std::string_view, Event>, 8> kLeaves = {{{"string", Event::String},
                                                                        {"integer", Event::Integer},
                                                                        {"key", Event::Key},
                                                                        {"real", Event::Real},
                                                                        {"true", Event::True},
                                                                        {"false", Event::False},
                                                                        {"date", Event::Date},
                                                                        {"data", Event::Data}}};

}  // namespace

// Parses the document in steps of some hundred events, because the parser calls us and our reader is the one who calls.
class PropertyListReader::Parser {
public:
    explicit Parser(std::string_view root);

    const Item& next();  // End and Damaged again and again
    const char* damage() const { return m_damage; }

private:
    static constexpr std::size_t kStep = 256;

    enum class Stage { BeforePlist, BeforeValue, AfterValue };
    enum class Container : char { Array, Dict, DictAfterKey };

    template <auto handler, typename... Arguments>
    static void call(void* self, Arguments... arguments) {
        auto& parser = *static_cast<Parser*>(self);
        if (!parser.m_damage) (parser.*handler)(arguments...);
    }

    void parseOn();
    void startElement(const XML_Char* name, const XML_Char** attributes);
    void endElement(const XML_Char* name);
    void characters(const XML_Char* text, int length);
    void documentType(const XML_Char*, const XML_Char*, const XML_Char*, int) { damaged("a misplaced document type"); }
    void startValue(std::string_view name);
    void startContainer(Container kind);
    void endLeaf(Event event);
    bool readNumber(Event event);
    void valueDone();
    void add(Event event);
    void damaged(const char* reason);

    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser;
    int m_length;
    bool m_started = false;
    Stage m_stage = Stage::BeforePlist;
    std::vector<Container> m_containers;
    std::optional<Event> m_leaf;  // the value whose text is being read, into the first item that is not counted yet
    std::vector<Item> m_items;    // kept when they have been read, with the room that their texts have
    std::size_t m_count = 0;
    std::size_t m_next = 0;
    const char* m_damage = nullptr;
};

PropertyListReader::Parser::Parser(std::string_view root)
    : m_parser(XML_ParserCreate("UTF-8"), &XML_ParserFree), m_length(static_cast<int>(root.size())), m_items(1) {
    Q_CHECK_PTR(m_parser);
    XML_SetUserData(m_parser.get(), this);
    XML_SetElementHandler(m_parser.get(), call<&Parser::startElement>, call<&Parser::endElement>);
    XML_SetCharacterDataHandler(m_parser.get(), call<&Parser::characters>);
    XML_SetStartDoctypeDeclHandler(m_parser.get(), call<&Parser::documentType>);
    void* buffer = std::in_range<int>(root.size()) ? XML_GetBuffer(m_parser.get(), m_length) : nullptr;
    if (buffer)
        std::copy(root.begin(), root.end(), static_cast<char*>(buffer));
    else
        damaged("an empty or too large document");
}

const PropertyListReader::Item& PropertyListReader::Parser::next() {
    if (m_next == m_count) parseOn();
    const Item& item = m_items[m_next];
    if (item.event != Event::End && item.event != Event::Damaged) ++m_next;
    return item;
}

// Reads at least one event, the last of which may be End or Damaged.
void PropertyListReader::Parser::parseOn() {
    m_next = m_count = 0;
    const XML_Status status = std::exchange(m_started, true) ? XML_ResumeParser(m_parser.get())
                                                             : XML_ParseBuffer(m_parser.get(), m_length, XML_TRUE);
    if (status == XML_STATUS_OK) add(Event::End);
    if (status == XML_STATUS_ERROR && !m_damage) damaged(XML_ErrorString(XML_GetErrorCode(m_parser.get())));
}

void PropertyListReader::Parser::add(Event event) {
    m_items[m_count].event = event;
    m_items[m_count].position = std::max<qsizetype>(XML_GetCurrentByteIndex(m_parser.get()), 0);
    if (++m_count == kStep) XML_StopParser(m_parser.get(), XML_TRUE);
    if (m_count == m_items.size()) m_items.emplace_back();
}

void PropertyListReader::Parser::damaged(const char* reason) {
    m_damage = reason;
    add(Event::Damaged);
    XML_StopParser(m_parser.get(), XML_FALSE);
}

void PropertyListReader::Parser::startElement(const XML_Char* name, const XML_Char**) {
    if (m_leaf) return damaged("an unfinished value");
    if (m_stage != Stage::BeforePlist) return startValue(name);
    if (std::string_view(name) != "plist") return damaged("not a property list");
    m_stage = Stage::BeforeValue;
}

void PropertyListReader::Parser::startValue(std::string_view name) {
    if (m_containers.empty() && m_stage != Stage::BeforeValue) return damaged("more than one value");
    const bool wantsKey = !m_containers.empty() && m_containers.back() == Container::Dict;
    if (wantsKey != (name == "key")) return damaged(wantsKey ? "a value without a key" : "a misplaced key");
    if (name == "array") return startContainer(Container::Array);
    if (name == "dict") return startContainer(Container::Dict);
    const auto leaf = std::find_if(kLeaves.begin(), kLeaves.end(), [&](const auto& l) { return l.first == name; });
    if (leaf == kLeaves.end()) return damaged("an unknown element");
    m_leaf = leaf->second;
    m_items[m_count].text.clear();
}

void PropertyListReader::Parser::startContainer(Container kind) {
    if (m_containers.size() == kMaximumDepth) return damaged("nested too deeply");
    m_containers.push_back(kind);
    add(kind == Container::Array ? Event::BeginArray : Event::BeginDict);
}

void PropertyListReader::Parser::characters(const XML_Char* text, int length) {
    const std::string_view found(text, static_cast<std::size_t>(length));
    if (m_leaf) {
        m_items[m_count].text += found;
    } else if (!trimmedXml(found).empty()) {
        damaged("text where a tag belongs");
    }
}

void PropertyListReader::Parser::endElement(const XML_Char*) {
    if (m_leaf) return endLeaf(*std::exchange(m_leaf, std::nullopt));
    if (m_containers.empty()) {
        if (m_stage != Stage::AfterValue) damaged("a property list without a value");
        return;
    }
    const Container kind = m_containers.back();
    if (kind == Container::DictAfterKey) return damaged("a key without a value");
    m_containers.pop_back();
    valueDone();
    add(kind == Container::Array ? Event::EndArray : Event::EndDict);
}

void PropertyListReader::Parser::endLeaf(Event event) {
    if (event == Event::Key) {
        m_containers.back() = Container::DictAfterKey;
        return add(event);
    }
    if (!readNumber(event)) return;
    valueDone();
    add(event);
}

// The text of a number or a truth value. False if it is damaged.
bool PropertyListReader::Parser::readNumber(Event event) {
    const auto failed = [this](const char* reason) {
        damaged(reason);
        return false;
    };
    Item& item = m_items[m_count];
    if (event == Event::Integer) {
        const auto value = parsePropertyListInteger(item.text);
        if (!value) return failed("an integer that is no number");
        item.integer = *value;
    } else if (event == Event::Real) {
        const auto value = parsePropertyListReal(item.text);
        if (!value) return failed("a real that is no number");
        item.real = *value;
    } else if ((event == Event::True || event == Event::False) && !trimmedXml(item.text).empty()) {
        return failed("a truth value with text");
    }
    return true;
}

void PropertyListReader::Parser::valueDone() {
    if (m_containers.empty()) {
        m_stage = Stage::AfterValue;
    } else if (m_containers.back() == Container::DictAfterKey) {
        m_containers.back() = Container::Dict;
    }
}

// Only what follows the prolog is parsed: a document type is not even seen.
PropertyListReader::PropertyListReader(const QByteArray& document) : m_document(xmlInUtf8(document)) {
    const std::string_view whole(m_document.constData(), static_cast<std::size_t>(m_document.size()));
    m_prolog = xmlPrologLength(whole);
    m_parser = std::make_unique<Parser>(whole.substr(m_prolog));
}

PropertyListReader::~PropertyListReader() = default;

Event PropertyListReader::next() {
    m_item = &m_parser->next();
    return m_item->event;
}
bool PropertyListReader::skipValue(Event first) {
    int depth = 0;
    for (Event event = first; event != Event::Damaged && event != Event::End; event = next()) {
        if (event == Event::BeginArray || event == Event::BeginDict) ++depth;
        if (event == Event::EndArray || event == Event::EndDict) --depth;
        if (depth == 0) return true;
    }
    return false;
}

const char* PropertyListReader::damage() const {
    return m_item->event == Event::Damaged ? m_parser->damage() : "";
}

qsizetype PropertyListReader::line() const {
    const auto reached = static_cast<std::ptrdiff_t>(m_prolog) + m_item->position;
    return 1 + std::count(m_document.begin(), m_document.begin() + reached, '\n');
}

}  // namespace qm
