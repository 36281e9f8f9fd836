// What is kept of one track: its loops and where it was left. Values. Times are frames of `scale`, which is frames per
// second; moments are milliseconds since 1970 in UTC. Each value remembers the object of the file it was read from
// (`stored`), so that what this program does not know, or cannot read, is written again as it stood.
#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

namespace qm {

struct KeptLoop {
    QString id;
    QString name;
    std::int64_t a = 0;
    std::int64_t b = 0;
    std::optional<double> speed;  // none: as it is
    std::optional<double> cents;
    std::optional<double> bpm;
    std::int64_t changed = 0;

    // Whether it can be played in a track of this length.
    bool fits(std::int64_t length) const { return a >= 0 && a < b && b <= length; }
};

struct StoppedAt {
    std::int64_t position = 0;
    std::int64_t a = 0;
    std::int64_t b = 0;
    double speed = 1;
    double cents = 0;
    std::int64_t bass = 128;
    std::int64_t treble = 128;
    std::int64_t changed = 0;
    QJsonObject stored;
};

// A loop, a loop that was removed, or something in its place that cannot be read.
struct LoopEntry {
    QString id;  // empty only where it cannot be read
    std::optional<KeptLoop> loop;
    std::int64_t removed = 0;  // when
    QJsonValue stored;

    std::int64_t moment() const;  // of its newest change
};

struct PracticeRecord {
    static constexpr qsizetype kMostLoops = 1000;
    static constexpr qsizetype kMostPaths = 8;
    static constexpr qsizetype kLongestName = 200;
    static constexpr std::int64_t kRemovalsKnown = 90ll * 24 * 3600 * 1000;  // for so many milliseconds

    QString sound;
    std::int64_t scale = 0;
    QString title;
    QString artist;
    QStringList paths;  // the newest first
    std::vector<LoopEntry> loops;
    std::optional<StoppedAt> last;
    QJsonObject stored;

    std::vector<const KeptLoop*> keptLoops() const;
    void putPathInFront(const QString& path);

    // The same moments of the track in another scale.
    PracticeRecord inScale(std::int64_t other) const;
};

}  // namespace qm
