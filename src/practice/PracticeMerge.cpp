#include "practice/PracticeMerge.h"

#include <QHash>
#include <algorithm>

#include "practice/JsonText.h"

namespace qm {

namespace {

// By which an entry is found on the other side. What has no id is told by its text.
QByteArray keyOf(const LoopEntry& entry) {
    if (!entry.id.isEmpty()) return entry.id.toUtf8();
    return jsonText(QJsonObject{{QString(), entry.stored}});
}

bool isNewer(const LoopEntry& ours, const LoopEntry& theirs) {
    if (ours.moment() != theirs.moment()) return ours.moment() > theirs.moment();
    return ours.removed > 0 && theirs.removed == 0;
}

// What the file says besides is kept, whichever side is newer.
LoopEntry newerOf(const LoopEntry& ours, const LoopEntry& theirs) {
    if (!isNewer(ours, theirs)) return theirs;
    LoopEntry newer = ours;
    if (theirs.loop) newer.stored = theirs.stored;
    return newer;
}

struct KeyedEntries {
    std::vector<LoopEntry> entries;
    QHash<QByteArray, qsizetype> places;

    explicit KeyedEntries(const std::vector<LoopEntry>& from) : entries(from) {
        for (std::size_t i = 0; i < from.size(); ++i) places.insert(keyOf(from[i]), static_cast<qsizetype>(i));
    }
};

std::vector<LoopEntry> mergedLoops(const std::vector<LoopEntry>& ours, const std::vector<LoopEntry>& theirs,
                                   LoopOrder order) {
    const KeyedEntries our(ours), their(theirs);
    const bool isOurs = order == LoopOrder::Ours;
    const KeyedEntries& leading = isOurs ? our : their;
    const KeyedEntries& other = isOurs ? their : our;
    std::vector<LoopEntry> all;
    const auto add = [&](const LoopEntry& entry) {
        const QByteArray key = keyOf(entry);
        const auto one = our.places.find(key), two = their.places.find(key);
        const bool inBoth = one != our.places.end() && two != their.places.end();
        all.push_back(inBoth ? newerOf(ours[static_cast<std::size_t>(*one)], theirs[static_cast<std::size_t>(*two)])
                             : entry);
    };
    // Those that only the other side has and that follow this place there; at its beginning from -1.
    const auto addOthersBehind = [&](qsizetype place) {
        for (auto i = static_cast<std::size_t>(place + 1); i < other.entries.size(); ++i) {
            if (leading.places.contains(keyOf(other.entries[i]))) break;
            all.push_back(other.entries[i]);
        }
    };
    addOthersBehind(-1);
    for (const LoopEntry& entry : leading.entries) {
        add(entry);
        if (const auto there = other.places.find(keyOf(entry)); there != other.places.end()) addOthersBehind(*there);
    }
    return all;
}

std::optional<StoppedAt> mergedLast(const std::optional<StoppedAt>& ours, const std::optional<StoppedAt>& theirs) {
    if (!ours || !theirs) return ours ? ours : theirs;
    if (ours->changed <= theirs->changed) return theirs;
    StoppedAt newer = *ours;
    newer.stored = theirs->stored;
    return newer;
}

QJsonObject withUnknown(const QJsonObject& theirs, const QJsonObject& ours) {
    QJsonObject all = theirs;
    for (auto member = ours.begin(); member != ours.end(); ++member)
        if (!all.contains(member.key())) all.insert(member.key(), member.value());
    return all;
}

}  // namespace

PracticeRecord merged(const PracticeRecord& ours, const PracticeRecord& theirs, LoopOrder order, std::int64_t now) {
    PracticeRecord record = ours;
    record.stored = theirs.stored.isEmpty() ? ours.stored : withUnknown(theirs.stored, ours.stored);
    if (record.title.isEmpty()) record.title = theirs.title;
    if (record.artist.isEmpty()) record.artist = theirs.artist;
    for (const QString& path : theirs.paths)
        if (!record.paths.contains(path) && record.paths.size() < PracticeRecord::kMostPaths) record.paths << path;
    record.loops = mergedLoops(ours.loops, theirs.loops, order);
    std::erase_if(record.loops, [&](const LoopEntry& entry) {
        return entry.removed > 0 && entry.removed < now - PracticeRecord::kRemovalsKnown;
    });
    record.last = mergedLast(ours.last, theirs.last);
    return record;
}

}  // namespace qm
