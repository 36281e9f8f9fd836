// Films whose pictures say which ones they are: made by the ffmpeg program, or computed.
#pragma once

#include <atomic>
#include <cmath>
#include <string>

#include "engine/media/SoundReader.h"
#include "engine/media/VideoReader.h"

namespace qm::test {

// The number that a coded picture carries, as twelve black or white fields in a row; -1 if it is none.
int numberOf(const VideoPicture& picture);

// Writes a film of so many numbered pictures with a tone. `coding` are options of the encoders.
bool makeFilm(const std::string& path, int pictures, const std::string& rate, const std::string& coding,
              const std::string& size = "192x64");

// The same at 25 pictures a second, with a tone that may end before or after them.
bool makeUnevenFilm(const std::string& path, int pictures, double toneSeconds, const std::string& coding);

// A film that is computed: picture n begins at n / perSecond, key pictures come every `group`, and reading one costs
// what `onDecode` does. How often it sought and read is counted.
struct ComputedFilm {
    int pictures = 500;
    double perSecond = 25;
    int group = 50;
    double first = 0;
    std::function<void()> onDecode = [] {};
    int seeks = 0;
    int reads = 0;
    std::atomic<int> conversions = 0;
    std::size_t bytesPerPicture = 1000;
    std::int64_t pixels = 64 * 36;

    VideoOpener opener();
};

}  // namespace qm::test
