// What an exported movie holds: the same samples, pictures that say which ones they are, and the rate. Read back with our
// own reader and, where it is installed, decoded by the ffmpeg program.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "engine/export/ExportMovie.h"
#include "engine/media/MediaFiles.h"
#include "engine/media/MovieBoxes.h"
#include "engine/video/Films.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::int64_t kFrames = 100003;
constexpr double kOneLsb = 1.0 / 32768;

#define NEEDS_ENCODER()                                          \
    if (!hasEncoder()) {                                         \
        MESSAGE("the ffmpeg program is not installed: skipped"); \
        return;                                                  \
    }

std::string exported(const TemporaryFolder& folder, const std::string& source, float rate = 1) {
    const std::string target = folder.file("exported.mov");
    auto file = FileBytes::open(source);
    REQUIRE(file);
    auto made = TargetFile::create(target);
    REQUIRE(made);
    ExportMonitor monitor;
    const auto failure = exportMovie(file.value(), *made.value(), rate, monitor);
    REQUIRE_MESSAGE(!failure, (failure ? failure->message : ""));
    REQUIRE(!made.value()->commit());
    CHECK(monitor.progress == 1);
    return target;
}

double largestDifference(const std::vector<float>& a, const std::vector<float>& b) {
    double largest = a.size() == b.size() ? 0 : 99;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        largest = std::max(largest, std::abs(double(std::clamp(a[i], -1.0f, 32767.0f / 32768)) - double(b[i])));
    return largest;
}

std::vector<float> wholeSound(const std::string& path) {
    const auto sound = openSound(path);
    return sound ? readLinearly(*sound) : std::vector<float>{};
}

void checkCopied(const TemporaryFolder& folder, const std::string& source) {
    CAPTURE(source);
    const std::string copy = exported(folder, source);
    const auto before = wholeSound(source);
    CHECK(!before.empty());
    CHECK(wholeSound(copy) == before);
    if (hasEncoder()) CHECK(decodedByProgram(copy) == decodedByProgram(source));
}

void checkDecoded(const TemporaryFolder& folder, const std::string& source) {
    CAPTURE(source);
    const std::string copy = exported(folder, source);
    const auto before = wholeSound(source);
    CHECK(!before.empty());
    CHECK(largestDifference(before, wholeSound(copy)) <= kOneLsb);
    if (hasEncoder()) CHECK(largestDifference(decodedByProgram(source), decodedByProgram(copy)) <= kOneLsb);
}

// A gliding tone with noise in it, encoded.
std::string encoded(const TemporaryFolder& folder, const std::string& arguments, const std::string& name) {
    const std::string path = folder.file(name);
    const std::string source =
        "-f lavfi -i \"aevalsrc=0.3*sin(2*PI*(200+400*t)*t)+0.05*(random(0)-0.5)|0.3*sin(2*PI*(290+400*t)*t):s=44100,"
        "atrim=end_sample=100003\" ";
    CAPTURE(arguments);
    REQUIRE(encode(source + arguments, path));
    return path;
}

struct Encoded {
    const char* arguments;
    const char* name;
};

}  // namespace

TEST_CASE("uncompressed sound is copied sample by sample") {
    const TemporaryFolder folder;
    for (const auto format : {SampleFormat::Int8, SampleFormat::Int16, SampleFormat::Int24, SampleFormat::Float32})
        checkCopied(folder, folder.write("a.wav", waveFile(2, 44100, kFrames, format)));
    checkCopied(folder, folder.write("mono.wav", waveFile(1, 8000, 5001, SampleFormat::Int16)));
    checkCopied(folder, folder.write("fast.wav", waveFile(2, 192000, kFrames, SampleFormat::Int24)));
    checkCopied(folder, folder.write("a.aiff", aiffFile(2, 48000, kFrames)));
    checkCopied(folder, folder.write("a.caf", cafFile(2, 44100, kFrames)));
}

TEST_CASE("sound that a movie truly holds is copied packet by packet") {
    NEEDS_ENCODER();
    const TemporaryFolder folder;
    for (const Encoded& e : {Encoded{"-c:a aac -aac_pns 0", "a.m4a"},
                             {"-c:a aac -aac_pns 0 -ar 22050 -ac 1", "mono.m4a"},
                             {"-c:a alac", "alac.m4a"},
                             {"-c:a alac", "alac.caf"},
                             {"-c:a alac -sample_fmt s32p", "alac24.m4a"},
                             {"-c:a libmp3lame -b:a 128k -write_xing 0", "plain.mp3"},
                             {"-c:a libmp3lame -q:a 4 -write_xing 0", "variable.mp3"},
                             {"-c:a ac3", "ac3.mov"},
                             {"-c:a pcm_mulaw", "mulaw.wav"},
                             {"-c:a pcm_alaw", "alaw.aifc"},
                             {"-c:a pcm_s16le", "sowt.mov"},
                             {"-c:a pcm_f64le", "double.wav"}})
        checkCopied(folder, encoded(folder, e.arguments, e.name));
}

TEST_CASE("sound that it does not hold, or not to its exact end, becomes 16-bit samples") {
    NEEDS_ENCODER();
    const TemporaryFolder folder;
    for (const Encoded& e : {Encoded{"-c:a libmp3lame -b:a 128k", "constant.mp3"},
                             {"-c:a libmp3lame -q:a 4 -ac 1", "variable.mp3"},
                             {"-c:a adpcm_ms", "ms.wav"},
                             {"-c:a adpcm_ima_wav", "ima.wav"},
                             {"-c:a adpcm_ima_qt -f aiff", "ima.aifc"},
                             {"-c:a flac -strict -2", "flac.mp4"}})
        checkDecoded(folder, encoded(folder, e.arguments, e.name));
}
