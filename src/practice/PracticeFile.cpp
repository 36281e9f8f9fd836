#include "practice/PracticeFile.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QSet>
#include <algorithm>

namespace qm {

namespace {

constexpr std::int64_t kFormat = 1;
constexpr double kLeastSpeed = 0.35, kMostSpeed = 2.5;
constexpr double kMostCents = 1200;
constexpr double kLeastTempo = 20, kMostTempo = 400;
constexpr std::int64_t kMostTone = 256;

// The fields of one object of the file. Counts those that are there and cannot be read.
class Fields {
public:
    Fields(const QJsonObject& object, int& unread) : m_object(object), m_unread(unread) {}

    std::optional<std::int64_t> whole(const char* name, std::int64_t least = INT64_MIN,
                                      std::int64_t most = INT64_MAX) const {
        const QJsonValue value = m_object[QLatin1StringView(name)];
        const std::int64_t first = value.toInteger(0);
        const bool isWhole = value.isDouble() && first == value.toInteger(1) && first >= least && first <= most;
        return answer(value, isWhole, first);
    }

    std::optional<double> number(const char* name, double least, double most) const {
        const QJsonValue value = m_object[QLatin1StringView(name)];
        const double number = value.toDouble();
        return answer(value, value.isDouble() && number >= least && number <= most, number);
    }

    std::optional<QString> text(const char* name) const {
        const QJsonValue value = m_object[QLatin1StringView(name)];
        return answer(value, value.isString(), value.toString());
    }

    template <typename T>
    std::optional<T> answer(const QJsonValue& value, bool isRead, T read) const {
        if (isRead) return read;
        if (!value.isUndefined()) ++m_unread;
        return std::nullopt;
    }

private:
    const QJsonObject& m_object;
    int& m_unread;
};

std::optional<KeptLoop> readLoop(const QJsonObject& object, int& unread) {
    int missing = 0;
    const Fields needed(object, missing), fields(object, unread);
    const auto id = needed.text("id");
    const auto a = needed.whole("a"), b = needed.whole("b");
    if (!id || id->isEmpty() || !a || !b) return std::nullopt;
    return KeptLoop{.id = *id,
                    .name = fields.text("name").value_or(QString()).left(PracticeRecord::kLongestName),
                    .a = *a,
                    .b = *b,
                    .speed = fields.number("speed", kLeastSpeed, kMostSpeed),
                    .cents = fields.number("cents", -kMostCents, kMostCents),
                    .bpm = fields.number("bpm", kLeastTempo, kMostTempo),
                    .changed = fields.whole("changed", 0).value_or(0)};
}

LoopEntry readEntry(const QJsonValue& value, int& unread) {
    const QJsonObject object = value.toObject();
    LoopEntry entry{.id = object[QLatin1StringView("id")].toString(), .loop = {}, .removed = 0, .stored = value};
    int ignored = 0;
    if (!object.contains(QLatin1StringView("removed")))
        entry.loop = readLoop(object, unread);
    else if (!entry.id.isEmpty())
        entry.removed = Fields(object, ignored).whole("removed", 1).value_or(0);
    return entry;
}

std::optional<StoppedAt> readStopped(const QJsonObject& object, int& unread) {
    const Fields fields(object, unread);
    const auto position = fields.whole("position", 0);
    if (!position) return std::nullopt;
    return StoppedAt{.position = *position,
                     .a = fields.whole("a", 0).value_or(0),
                     .b = fields.whole("b", 0).value_or(0),
                     .speed = fields.number("speed", kLeastSpeed, kMostSpeed).value_or(1),
                     .cents = fields.number("cents", -kMostCents, kMostCents).value_or(0),
                     .bass = fields.whole("bass", 0, kMostTone).value_or(kMostTone / 2),
                     .treble = fields.whole("treble", 0, kMostTone).value_or(kMostTone / 2),
                     .changed = fields.whole("changed", 0).value_or(0),
                     .stored = object};
}

void readLoops(const QJsonArray& array, ReadRecord& read) {
    QSet<QString> known;
    for (const QJsonValue& value : array) {
        LoopEntry entry = readEntry(value, read.unreadFields);
        // Two of one name, or one too many: the later is left as it stands.
        if (entry.loop && (known.contains(entry.id) || read.loops - read.unreadLoops >= PracticeRecord::kMostLoops))
            entry.loop.reset();
        if (entry.removed == 0) ++read.loops;
        if (entry.removed == 0 && !entry.loop) ++read.unreadLoops;
        if (entry.loop) known.insert(entry.id);
        read.record.loops.push_back(std::move(entry));
    }
}

// Lays values over an object as it stood: only those that differ from what was read there are written, so that what
// could not be read stays.
class Laid {
public:
    explicit Laid(QJsonObject stood) : m_object(std::move(stood)) {}

    template <typename T>
    Laid& put(const char* name, const T& value, const T& stood) {
        const QLatin1StringView key(name);
        if (value != stood || !m_object.contains(key)) m_object[key] = value;
        return *this;
    }

    template <typename T>
    Laid& put(const char* name, const std::optional<T>& value, const std::optional<T>& stood) {
        if (value == stood) return *this;
        if (value)
            m_object[QLatin1StringView(name)] = *value;
        else
            m_object.remove(QLatin1StringView(name));
        return *this;
    }

    const QJsonObject& object() const { return m_object; }

private:
    QJsonObject m_object;
};

using Whole = qint64;  // as the toolkit's JSON has it

QJsonObject loopObject(const LoopEntry& entry) {
    const QJsonObject stored = entry.stored.toObject();
    int ignored = 0;
    const KeptLoop stood = readLoop(stored, ignored).value_or(KeptLoop{});
    const KeptLoop& loop = *entry.loop;
    Laid laid(stored);
    laid.put("id", loop.id, stood.id)
        .put("name", loop.name, stood.name)
        .put<Whole>("a", loop.a, stood.a)
        .put<Whole>("b", loop.b, stood.b)
        .put("speed", loop.speed, stood.speed)
        .put("cents", loop.cents, stood.cents)
        .put("bpm", loop.bpm, stood.bpm)
        .put<Whole>("changed", loop.changed, stood.changed);
    return laid.object();
}

QJsonObject stoppedObject(const StoppedAt& last) {
    int ignored = 0;
    const StoppedAt stood = readStopped(last.stored, ignored).value_or(StoppedAt{});
    Laid laid(last.stored);
    laid.put<Whole>("position", last.position, stood.position)
        .put<Whole>("a", last.a, stood.a)
        .put<Whole>("b", last.b, stood.b)
        .put("speed", last.speed, stood.speed)
        .put("cents", last.cents, stood.cents)
        .put<Whole>("bass", last.bass, stood.bass)
        .put<Whole>("treble", last.treble, stood.treble)
        .put<Whole>("changed", last.changed, stood.changed);
    return laid.object();
}

QJsonValue entryValue(const LoopEntry& entry) {
    if (entry.loop) return loopObject(entry);
    if (entry.removed == 0) return entry.stored;
    QJsonObject removed = entry.stored.toObject();
    if (removed[QLatin1StringView("removed")].toInteger() == entry.removed) return removed;
    return QJsonObject{{"id", entry.id}, {"removed", Whole{entry.removed}}};
}

}  // namespace

QString ReadRecord::complaint() const {
    if (unreadLoops == 0) return {};
    return QCoreApplication::translate("qm::ReadRecord", "%1 of %2 loops could not be read.")
        .arg(unreadLoops)
        .arg(loops);
}

ReadRecord readRecord(const QJsonObject& object) {
    ReadRecord read;
    PracticeRecord& record = read.record;
    const Fields fields(object, read.unreadFields);
    record.stored = object;
    record.sound = fields.text("sound").value_or(QString());
    record.scale = fields.whole("scale", 1).value_or(0);
    record.title = fields.text("title").value_or(QString());
    record.artist = fields.text("artist").value_or(QString());
    for (const QJsonValue& path : object[QLatin1StringView("paths")].toArray())
        if (path.isString() && record.paths.size() < PracticeRecord::kMostPaths) record.paths << path.toString();
    readLoops(object[QLatin1StringView("loops")].toArray(), read);
    if (const QJsonValue last = object[QLatin1StringView("last")]; last.isObject())
        record.last = readStopped(last.toObject(), read.unreadFields);
    return read;
}

QJsonObject recordObject(const PracticeRecord& record) {
    int ignored = 0;
    const Fields stood(record.stored, ignored);
    Laid laid(record.stored);
    if (stood.whole("format").value_or(0) < kFormat) laid.put<Whole>("format", kFormat, 0);
    laid.put("sound", record.sound, stood.text("sound").value_or(QString()))
        .put<Whole>("scale", record.scale, stood.whole("scale", 1).value_or(0))
        .put("title", record.title, stood.text("title").value_or(QString()))
        .put("artist", record.artist, stood.text("artist").value_or(QString()));
    QJsonObject object = laid.object();
    object[QLatin1StringView("paths")] = QJsonArray::fromStringList(record.paths);
    QJsonArray loops;
    for (const LoopEntry& entry : record.loops) loops.append(entryValue(entry));
    const QJsonValue stoodLoops = object[QLatin1StringView("loops")];
    if (!loops.isEmpty() || stoodLoops.isUndefined() || stoodLoops.isArray())
        object[QLatin1StringView("loops")] = loops;
    if (record.last) object[QLatin1StringView("last")] = stoppedObject(*record.last);
    return object;
}

}  // namespace qm
