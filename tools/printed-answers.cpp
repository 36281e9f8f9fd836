#include "printed-answers.h"

#include <cstdio>

#include "engine/analysis/Attacks.h"
#include "engine/analysis/Columns.h"

namespace qm {

int printAttacks(SoundReader& sound, std::int64_t begin, std::int64_t end) {
    static constexpr const char* kNames[] = {"low", "medium", "high"};
    for (const Attack& attack : attacksBetween(sound, begin, end))
        std::printf("%.5f %s %.3f\n", static_cast<double>(attack.frame) / sound.sampleRate(),
                    kNames[static_cast<int>(attack.confidence)], static_cast<double>(attack.strength));
    return 0;
}

int printColumns(SoundReader& sound, std::int64_t begin, std::int64_t end, std::int64_t count) {
    for (const Column& column : exactColumns(sound, begin, end, count))
        std::printf("%.9g %.9g %.9g\n", static_cast<double>(column.least), static_cast<double>(column.most),
                    static_cast<double>(column.loudness));
    return 0;
}

}  // namespace qm
