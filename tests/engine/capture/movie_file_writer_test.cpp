#include "engine/capture/MovieFileWriter.h"

#include <doctest/doctest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <limits>
#include <random>

#include "../media/MediaFiles.h"
#include "engine/capture/MovieHeader.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr int kRate = 44100;

StereoFrame frameNumber(std::int64_t n) {
    return {float(codedSample(n, 0)) / 32768, float(codedSample(n, 1)) / 32768};
}

std::vector<StereoFrame> framesFrom(std::int64_t first, std::size_t count) {
    std::vector<StereoFrame> frames(count);
    for (std::size_t i = 0; i < count; ++i) frames[i] = frameNumber(first + std::int64_t(i));
    return frames;
}

// How many frames the file holds, which have to be the coded ones from the first on; -1 when it is no movie.
std::int64_t codedFramesIn(const std::string& path) {
    const auto sound = openSound(path);
    if (!sound || sound->sampleRate() != kRate || sound->channels() != 2) return -1;
    const auto samples = readLinearly(*sound);
    for (std::size_t n = 0; 2 * n < samples.size(); ++n) {
        const StereoFrame wanted = frameNumber(std::int64_t(n));
        CAPTURE(n);
        if (samples[2 * n] != wanted.left || samples[2 * n + 1] != wanted.right) return -1;
    }
    return std::int64_t(samples.size() / 2);
}

std::int64_t codedFramesByProgram(const std::string& path) {
    const auto samples = decodedByProgram(path);
    for (std::size_t n = 0; 2 * n < samples.size(); ++n) {
        const StereoFrame wanted = frameNumber(std::int64_t(n));
        if (samples[2 * n] != wanted.left || samples[2 * n + 1] != wanted.right) return -1;
    }
    return std::int64_t(samples.size() / 2);
}

// Writes coded frames without an end, and says through the pipe how many it has handed to the file.
[[noreturn]] void writeUntilKilled(const std::string& path, int pipeEnd) {
    auto file = MovieFileWriter::create(path, kRate);
    std::int64_t frames = 0;
    while (file) {
        if (file.value()->append(framesFrom(frames, 441))) break;
        frames += 441;
        if (write(pipeEnd, &frames, sizeof(frames)) != sizeof(frames)) break;
    }
    _exit(1);
}

// The number of frames that a process had handed to the file when it was killed.
std::int64_t writeAndKill(const std::string& path, int blocks) {
    int ends[2];
    REQUIRE(pipe(ends) == 0);
    const pid_t child = fork();
    if (child == 0) writeUntilKilled(path, ends[1]);
    close(ends[1]);
    std::int64_t handedOver = 0;
    for (int i = 0; i < blocks; ++i) REQUIRE(read(ends[0], &handedOver, sizeof(handedOver)) == sizeof(handedOver));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ends[0]);
    return handedOver;
}

// Appends half-second blocks where files may not grow beyond a size; the exit status of that process.
int writeUpTo(rlim_t bytes, const std::string& path) {
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, bytes};
        auto file = MovieFileWriter::create(path, kRate);
        if (!file || setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(1);
        for (std::int64_t n = 0; n < 100 * kRate; n += kRate / 2)
            if (const auto error = file.value()->append(framesFrom(n, kRate / 2))) {
                file.value()->finish();
                _exit(error->category == ErrorCategory::Unwritable ? 0 : 2);
            }
        _exit(3);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

}  // namespace

TEST_CASE("a recorded movie holds every frame as it came") {
    const TemporaryFolder folder;
    const std::string path = folder.file("whole.mov");
    auto file = MovieFileWriter::create(path, kRate);
    REQUIRE(file);
    std::int64_t frames = 0;
    for (const std::size_t count : {1u, 440u, 4096u, 4097u, 100000u, 7u}) {
        CHECK_FALSE(file.value()->append(framesFrom(frames, count)));
        frames += std::int64_t(count);
    }
    file.value()->finish();
    CHECK(file.value()->frames() == frames);
    CHECK(codedFramesIn(path) == frames);
    CHECK(codedFramesByProgram(path) == frames);
    CHECK(std::filesystem::file_size(path) == movieHeader({kRate, 0, true}).size() + std::size_t(frames) * 4);
}

TEST_CASE("a recording without a frame is a movie, too") {
    const TemporaryFolder folder;
    const std::string path = folder.file("empty.mov");
    { REQUIRE(MovieFileWriter::create(path, kRate)); }
    CHECK(std::filesystem::file_size(path) == movieHeader({kRate, 0, true}).size());
}

TEST_CASE("a recording replaces what stood in the file") {
    const TemporaryFolder folder;
    const std::string path = folder.write("old.mov", std::vector<std::uint8_t>(500000, 7));
    {
        auto file = MovieFileWriter::create(path, kRate);
        REQUIRE(file);
        file.value()->append(framesFrom(0, 1000));
    }
    CHECK(codedFramesIn(path) == 1000);
}

TEST_CASE("samples are rounded to sixteen bits and clipped at full scale") {
    const TemporaryFolder folder;
    const std::string path = folder.file("clipped.mov");
    {
        auto file = MovieFileWriter::create(path, kRate);
        REQUIRE(file);
        file.value()->append(std::vector<StereoFrame>{{1.0f, -1.0f},
                                                      {1e9f, -1e9f},
                                                      {0.4f / 32768, 0.6f / 32768},
                                                      {std::numeric_limits<float>::quiet_NaN(), -0.6f / 32768}});
    }
    const auto sound = openSound(path);
    REQUIRE(sound);
    const auto samples = readLinearly(*sound);
    const std::vector<float> wanted = {32767, -32768, 32767, -32768, 0, 1, 0, -1};
    REQUIRE(samples.size() == wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) CHECK(samples[i] * 32768 == wanted[i]);
}

TEST_CASE("killed at any moment, all but the last second of a recording is a movie") {
    const TemporaryFolder folder;
    std::mt19937 random(20);
    for (int trial = 0; trial < 12; ++trial) {
        const std::string path = folder.file("killed.mov");
        const int blocks = std::uniform_int_distribution(1, 700)(random);
        CAPTURE(blocks);
        const std::int64_t handedOver = writeAndKill(path, blocks);
        if (handedOver < kRate) continue;
        const std::int64_t readable = codedFramesIn(path);
        CHECK(readable > handedOver - kRate);
        if (trial < 4) CHECK(codedFramesByProgram(path) == readable);
    }
}

TEST_CASE("when the disk is full, a recording ends with the last frame that fitted") {
    const TemporaryFolder folder;
    const std::string path = folder.file("full.mov");
    const std::size_t header = movieHeader({kRate, 0, true}).size();
    for (const std::size_t room : {std::size_t{0}, std::size_t{4 * 1000}, std::size_t{4 * 123456 + 3}}) {
        CAPTURE(room);
        CHECK(writeUpTo(header + room, path) == 0);
        CHECK(std::filesystem::file_size(path) == header + room / 4 * 4);
        if (room > 0) CHECK(codedFramesIn(path) == std::int64_t(room / 4));
    }
}

TEST_CASE("a file that cannot be made is an error in the system's words") {
    const auto file = MovieFileWriter::create("/nowhere/at/all.mov", kRate);
    REQUIRE_FALSE(file);
    CHECK(file.error().category == ErrorCategory::Unwritable);
    CHECK(file.error().message == "No such file or directory");
}

TEST_CASE("the header keeps its length while the sound grows past four gigabytes") {
    const std::string start = movieHeader({kRate, 0, false});
    const std::string open = movieHeader({kRate, 4000000000u, false});
    const std::string finished = movieHeader({kRate, 4000000000u, true});
    CHECK(open.size() == start.size());
    CHECK(finished.size() == start.size());
    std::uint64_t soundBox = 0;
    for (const char byte : finished.substr(finished.size() - 8)) soundBox = soundBox << 8 | std::uint8_t(byte);
    CHECK(soundBox == 16 + 4000000000u * std::uint64_t{4});
}
