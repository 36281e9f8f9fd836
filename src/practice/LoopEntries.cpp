#include "practice/LoopEntries.h"

#include <QRandomGenerator>
#include <algorithm>
#include <iterator>
#include <utility>

namespace qm {

namespace {

LoopEntries::iterator find(LoopEntries& entries, const QString& id) {
    return std::find_if(entries.begin(), entries.end(), [&](const LoopEntry& entry) { return entry.id == id; });
}

}  // namespace

std::int64_t laterThan(std::int64_t former, std::int64_t moment) {
    return std::max(moment, former + 1);
}

KeptLoop* findLoop(LoopEntries& entries, const QString& id) {
    for (LoopEntry& entry : entries)
        if (entry.loop && entry.id == id) return &*entry.loop;
    return nullptr;
}

QString freeLoopId(const LoopEntries& entries) {
    while (true) {
        const QString id = QString::number(QRandomGenerator::global()->generate64(), 16).rightJustified(16, u'0');
        if (std::none_of(entries.begin(), entries.end(), [&](const LoopEntry& entry) { return entry.id == id; }))
            return id;
    }
}

bool moveLoop(LoopEntries& entries, const QString& id, int place) {
    std::vector<std::ptrdiff_t> places;
    std::ptrdiff_t from = -1;
    for (std::ptrdiff_t i = 0; i < std::ssize(entries); ++i) {
        const LoopEntry& entry = entries[static_cast<std::size_t>(i)];
        if (entry.loop) places.push_back(i);
        if (entry.loop && entry.id == id) from = i;
    }
    if (from < 0) return false;
    const std::ptrdiff_t to =
        places[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(place, 0, std::ssize(places) - 1))];
    const auto begin = entries.begin();
    if (from < to) std::rotate(begin + from, begin + from + 1, begin + to + 1);
    if (to < from) std::rotate(begin + to, begin + from, begin + from + 1);
    return from != to;
}

std::optional<RemovedLoop> removeLoop(LoopEntries& entries, const QString& id, std::int64_t moment) {
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [&](const LoopEntry& one) { return one.loop && one.id == id; });
    if (entry == entries.end()) return std::nullopt;
    RemovedLoop removed{*entry->loop, entry->stored, static_cast<std::size_t>(entry - entries.begin())};
    entry->removed = laterThan(entry->loop->changed, moment);
    entry->loop.reset();
    return removed;
}

void bringBackLoop(LoopEntries& entries, RemovedLoop removed, std::int64_t moment) {
    auto place = entries.begin() + static_cast<std::ptrdiff_t>(std::min(removed.place, entries.size()));
    if (const auto former = find(entries, removed.loop.id); former != entries.end()) {
        moment = laterThan(former->moment(), moment);
        place = entries.erase(former);
    }
    removed.loop.changed = laterThan(removed.loop.changed, moment);
    const QString id = removed.loop.id;
    entries.insert(place, {.id = id, .loop = std::move(removed.loop), .removed = 0, .stored = removed.stored});
}

}  // namespace qm
