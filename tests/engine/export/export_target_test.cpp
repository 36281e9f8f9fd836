// Where an exported movie goes: whole or not at all, whatever stands in the way.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include "engine/api/Log.h"
#include "engine/export/Exports.h"
#include "engine/export/FileExport.h"
#include "engine/media/MovieBoxes.h"
#include "support/NotRun.h"

using namespace qm;
using namespace qm::test;

namespace {

struct Stage {
    TemporaryFolder folder;
    std::string source = folder.write("source.wav", waveFile(2, 44100, 30011, SampleFormat::Int16));
    std::string out = folder.file("out");
    std::string target = out + "/exported.mov";
    std::shared_ptr<Reaper> reaper = std::make_shared<Reaper>();

    Stage() { std::filesystem::create_directory(out); }
};

std::string contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

double statedRate(const std::string& path) {
    const auto file = FileBytes::open(path);
    return file ? readMovieFacts(*file.value()).preferredRate : 99;
}

void awaitEnd(const MovieExport& running) {
    while (!running.isFinished()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

std::shared_ptr<const FileBytes> opened(const std::string& path) {
    auto file = FileBytes::open(path);
    REQUIRE(file);
    return file.value();
}

// The lines logged while it lives.
struct LogLines {
    std::vector<std::string> lines;
    std::mutex mutex;
    LogLines() {
        setLogSink([this](std::string_view line) {
            const std::lock_guard lock(mutex);
            lines.emplace_back(line);
        });
    }
    ~LogLines() { setLogSink({}); }
};

}  // namespace

TEST_CASE("the movie states the rate it is to be played at") {
    const Stage stage;
    for (const float rate : {0.5f, 1.0f, -0.35f, 2.5f, 0.0f}) {
        CAPTURE(rate);
        CHECK(statedRate(exported(stage.folder, stage.source, rate)) == doctest::Approx(rate).epsilon(1e-4));
    }
    CHECK(wholeSound(stage.folder.file("exported.mov")) == wholeSound(stage.source));
}

TEST_CASE("the movie plays when the source is gone") {
    const Stage stage;
    const auto before = wholeSound(stage.source);
    REQUIRE(exportFailure(stage.source, stage.target).empty());
    std::filesystem::remove(stage.source);
    CHECK(wholeSound(stage.target) == before);
}

TEST_CASE("an export over the file it is made from leaves the whole movie there") {
    const Stage stage;
    const auto before = wholeSound(stage.source);
    const auto file = opened(stage.source);
    FileExport running(file, stage.source, 0.5f, stage.reaper);
    awaitEnd(running);
    CHECK(wholeSound(stage.source) == before);
    CHECK(statedRate(stage.source) == 0.5);
    CHECK(hiddenFiles(stage.folder.file("")).empty());
}

TEST_CASE("an export of a file that was renamed or removed meanwhile succeeds") {
    const Stage stage;
    const auto before = wholeSound(stage.source);
    const auto file = opened(stage.source);
    std::filesystem::remove(stage.source);
    FileExport running(file, stage.target, 1, stage.reaper);
    awaitEnd(running);
    CHECK(wholeSound(stage.target) == before);
}

TEST_CASE("a folder that is not there, or is none, is a failure and nothing else") {
    const Stage stage;
    CHECK(exportFailure(stage.source, stage.out + "/absent/a.mov") == "No such file or directory");
    CHECK(exportFailure(stage.source, stage.source + "/a.mov") == "Not a directory");
    CHECK(exportFailure(stage.source, stage.out + "/" + std::string(300, 'a')) == "File name too long");
    CHECK(hiddenFiles(stage.out).empty());
}

TEST_CASE("what is not a regular file is never replaced") {
    const Stage stage;
    std::filesystem::create_directory(stage.target);
    REQUIRE(::mkfifo((stage.out + "/pipe").c_str(), 0600) == 0);
    CHECK(exportFailure(stage.source, stage.target) == "not a regular file");
    CHECK(exportFailure(stage.source, stage.out + "/pipe") == "not a regular file");
    CHECK(std::filesystem::is_directory(stage.target));
    CHECK(std::filesystem::is_fifo(stage.out + "/pipe"));
    CHECK(exportFailure(stage.source, "/dev/full") == "not a regular file");
}

TEST_CASE("a file that cannot be written, and a folder in which none can be made, stay as they are") {
    if (::geteuid() == 0) NOT_RUN_BECAUSE("the superuser may write everywhere");
    const Stage stage;
    std::ofstream(stage.target) << "as it was";
    std::filesystem::permissions(stage.target, std::filesystem::perms::owner_read);
    CHECK(exportFailure(stage.source, stage.target) == "Permission denied");
    CHECK(contents(stage.target) == "as it was");
    std::filesystem::permissions(stage.out, std::filesystem::perms(0500));
    CHECK(exportFailure(stage.source, stage.out + "/other.mov") == "Permission denied");
    std::filesystem::permissions(stage.out, std::filesystem::perms(0700));
}

TEST_CASE("a source that cannot be exported leaves the file that was there") {
    const Stage stage;
    std::ofstream(stage.target) << "as it was";
    const std::string text = stage.folder.write("text.mp3", Bytes().text("no sound at all").get());
    CHECK_FALSE(exportFailure(text, stage.target).empty());
    CHECK(contents(stage.target) == "as it was");
    CHECK(hiddenFiles(stage.out).empty());
}

TEST_CASE("a folder that vanishes meanwhile is a failure") {
    const Stage stage;
    auto made = TargetFile::create(stage.target);
    REQUIRE(made);
    ExportMonitor monitor;
    const auto failure = exportMovie(opened(stage.source), *made.value(), 1, monitor);
    std::filesystem::remove_all(stage.out);
    const bool failed = failure || made.value()->commit();
    CHECK(failed);
    CHECK_FALSE(std::filesystem::exists(stage.out));
}

TEST_CASE("a file that exists is replaced as a whole and keeps who may read it") {
    const Stage stage;
    std::ofstream(stage.target) << std::string(10000000, 'x');
    std::filesystem::permissions(stage.target, std::filesystem::perms(0640));
    REQUIRE(exportFailure(stage.source, stage.target).empty());
    CHECK(wholeSound(stage.target) == wholeSound(stage.source));
    CHECK(std::filesystem::status(stage.target).permissions() == std::filesystem::perms(0640));
    CHECK(std::filesystem::file_size(stage.target) < 200000);
}

TEST_CASE("a cancelled export leaves nothing, at once, and the file that was there") {
    const Stage stage;
    const std::string large = stage.folder.write("large.wav", waveFile(2, 44100, 3000000, SampleFormat::Int16));
    std::ofstream(stage.target) << "as it was";
    LogLines log;
    {
        FileExport running(opened(large), stage.target, 1, stage.reaper);
        running.cancel();
        CHECK(hiddenFiles(stage.out).empty());
        awaitEnd(running);
    }
    CHECK(contents(stage.target) == "as it was");
    CHECK(hiddenFiles(stage.out).empty());
    CHECK(log.lines.size() == 1);
}

TEST_CASE("an export that is let go of leaves nothing, now and when its thread has ended") {
    Stage stage;
    const std::string large = stage.folder.write("large.wav", waveFile(2, 44100, 3000000, SampleFormat::Int16));
    { const FileExport running(opened(large), stage.target, 1, stage.reaper); }
    CHECK(hiddenFiles(stage.out).empty());
    stage.reaper.reset();
    CHECK(hiddenFiles(stage.out).empty());
    CHECK_FALSE(std::filesystem::exists(stage.target));
}

TEST_CASE("an export that fails is one line in the log, and it is finished") {
    const Stage stage;
    LogLines log;
    FileExport running(opened(stage.source), stage.out + "/absent/a.mov", 1, stage.reaper);
    awaitEnd(running);
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines.front() == "cannot export to " + stage.out + "/absent/a.mov: No such file or directory");
}

TEST_CASE("a disk that is full ends the export, and the file that was there stays") {
    const Stage stage;
    rlimit former{};
    REQUIRE(::getrlimit(RLIMIT_FSIZE, &former) == 0);
    const auto formerSignal = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{50000, former.rlim_max};
    std::ofstream(stage.target) << "as it was";
    REQUIRE(::setrlimit(RLIMIT_FSIZE, &limit) == 0);
    const std::string failure = exportFailure(stage.source, stage.target);
    REQUIRE(::setrlimit(RLIMIT_FSIZE, &former) == 0);
    std::signal(SIGXFSZ, formerSignal);
    CHECK(failure == "File too large");
    CHECK(contents(stage.target) == "as it was");
    CHECK(hiddenFiles(stage.out).empty());
}
