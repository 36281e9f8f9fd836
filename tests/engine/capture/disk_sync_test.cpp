// What of a recording is on the disk, and who waits for it. The system's calls that write to the disk are replaced here
// by ones that look at the file, and stand still when a test wants it.
#include <doctest/doctest.h>
#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include "../media/MediaFiles.h"
#include "engine/capture/MovieFileOutput.h"
#include "engine/capture/MovieHeader.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr int kRate = 44100;

struct Disk {
    std::atomic<bool> standsStill{false};
    std::atomic<std::int64_t> soundSynced{0};  // bytes of the file that was synced last
    std::atomic<int> soundSyncs{0};
    std::atomic<int> folderSyncs{0};
    std::atomic<int> wholeSyncs{0};
} disk;

void waitWhileItStands() {
    while (disk.standsStill) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

std::vector<StereoFrame> framesFrom(std::int64_t first, std::size_t count) {
    std::vector<StereoFrame> frames(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::int64_t n = first + std::int64_t(i);
        frames[i] = {float(codedSample(n, 0)) / 32768, float(codedSample(n, 1)) / 32768};
    }
    return frames;
}

// How many frames the file's header counts.
std::uint32_t framesInHeader(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    const std::string content = bytes.str();
    constexpr std::size_t kDuration = 4 + 4 + 8 + 4;  // behind the box's name: version, dates, time scale
    const std::size_t at = content.find("mvhd") + kDuration;
    REQUIRE(at + 4 <= content.size());
    std::uint32_t frames = 0;
    for (std::size_t i = 0; i < 4; ++i) frames = frames << 8 | std::uint8_t(content[at + i]);
    return frames;
}

std::size_t soundBegins() {
    return movieHeader({kRate, 0, false}).size();
}

}  // namespace

extern "C" int fdatasync(int descriptor) {
    struct stat status {};
    fstat(descriptor, &status);
    disk.soundSynced = status.st_size;
    ++disk.soundSyncs;
    waitWhileItStands();
    return 0;
}

extern "C" int fsync(int descriptor) {
    struct stat status {};
    fstat(descriptor, &status);
    ++(S_ISDIR(status.st_mode) ? disk.folderSyncs : disk.wholeSyncs);
    waitWhileItStands();
    return 0;
}

TEST_CASE("before the header counts a frame, the frame is on the disk") {
    const TemporaryFolder folder;
    const std::string path = folder.file("take.mov");
    auto file = MovieFileWriter::create(path, kRate);
    REQUIRE(file);
    const int syncsBefore = disk.soundSyncs, foldersBefore = disk.folderSyncs;
    std::int64_t frames = 0;
    for (int i = 0; i < 100; ++i) {
        REQUIRE_FALSE(file.value()->append(framesFrom(frames, 4410)));
        frames += 4410;
        const std::uint32_t counted = framesInHeader(path);
        CHECK(frames - counted < kRate);
        if (counted > 0)
            CHECK(disk.soundSynced >= std::int64_t(soundBegins()) + std::int64_t{counted} * kRecordedFrameBytes);
    }
    CHECK(disk.soundSyncs - syncsBefore >= 10);
    CHECK(disk.folderSyncs - foldersBefore == 1);
}

TEST_CASE("the end of a recording goes to the disk, and nobody waits for it") {
    const TemporaryFolder folder;
    const int before = disk.wholeSyncs;
    auto file = MovieFileWriter::create(folder.file("take.mov"), kRate);
    REQUIRE(file);
    REQUIRE_FALSE(file.value()->append(framesFrom(0, 1000)));
    disk.standsStill = true;
    file.value()->finish();
    disk.standsStill = false;
    while (disk.wholeSyncs == before) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    CHECK(framesInHeader(folder.file("take.mov")) == 1000);
}

TEST_CASE("while the disk stands still, sound goes on coming, and none of it is lost") {
    const TemporaryFolder folder;
    const std::string path = folder.file("take.mov");
    MovieFileOutput output;
    output.setSampleRate(kRate);
    output.recordToOutputFileURL(path);
    const int before = disk.soundSyncs;
    disk.standsStill = true;
    std::int64_t frames = 0;
    for (; disk.soundSyncs == before; frames += 441) {
        output.take(framesFrom(frames, 441));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const std::int64_t waiting = frames + 8 * kRate;
    for (; frames < waiting; frames += 441) output.take(framesFrom(frames, 441));
    disk.standsStill = false;
    output.recordToOutputFileURL(std::nullopt);
    CHECK_FALSE(output.error());
    CHECK(framesInHeader(path) == frames);
    const auto sound = openSound(path);
    REQUIRE(sound);
    const auto samples = readLinearly(*sound);
    REQUIRE(samples.size() == 2 * std::size_t(frames));
    const auto wanted = framesFrom(0, std::size_t(frames));
    bool same = true;
    for (std::size_t n = 0; n < wanted.size(); ++n)
        same = same && StereoFrame{samples[2 * n], samples[2 * n + 1]} == wanted[n];
    CHECK(same);
}
