#include "library/PropertyListReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace qm {

using Event = PropertyListEvent;
using TagKind = XmlScanner::TagKind;

namespace {

constexpr std::array<std::pair<std::string_view, Event>, 8> kLeaves = {{{"string", Event::String},
                                                                        {"integer", Event::Integer},
                                                                        {"key", Event::Key},
                                                                        {"real", Event::Real},
                                                                        {"true", Event::True},
                                                                        {"false", Event::False},
                                                                        {"date", Event::Date},
                                                                        {"data", Event::Data}}};

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\n") - first + 1);
}

std::optional<double> parseReal(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [last, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || last != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

std::optional<std::int64_t> parsePropertyListInteger(std::string_view text) {
    text = trimmed(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal) text.remove_prefix(2);
    std::uint64_t magnitude = 0;
    const auto [last, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, hexadecimal ? 16 : 10);
    if (error == std::errc::invalid_argument || last != text.data() + text.size()) return std::nullopt;

    constexpr auto kMaximum = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (error == std::errc::result_out_of_range || magnitude > kMaximum)
        return negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
    const auto value = static_cast<std::int64_t>(magnitude);
    return negative ? -value : value;
}

Event PropertyListReader::damaged(const char* reason) {
    m_stage = Stage::Broken;
    m_damage = m_scanner.damage() != nullptr ? m_scanner.damage() : reason;
    return Event::Damaged;
}

const char* PropertyListReader::damage() const {
    return m_damage != nullptr ? m_damage : "";
}

Event PropertyListReader::next() {
    if (m_stage == Stage::Finished) return Event::End;
    if (m_stage == Stage::Broken) return Event::Damaged;
    if (std::exchange(m_closeEmpty, false)) {
        const Container kind = m_containers.back();
        m_containers.pop_back();
        valueDone();
        return kind == Container::Array ? Event::EndArray : Event::EndDict;
    }

    const XmlScanner::Tag tag = m_scanner.nextTag();
    switch (tag.kind) {
        case TagKind::Damaged:
            return damaged("malformed document");
        case TagKind::EndOfDocument:
            if (m_stage != Stage::AfterPlist) return damaged("the document ends too early");
            m_stage = Stage::Finished;
            return Event::End;
        case TagKind::Close:
            return closeContainer(tag.name);
        case TagKind::Open:
        case TagKind::Empty:
            return m_stage == Stage::BeforePlist ? enterPlist(tag) : openElement(tag);
    }
    return damaged("malformed document");
}

Event PropertyListReader::enterPlist(XmlScanner::Tag tag) {
    if (tag.name != "plist" || tag.kind != TagKind::Open) return damaged("not a property list");
    m_stage = Stage::BeforeValue;
    return next();
}

Event PropertyListReader::closeContainer(std::string_view name) {
    if (m_containers.empty()) {
        if (name != "plist" || m_stage != Stage::AfterValue) return damaged("misplaced end tag");
        m_stage = Stage::AfterPlist;
        return next();
    }
    const Container kind = m_containers.back();
    if (kind == Container::DictAfterKey) return damaged("a key without a value");
    if (name != (kind == Container::Array ? "array" : "dict")) return damaged("misplaced end tag");
    m_containers.pop_back();
    valueDone();
    return kind == Container::Array ? Event::EndArray : Event::EndDict;
}

Event PropertyListReader::openElement(XmlScanner::Tag tag) {
    if (m_containers.empty() && m_stage != Stage::BeforeValue) return damaged("more than one value");
    const bool wantsKey = !m_containers.empty() && m_containers.back() == Container::Dict;
    if (wantsKey != (tag.name == "key")) return damaged(wantsKey ? "a value without a key" : "a misplaced key");
    if (tag.name == "array") return openContainer(tag, Container::Array);
    if (tag.name == "dict") return openContainer(tag, Container::Dict);
    const auto leaf = std::find_if(kLeaves.begin(), kLeaves.end(), [&](const auto& l) { return l.first == tag.name; });
    return leaf == kLeaves.end() ? damaged("an unknown element") : readLeaf(tag, leaf->second);
}

Event PropertyListReader::openContainer(XmlScanner::Tag tag, Container kind) {
    if (m_containers.size() == kMaximumDepth) return damaged("nested too deeply");
    m_containers.push_back(kind);
    m_closeEmpty = tag.kind == TagKind::Empty;
    return kind == Container::Array ? Event::BeginArray : Event::BeginDict;
}

bool PropertyListReader::readLeafText(XmlScanner::Tag tag) {
    m_text = {};
    if (tag.kind == TagKind::Empty) return true;
    const auto text = m_scanner.text();
    if (!text) return false;
    m_text = *text;
    const XmlScanner::Tag end = m_scanner.nextTag();
    return end.kind == TagKind::Close && end.name == tag.name;
}

Event PropertyListReader::readLeaf(XmlScanner::Tag tag, Event event) {
    if (!readLeafText(tag)) return damaged("an unfinished value");
    if (event == Event::Key) {
        m_containers.back() = Container::DictAfterKey;
        return event;
    }
    if (event == Event::Integer) {
        const auto value = parsePropertyListInteger(m_text);
        if (!value) return damaged("an integer that is no number");
        m_integer = *value;
    } else if (event == Event::Real) {
        const auto value = parseReal(m_text);
        if (!value) return damaged("a real that is no number");
        m_real = *value;
    } else if ((event == Event::True || event == Event::False) && !trimmed(m_text).empty()) {
        return damaged("a truth value with text");
    }
    valueDone();
    return event;
}

void PropertyListReader::valueDone() {
    if (m_containers.empty()) {
        m_stage = Stage::AfterValue;
    } else if (m_containers.back() == Container::DictAfterKey) {
        m_containers.back() = Container::Dict;
    }
}

bool PropertyListReader::skipValue(Event first) {
    if (first == Event::Damaged || first == Event::End) return false;
    if (first != Event::BeginArray && first != Event::BeginDict) return true;
    const std::size_t depth = m_containers.size();
    while (m_containers.size() >= depth) {
        if (next() == Event::Damaged) return false;
    }
    return true;
}

}  // namespace qm
