// Saves a record again and again until it is killed: practice_saver FOLDER SOUND. The title says how many loops it
// holds. Says "<" before each save and ">" behind it.
#include <cstdio>

#include "practice/PracticeFolder.h"
#include "practice/PracticeMemory.h"

namespace {

void say(char sign) {
    std::putchar(sign);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace qm;
    if (argc != 3) return 2;
    const PracticeFolder folder(QString::fromLocal8Bit(argv[1]));
    PracticeMemory memory;
    memory.load({QString::fromLocal8Bit(argv[2]), "/music/one.mp3", {}, {}, {441000, 44100}});
    if (const auto read = folder.record(memory.track().sound)) memory.found(read->record, 1);
    for (std::int64_t now = 1;; ++now) {
        auto loops = static_cast<std::int64_t>(memory.loops().size());
        if (loops >= 900) memory.remove(memory.loops().front()->id, now);
        memory.keep({{now % 300000 + loops, 400000 + now % 40000}, 1, 0}, now);
        auto unsaved = memory.takeUnsaved(true);
        if (!unsaved) continue;
        unsaved->first.title = QString::number(unsaved->first.keptLoops().size());
        say('<');
        const auto saved = folder.save(unsaved->first, unsaved->second, now);
        say('>');
        if (saved.outcome != JsonStore::Outcome::Written) return 1;
        memory.saved(saved.record, now);
    }
}
