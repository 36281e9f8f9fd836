#include "update/UpdateCheck.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "app/state/Numbers.h"
#include "library/PropertyListReader.h"

namespace qm {

using Event = PropertyListEvent;

namespace {

QVariant scalar(const PropertyListReader& reader, Event event) {
    switch (event) {
        case Event::String:
            return reader.string();
        case Event::Integer:
            return static_cast<qlonglong>(reader.integer());
        case Event::Real:
            return reader.real();
        case Event::True:
        case Event::False:
            return event == Event::True;
        default:
            return {};
    }
}

std::int32_t saturated(qlonglong value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<qlonglong>(value, Limits::min(), Limits::max()));
}

std::int32_t leadingInteger(const QString& text) {
    const QByteArray bytes = text.trimmed().toUtf8();
    const char* begin = bytes.constData();
    const char* const end = begin + bytes.size();
    const bool plus = *begin == '+';
    if (plus && begin[1] == '-') return 0;
    qlonglong value = 0;
    const auto read = std::from_chars(begin + (plus ? 1 : 0), end, value);
    if (read.ec != std::errc::result_out_of_range) return saturated(value);
    using Limits = std::numeric_limits<std::int32_t>;
    return *begin == '-' ? Limits::min() : Limits::max();
}

}  // namespace

Result<UpdateDescription> readUpdateDescription(const QByteArray& document) {
    const Error notADictionary{ErrorCategory::Damaged, "not a property list of one dictionary"};
    PropertyListReader reader(document);
    if (reader.next() != Event::BeginDict) return notADictionary;
    UpdateDescription description;
    Event event = reader.next();
    for (; event == Event::Key; event = reader.next()) {
        const QString key = reader.string();
        const Event value = reader.next();
        description.insert(key, scalar(reader, value));
        if (!reader.skipValue(value)) return notADictionary;
    }
    if (event != Event::EndDict || reader.next() != Event::End) return notADictionary;
    return description;
}

std::int32_t versionNumber(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::QString:
            return leadingInteger(value.toString());
        case QMetaType::LongLong:
            return saturated(value.toLongLong());
        case QMetaType::Double:
            return truncToInt32(value.toDouble());
        case QMetaType::Bool:
            return value.toBool() ? 1 : 0;
        default:
            return 0;
    }
}

bool isNewerRelease(const VersionNumbers& latest, const VersionNumbers& current) {
    return latest.major > current.major || latest.minor > current.minor || latest.build > current.build;
}

}  // namespace qm
