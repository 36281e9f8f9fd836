#include "library/PlayListFormat.h"

#include <QUrl>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>

#include "app/state/FilePath.h"
#include "library/PropertyListNumbers.h"
#include "library/PropertyListReader.h"
#include "library/PropertyListWriter.h"

namespace qm {

using Event = PropertyListEvent;

namespace {

// What is absent is empty; required are all but artist and album.
struct ReadTrack {
    std::optional<QString> track, artist, album, displayName;
    std::optional<std::int64_t> duration, timescale, bass, treble, markA, markB;
};

struct StringKey {
    std::string_view name;
    std::optional<QString> ReadTrack::*member;
};

struct NumberKey {
    std::string_view name;
    std::optional<std::int64_t> ReadTrack::*member;
};

constexpr std::array<StringKey, 4> kStringKeys = {{{"track", &ReadTrack::track},
                                                   {"artist", &ReadTrack::artist},
                                                   {"album", &ReadTrack::album},
                                                   {"displayName", &ReadTrack::displayName}}};
constexpr std::array<NumberKey, 6> kNumberKeys = {{{"duration", &ReadTrack::duration},
                                                   {"timescale", &ReadTrack::timescale},
                                                   {"bass", &ReadTrack::bass},
                                                   {"treble", &ReadTrack::treble},
                                                   {"markA", &ReadTrack::markA},
                                                   {"markB", &ReadTrack::markB}}};
constexpr std::size_t kNumberKeysWithoutMarks = 4;

template <typename Key>
const Key* findKey(std::span<const Key> keys, std::string_view name) {
    const auto found = std::find_if(keys.begin(), keys.end(), [name](const Key& key) { return key.name == name; });
    return found == keys.end() ? nullptr : &*found;
}

std::int64_t truncated(double value) {
    constexpr auto kLimit = 9223372036854775808.0;  // 2^63
    if (std::isnan(value)) return 0;
    if (value >= kLimit) return std::numeric_limits<std::int64_t>::max();
    if (value < -kLimit) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

std::optional<std::int64_t> numberOf(const PropertyListReader& reader, Event event) {
    if (event == Event::Integer) return reader.integer();
    if (event == Event::Real) return truncated(reader.real());
    if (event == Event::String) return parsePropertyListInteger(reader.text());
    return std::nullopt;
}

// The value of the key just read. False if it is of a wrong kind or damaged; an unknown key's value is skipped.
bool readValue(PropertyListReader& reader, ReadTrack& track, Marks marks) {
    const std::span<const NumberKey> allNumbers(kNumberKeys);
    const StringKey* stringKey = findKey(std::span<const StringKey>(kStringKeys), reader.text());
    const NumberKey* numberKey =
        findKey(marks == Marks::Kept ? allNumbers : allNumbers.first(kNumberKeysWithoutMarks), reader.text());
    const Event event = reader.next();
    if (stringKey) {
        if (event != Event::String) return false;
        track.*(stringKey->member) = reader.string();
        return true;
    }
    if (numberKey) {
        const auto number = numberOf(reader, event);
        if (!number) return false;
        track.*(numberKey->member) = *number;
        return true;
    }
    return reader.skipValue(event);
}

// A path that XML cannot hold, or that is not even text, stands in the document as a file's address. No other path
// looks like one, because they all begin with a slash.
constexpr QLatin1StringView kAddress("file:///");

QString writtenPath(const QString& path) {
    return PropertyListWriter::holds(path) ? path : QString::fromLatin1(pathUrl(path));
}

QString readPath(const QString& written) {
    if (!written.startsWith(kAddress)) return written;
    return pathFromUrl(QUrl::fromEncoded(written.toUtf8())).value_or(written);
}

// The rest of a track's dictionary, as a row. None if a required key is missing or a value is wrong.
std::optional<PlayListEntry> readEntry(PropertyListReader& reader, Marks marks) {
    ReadTrack track;
    Event event = reader.next();
    for (; event == Event::Key; event = reader.next()) {
        if (!readValue(reader, track, marks)) return std::nullopt;
    }
    if (event != Event::EndDict) return std::nullopt;
    if (!track.track || !track.displayName || !track.duration || !track.timescale || !track.bass || !track.treble)
        return std::nullopt;
    const QString none = QStringLiteral(" ");
    return PlayListEntry{readPath(*track.track),
                         track.artist.value_or(none),
                         track.album.value_or(none),
                         *track.displayName,
                         *track.duration,
                         static_cast<std::int32_t>(*track.timescale),
                         static_cast<std::int16_t>(*track.bass),
                         static_cast<std::int16_t>(*track.treble),
                         track.markA.value_or(0),
                         track.markB.value_or(*track.duration)};
}

QString damageAt(const PropertyListReader& reader, const char* otherwise) {
    const char* reason = *reader.damage() != '\0' ? reader.damage() : otherwise;
    return QStringLiteral("%1 in line %2").arg(QLatin1StringView(reason)).arg(reader.line());
}

}  // namespace

std::optional<QString> readPlayList(const QByteArray& document, PlayListArrays& list, Marks marks) {
    PropertyListReader reader(document);
    if (reader.next() != Event::BeginArray) return damageAt(reader, "not an array of tracks");
    Event event = reader.next();
    for (; event == Event::BeginDict; event = reader.next()) {
        const auto entry = readEntry(reader, marks);
        if (!entry) return damageAt(reader, "a track with a missing or wrong value");
        list.insertEntry(list.count(), *entry);
    }
    if (event != Event::EndArray) return damageAt(reader, "something that is no track");
    if (reader.next() != Event::End) return damageAt(reader, "more than one array");
    return std::nullopt;
}

bool writePlayList(QIODevice& device, const PlayListArrays& list, Marks marks) {
    PropertyListWriter writer(device);
    const auto string = [&writer](std::string_view key, const QString& value) {
        writer.key(key);
        writer.string(value);
    };
    const auto integer = [&writer](std::string_view key, std::int64_t value) {
        writer.key(key);
        writer.integer(value);
    };
    writer.beginArray();
    for (std::size_t i = 0; i < list.trackArray.size(); ++i) {
        writer.beginDict();
        string("album", list.albumArray[i]);
        string("artist", list.artistArray[i]);
        integer("bass", list.bassArray[i]);
        string("displayName", list.displayNamesArray[i]);
        integer("duration", list.durations[i]);
        if (marks == Marks::Kept) {
            integer("markA", list.markAarray[i]);
            integer("markB", list.markBarray[i]);
        }
        integer("timescale", list.timescaleArray[i]);
        string("track", writtenPath(list.trackArray[i]));
        integer("treble", list.trebleArray[i]);
        writer.endDict();
    }
    writer.endArray();
    return writer.finish();
}

}  // namespace qm
