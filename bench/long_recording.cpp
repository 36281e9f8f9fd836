// A recording of many hours, as fast as the disk takes it: the memory it holds after each quarter, and whether the file
// is a movie of so many frames. Usage: bench_long_recording FILE.mov [SECONDS]
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Memory.h"
#include "engine/capture/MovieFileWriter.h"
#include "engine/media/SoundReader.h"

using namespace qm;

namespace {

constexpr int kRate = 44100;

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const long seconds = argc > 2 ? std::atol(argv[2]) : 7200;
    auto file = MovieFileWriter::create(argv[1], kRate);
    if (!file) return 1;
    const std::vector<StereoFrame> tenth(kRate / 10, {0.25f, -0.25f});
    for (long n = 0; n < seconds * 10; ++n) {
        if (n % (seconds * 10 / 4) == 0) std::printf("after %ld s: %.1f MiB\n", n / 10, bench::residentMiB());
        if (const auto error = file.value()->append(tenth)) {
            std::printf("failed: %s\n", error->message.c_str());
            return 1;
        }
    }
    file.value()->finish();
    std::printf("after %ld s: %.1f MiB\n", seconds, bench::residentMiB());
    const auto media = openMedia(argv[1]);
    const bool whole = media && media.value().sound && media.value().sound->length() == seconds * kRate;
    std::printf("%s\n", whole ? "the movie holds every frame" : "the movie does not hold every frame");
    return whole ? 0 : 1;
}
