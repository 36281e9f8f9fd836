#include <doctest/doctest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "MediaFiles.h"
#include "support/NotRun.h"

using namespace qm;
using namespace qm::test;

namespace {

ErrorCategory failureOf(const std::string& path) {
    const auto media = openMedia(path);
    REQUIRE_FALSE(media);
    CHECK_FALSE(media.error().message.empty());
    return media.error().category;
}

std::vector<std::uint8_t> movieWithEntry(const std::string& entryType) {
    Bytes entry;
    entry.repeat(0, 6).big(1, 2).repeat(0, 8).big(2, 2).big(16, 2).repeat(0, 4).big(44100u << 16, 4);
    const auto described = Bytes().big(0, 4).big(1, 4).add(box(entryType, entry.get())).get();
    const auto table = box("stbl", box("stsd", described));
    const auto movie = box("moov", box("trak", box("mdia", box("minf", table))));
    return Bytes().add(box("ftyp", Bytes().text("M4A ").big(0, 4).get())).add(movie).get();
}

}  // namespace

TEST_CASE("a file that is not there is not found") {
    const TemporaryFolder folder;
    CHECK(failureOf(folder.file("none.wav")) == ErrorCategory::NotFound);
}

TEST_CASE("a directory is unreadable") {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.file("a.mp3"));
    CHECK(failureOf(folder.file("a.mp3")) == ErrorCategory::Unreadable);
}

TEST_CASE("a pipe is refused without waiting for a writer") {
    const TemporaryFolder folder;
    REQUIRE(::mkfifo(folder.file("a.wav").c_str(), 0600) == 0);
    CHECK(failureOf(folder.file("a.wav")) == ErrorCategory::Unreadable);
}

TEST_CASE("a device is refused") {
    CHECK(failureOf("/dev/zero") == ErrorCategory::Unreadable);
}

TEST_CASE("a file without permission to read is unreadable") {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.wav", waveFile(1, 44100, 100, SampleFormat::Int16));
    ::chmod(path.c_str(), 0);
    if (::access(path.c_str(), R_OK) == 0) NOT_RUN_BECAUSE("the superuser reads everything");
    CHECK(failureOf(path) == ErrorCategory::Unreadable);
}

TEST_CASE("an empty file is an error under every name") {
    const TemporaryFolder folder;
    for (const char* name : {"a.wav", "a.mp3", "a.m4a", "a.avi", "a"}) {
        failureOf(folder.write(name, {}));
    }
}

TEST_CASE("text, play lists and pictures are refused whatever they are called") {
    const TemporaryFolder folder;
    const auto text = Bytes().text("#EXTM3U\nhttp://example.invalid/a.mp3\n").get();
    const auto concat = Bytes().text("ffconcat version 1.0\nfile '/etc/passwd'\n").get();
    const auto picture = Bytes().text("\x89PNG\r\n\x1a\n").repeat(7, 400).get();
    for (const char* name : {"a.mp3", "a.wav", "a.m4a", "a.wmv"}) {
        CHECK(failureOf(folder.write(name, text)) == ErrorCategory::Unsupported);
        CHECK(failureOf(folder.write(name, concat)) == ErrorCategory::Unsupported);
        CHECK(failureOf(folder.write(name, picture)) == ErrorCategory::Unsupported);
    }
}

namespace {

// Layer III, 48 kHz, 128 kbit/s: 384 bytes of a frame that decodes to silence.
std::vector<std::uint8_t> mpegFrame() {
    return Bytes().big(0xfffb9400, 4).repeat(0, 380).get();
}

std::vector<std::uint8_t> garbage(std::size_t bytes) {
    return Bytes().repeat(0x55, bytes).get();
}

}  // namespace

TEST_CASE("a stray frame of MPEG audio inside something else is no stream") {
    const TemporaryFolder folder;
    const auto frame = mpegFrame();
    const auto opens = [&](const Bytes& bytes) { return openSound(folder.write("a.wav", bytes.get())) != nullptr; };
    CHECK_FALSE(opens(Bytes().text("RIFX").add(garbage(1000)).add(frame)));
    CHECK_FALSE(opens(Bytes().text("OggS").add(garbage(1000)).add(frame).add(garbage(1000))));
    CHECK_FALSE(opens(Bytes().text("OggS").add(garbage(1000)).add(frame).add(frame)));
    CHECK_FALSE(opens(Bytes().text("OggS").add(garbage(1000)).add({frame.begin(), frame.begin() + 100})));
    CHECK_FALSE(opens(Bytes().text("OggS").add(garbage(1000)).add(frame).text("TAG").repeat(0, 125)));
    CHECK_FALSE(opens(Bytes().add(frame).add(garbage(1000))));
    CHECK_FALSE(opens(Bytes().add({frame.begin(), frame.begin() + 100})));
}

TEST_CASE("a few frames of MPEG audio are a stream, behind junk from three on") {
    const TemporaryFolder folder;
    const auto frame = mpegFrame();
    const auto lengthOf = [&](const Bytes& bytes) {
        const auto sound = openSound(folder.write("a.mp3", bytes.get()));
        return sound ? sound->length() : 0;
    };
    CHECK(lengthOf(Bytes().add(frame)) == 1152);
    CHECK(lengthOf(Bytes().add(frame).text("TAG").repeat(0, 125)) == 1152);
    CHECK(lengthOf(Bytes().add(frame).add(frame)) == 2 * 1152);
    CHECK(lengthOf(Bytes().add(frame).add(frame).add({frame.begin(), frame.begin() + 100})) == 3 * 1152);
    CHECK(lengthOf(Bytes().add(garbage(1000)).add(frame).add(frame).add(frame)) == 3 * 1152);
}

TEST_CASE("a wav file without a frame of sound is an error") {
    const TemporaryFolder folder;
    failureOf(folder.write("a.wav", waveFile(2, 44100, 0, SampleFormat::Int16)));
}

TEST_CASE("no channels, too many channels and absurd sample rates are errors") {
    const TemporaryFolder folder;
    for (const auto& [offset, value] :
         {std::pair{22, 0}, {22, 105}, {22, 65535}, {24, 0}, {24, 10}, {24, 0x7fffffff}}) {
        CAPTURE(value);
        auto bytes = waveFile(2, 44100, 1000, SampleFormat::Int16);
        for (int i = 0; i < (offset == 22 ? 2 : 4); ++i) {
            bytes[static_cast<std::size_t>(offset + i)] = static_cast<std::uint8_t>(value >> 8 * i);
        }
        failureOf(folder.write("a.wav", bytes));
    }
}

TEST_CASE("a header that claims more sound than the file holds gives what is there") {
    const TemporaryFolder folder;
    auto bytes = waveFile(2, 44100, 1000, SampleFormat::Int16);
    bytes[40] = bytes[41] = bytes[42] = 0xf0;
    bytes[43] = 0x7f;
    const auto sound = openSound(folder.write("a.wav", bytes));
    REQUIRE(sound);
    CHECK(sound->length() == 1000);
}

TEST_CASE("a protected movie file is refused as protected") {
    const TemporaryFolder folder;
    for (const char* entry : {"drms", "enca", "encv", "drmi"}) {
        CAPTURE(entry);
        CHECK(failureOf(folder.write("a.m4p", movieWithEntry(entry))) == ErrorCategory::Protected);
    }
}

TEST_CASE("a movie file with boxes nested without end or of no size is an error") {
    const TemporaryFolder folder;
    Bytes deep;
    for (int i = 0; i < 20000; ++i) {
        deep.big(static_cast<std::uint64_t>(8 * (20000 - i)), 4).text("moov");
    }
    failureOf(folder.write("deep.mp4", deep.get()));
    Bytes none;
    for (int i = 0; i < 20000; ++i) {
        none.big(0, 4).text("moov");
    }
    failureOf(folder.write("none.mp4", none.get()));
}

TEST_CASE("files cut anywhere and files with spoilt bytes never do harm") {
    const TemporaryFolder folder;
    const std::vector<std::vector<std::uint8_t>> sources = {waveFile(2, 44100, 400, SampleFormat::Int16),
                                                            aiffFile(2, 44100, 400), cafFile(2, 44100, 400),
                                                            movieWithEntry("mp4a")};
    std::mt19937 random(3);
    int opened = 0;
    for (const auto& source : sources) {
        for (int i = 0; i < 150; ++i) {
            auto bytes = source;
            if (i % 2 == 0) {
                bytes.resize(random() % bytes.size());
            }
            for (int k = 0; k < i % 7 && !bytes.empty(); ++k) {
                bytes[random() % std::min<std::size_t>(bytes.size(), 120)] = static_cast<std::uint8_t>(random());
            }
            if (const auto sound = openSound(folder.write("spoilt", bytes))) {
                ++opened;
                CHECK(sound->length() <= 1700);  // at most a frame a byte
                std::vector<float> part(2 * 2000);
                sound->read(0, part.data(), 2000);
            }
        }
    }
    CHECK(opened > 50);
}
