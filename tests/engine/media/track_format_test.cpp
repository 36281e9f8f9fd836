#include <doctest/doctest.h>

#include "engine/media/MediaFiles.h"

using namespace qm;
using namespace qm::test;

namespace {

// A line for each track.
std::string formatsOf(const std::string& path) {
    const auto media = openMedia(path);
    REQUIRE(media);
    std::string lines;
    for (const auto& format : media.value().description.trackFormats) {
        lines += format.value_or("unknown") + '\n';
    }
    return lines;
}

std::string formatsOf(const std::string& name, const std::vector<std::uint8_t>& content) {
    const TemporaryFolder folder;
    return formatsOf(folder.write(name, content));
}

std::string encodedFormats(const std::string& arguments, const std::string& name) {
    const TemporaryFolder folder;
    REQUIRE(encode(arguments, folder.file(name)));
    return formatsOf(folder.file(name));
}

const std::string kTone = "-f lavfi -i sine=d=0.2:r=44100 ";
const std::string kPicture = "-f lavfi -i testsrc=d=0.4:s=320x240:r=10 ";

}  // namespace

TEST_CASE("plain sound says its width, its channels and its rate") {
    CHECK(formatsOf("a", waveFile(1, 8000, 100, SampleFormat::Int16)) == "16-bit PCM, Mono, 8.000 kHz\n");
    CHECK(formatsOf("a", waveFile(2, 44100, 100, SampleFormat::Int24)) == "24-bit PCM, Stereo, 44.100 kHz\n");
    CHECK(formatsOf("a", waveFile(2, 22050, 100, SampleFormat::Float32)) == "32-bit float PCM, Stereo, 22.050 kHz\n");
    CHECK(formatsOf("a", waveFile(4, 96000, 100, SampleFormat::Int8)) == "8-bit PCM, 4 Channels, 96.000 kHz\n");
    CHECK(formatsOf("a", aiffFile(2, 48000, 100)) == "16-bit PCM, Stereo, 48.000 kHz\n");
}

TEST_CASE("coded sound is called by the name of its codec") {
    CHECK(encodedFormats(kTone + "-ac 2 -c:a aac", "a.m4a") == "AAC, Stereo, 44.100 kHz\n");
    CHECK(encodedFormats(kTone + "-ac 1 -c:a alac", "a.m4a") == "ALAC, Mono, 44.100 kHz\n");
    CHECK(encodedFormats(kTone + "-ac 2 -ar 48000", "a.mp3") == "MP3, Stereo, 48.000 kHz\n");
    CHECK(encodedFormats(kTone + "-ac 6 -c:a ac3", "a.mov") == "AC-3, 5.1 Surround, 44.100 kHz\n");
    CHECK(encodedFormats(kTone + "-c:a adpcm_ima_wav", "a.wav") == "IMA ADPCM, Mono, 44.100 kHz\n");
    CHECK(encodedFormats(kTone + "-c:a pcm_mulaw", "a.wav") == "µ-law, Mono, 44.100 kHz\n");
}

TEST_CASE("a film's tracks are in the order of the file, pictures by their size") {
    CHECK(encodedFormats(kPicture + kTone + "-c:v mpeg4 -c:a aac -ac 2", "a.mov") ==
          "MPEG-4 Video, 320 x 240\nAAC, Stereo, 44.100 kHz\n");
    CHECK(encodedFormats(kPicture + kTone + "-c:v wmv2 -c:a wmav2 -ac 2", "a.wmv") ==
          "WMV 8, 320 x 240\nWMA 2, Stereo, 44.100 kHz\n");
}

TEST_CASE("the picture of a cover is no track") {
    const std::string cover =
        kTone + "-f lavfi -i testsrc=d=1:s=64x64:r=1 -map 0 -map 1 -frames:v 1 -disposition:v attached_pic ";
    CHECK(encodedFormats(cover + "-c:v mjpeg -c:a aac -ac 2", "a.m4a") == "AAC, Stereo, 44.100 kHz\n");
    CHECK(encodedFormats(cover + "-c:v mjpeg -ac 2", "a.mp3") == "MP3, Stereo, 44.100 kHz\n");
}
