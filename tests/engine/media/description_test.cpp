#include <doctest/doctest.h>

#include "MediaFiles.h"

using namespace qm;
using namespace qm::test;

namespace {

std::vector<std::uint8_t> waveWithTitle(const std::string& title) {
    Bytes file;
    const std::string padded = title + std::string(2 - title.size() % 2, '\0');
    const auto sound = waveFile(1, 44100, 500, SampleFormat::Int16);
    file.add({sound.begin(), sound.begin() + 36});
    file.text("LIST").little(12 + padded.size(), 4).text("INFOINAM").little(padded.size(), 4).text(padded);
    file.add({sound.begin() + 36, sound.end()});
    return file.get();
}

std::string nameOf(const std::string& path) {
    const auto media = openMedia(path);
    REQUIRE(media);
    return media.value().description.displayName;
}

}  // namespace

TEST_CASE("a file is named by its embedded title") {
    const TemporaryFolder folder;
    CHECK(nameOf(folder.write("a.wav", waveWithTitle("Blue Train"))) == "Blue Train");
}

TEST_CASE("a file with a blank title is named by its file name with the extension") {
    const TemporaryFolder folder;
    CHECK(nameOf(folder.write("My song.wav", waveWithTitle("   "))) == "My song.wav");
    CHECK(nameOf(folder.write("b.aiff", aiffFile(1, 44100, 500))) == "b.aiff");
}

TEST_CASE("a title that is not UTF-8 is taken for Latin-1") {
    const TemporaryFolder folder;
    CHECK(nameOf(folder.write("a.wav", waveWithTitle("Caf\xe9"))) == "Caf\xc3\xa9");
}

TEST_CASE("the description of a sound file has sound, no video and the exact duration") {
    const TemporaryFolder folder;
    const auto media = openMedia(folder.write("a.wav", waveFile(2, 8000, 12000, SampleFormat::Int16)));
    REQUIRE(media);
    CHECK(media.value().description.hasSound);
    CHECK_FALSE(media.value().description.hasVideo);
    CHECK(media.value().description.durationSeconds == doctest::Approx(1.5));
}
