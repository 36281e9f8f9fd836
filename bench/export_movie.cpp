// What an export costs: bench_export_movie FILE TARGET
// Prints its time against the length of the file, and the most memory that the process held before it and in all.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>

#include "engine/export/ExportMovie.h"
#include "engine/media/SoundReader.h"

namespace {

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: bench_export_movie FILE TARGET\n", stderr);
        return 2;
    }
    const auto opened = qm::openMedia(argv[1]);
    if (!opened) {
        std::fprintf(stderr, "%s\n", opened.error().message.c_str());
        return 1;
    }
    auto target = qm::TargetFile::create(argv[2]);
    if (!target) {
        std::fprintf(stderr, "%s: %s\n", argv[2], target.error().message.c_str());
        return 1;
    }
    const double before = peakMiB();
    const auto begin = std::chrono::steady_clock::now();
    qm::ExportMonitor monitor;
    auto failure = qm::exportMovie(opened.value().file, *target.value(), 1, monitor);
    if (!failure) failure = target.value()->commit();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    if (failure) {
        std::fprintf(stderr, "%s\n", failure->message.c_str());
        return 1;
    }
    std::printf("%.0f s long, exported in %.1f s; at most %.1f MiB opened, %.1f MiB exported\n",
                opened.value().description.durationSeconds, seconds, before, peakMiB());
    return 0;
}
