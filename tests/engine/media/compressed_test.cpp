// Files that the ffmpeg program encodes from a coded signal.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

#include "Encodings.h"
#include "support/NotRun.h"

using namespace qm;
using namespace qm::test;

namespace {

const std::vector<Encoded> kLossless = {
    {"-c:a alac", "a.m4a"},
    {"-c:a alac -ac 1", "mono.m4a"},
    {"-c:a alac", "a.caf"},
    {"-c:a pcm_s24be", "a.mov"},
    {"-c:a pcm_s16le -f aiff", "sowt.aifc"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v mjpeg -c:a pcm_s16le", "a.avi"}};

const std::vector<Encoded> kMpeg = {{"-c:a libmp3lame -b:a 128k", "cbr.mp3"},
                                    {"-c:a libmp3lame -q:a 3", "vbr.mp3"},
                                    {"-c:a libmp3lame -q:a 3 -write_xing 0", "vbr-without-header.mp3"},
                                    {"-c:a libmp3lame -ar 22050 -ac 1 -b:a 16k", "low.mp3"},
                                    {"-c:a libmp3lame -b:a 320k -write_xing 0", "cbr320.mp3"}};

const std::vector<Encoded> kAac = {
    {"-c:a aac -aac_pns 0", "a.m4a"},
    {"-c:a aac -aac_pns 0 -ac 1 -ar 22050", "mono.m4a"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v mpeg4 -c:a aac -aac_pns 0", "a.mp4"}};

const std::vector<Encoded> kOthers = {
    {"-c:a adpcm_ima_wav", "ima.wav"},
    {"-c:a adpcm_ms", "ms.wav"},
    {"-c:a adpcm_ima_qt -f aiff", "ima.aifc"},
    {"-c:a libmp3lame", "mp3.wav"},
    {"-c:a mp2 -f mp2", "layer2.mp3"},
    {"-c:a ac3", "ac3.mp4"},
    {"-c:a wmav2", "sound.wmv"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v wmv2 -c:a wmav1", "video.wmv"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v mpeg4 -c:a libmp3lame", "mp3.avi"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v mpeg4 -c:a ac3", "ac3.avi"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -target pal-dv", "pal.dv"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v mpeg4 -c:a libmp3lame", "mp3.mov"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v mpeg4 -c:a aac -movflags frag_keyframe+empty_moov", "pieces.mp4"}};

}  // namespace

TEST_CASE("lossless files give back what was encoded, frame for frame") {
    const Encodings encodings;
    const auto source = openSound(encodings.folder().file("source.wav"));
    REQUIRE(source);
    const auto original = readLinearly(*source);
    for (const Encoded& encoded : kLossless) {
        CAPTURE(encoded.name);
        const auto sound = openSound(encodings.make(encoded));
        REQUIRE(sound);
        CHECK(sound->length() == kEncodedFrames);
        if (sound->channels() == 2) {
            CHECK(readLinearly(*sound) == original);
        }
    }
}

TEST_CASE("any stretch of a lossless file is the same however it is reached") {
    const Encodings encodings;
    for (const Encoded& encoded : kLossless) {
        checkExact(encodings.make(encoded));
    }
}

TEST_CASE("mp3 files with and without a header frame are exactly their linear decode") {
    const Encodings encodings;
    for (const Encoded& encoded : kMpeg) {
        const std::string path = encodings.make(encoded);
        checkAgainstProgram(path);
        checkExact(path);
    }
}

TEST_CASE("an mp3 file with the encoder's notes is as long as what was encoded") {
    const Encodings encodings;
    const auto sound = openSound(encodings.make(kMpeg.front()));
    REQUIRE(sound);
    CHECK(sound->length() == kEncodedFrames);
}

TEST_CASE("aac files are exactly their linear decode and end where the sound ended") {
    const Encodings encodings;
    for (const Encoded& encoded : kAac) {
        const std::string path = encodings.make(encoded);
        checkAgainstProgram(path, 2047);
        checkExact(path);
    }
    const auto sound = openSound(encodings.folder().file("a.m4a"));
    REQUIRE(sound);
    CHECK(sound->length() == kEncodedFrames);
}

TEST_CASE("aac with made-up noise reads the same however it is reached") {
    const Encodings encodings;
    checkExact(encodings.make({"-c:a aac -b:a 48k", "noisy.m4a"}));
}

TEST_CASE("every other codec reads the same however it is reached") {
    const Encodings encodings;
    for (const Encoded& encoded : kOthers) {
        checkExact(encodings.make(encoded));
    }
}

TEST_CASE("files that need a pass through all packets are as long as their linear decode") {
    const Encodings encodings;
    for (const Encoded& encoded : kOthers) {
        CAPTURE(encoded.name);
        const std::string path = encodings.make(encoded);
        const auto media = openMedia(path);
        REQUIRE(media);
        const SoundReader& sound = *media.value().sound;
        const std::int64_t decoded = static_cast<std::int64_t>(decodedByProgram(path).size()) / sound.channels();
        if (media.value().description.hasVideo) {
            CHECK(sound.length() >= decoded);  // its pictures may go on
        } else {
            CHECK(sound.length() == decoded);
        }
    }
}

TEST_CASE("an edit list decides which frame is the first") {
    const Encodings encodings;
    const std::string whole = encodings.make({"-c:a alac", "whole.m4a"});
    const std::string cut = encodings.folder().file("cut.m4a");
    REQUIRE(encode("-ss 1.3 -i '" + whole + "' -c copy -t 1.5", cut));
    checkAgainstProgram(cut, 4096);
    checkExact(cut);
}

TEST_CASE("movies have video, sound files with a cover have none") {
    const Encodings encodings;
    const auto movie = openMedia(encodings.make(kAac.back()));
    REQUIRE(movie);
    CHECK(movie.value().description.hasVideo);
    CHECK(movie.value().description.hasSound);
    const std::string cover = encodings.folder().file("cover.png");
    REQUIRE(encode("-f lavfi -i testsrc=s=64x48 -frames:v 1", cover));
    for (const char* name : {"cover.mp3", "cover.m4a"}) {
        const std::string codec = std::string(name) == "cover.mp3" ? "libmp3lame" : "aac";
        const auto song = openMedia(encodings.make(
            {"SOURCE -i '" + cover + "' -map 0 -map 1 -c:v copy -disposition:v attached_pic -c:a " + codec, name}));
        REQUIRE(song);
        CHECK_FALSE(song.value().description.hasVideo);
        CHECK(song.value().sound);
    }
}

TEST_CASE("a movie without sound opens without a reader") {
    const Encodings encodings;
    for (const Encoded& encoded : {Encoded{"-f lavfi -i testsrc=s=64x48:d=2 -an SOURCE -map 0:v -c:v mpeg4", "a.mp4"},
                                   Encoded{"-f lavfi -i testsrc=s=64x48:d=2 SOURCE -map 0:v -c:v mjpeg", "a.avi"}}) {
        CAPTURE(encoded.name);
        const auto media = openMedia(encodings.make(encoded));
        REQUIRE(media);
        CHECK(media.value().sound == nullptr);
        CHECK(media.value().description.hasVideo);
        CHECK_FALSE(media.value().description.hasSound);
        CHECK(media.value().description.durationSeconds == doctest::Approx(2.0).epsilon(0.05));
    }
}

TEST_CASE("several enabled sound tracks are summed, the first gives the rate") {
    const Encodings encodings;
    const std::string tone = "-f lavfi -i sine=f=1000:r=22050:d=3";
    const std::string second = encodings.folder().file("tone.wav");
    REQUIRE(encode(tone + " -c:a pcm_s16le", second));
    const std::string both =
        encodings.make({"SOURCE -i '" + second + "' -map 0 -map 1 -c:a pcm_s16le -disposition:a default", "both.mov"});
    const auto mixed = openSound(both);
    const auto first = openSound(encodings.folder().file("source.wav"));
    REQUIRE(mixed);
    CHECK(mixed->sampleRate() == 44100);
    CHECK(mixed->length() == kEncodedFrames);
    const auto whole = readLinearly(*mixed);
    const auto alone = readLinearly(*first);
    CHECK(countWrongSeeks(*mixed, whole) == 0);
    // What is left after the first track is the tone, at its own pitch and loudness.
    double error = 0;
    for (std::int64_t n = 20000; n < 100000; ++n) {
        const auto at = static_cast<std::size_t>(2 * n);
        const double expected = 0.125 * std::sin(2 * M_PI * 1000 * static_cast<double>(n) / 44100);
        error = std::max(error, std::abs(static_cast<double>(whole[at] - alone[at]) - expected));
    }
    CHECK(error < 0.001);
}

TEST_CASE("an mp3 file is found behind garbage and ends before tags") {
    const Encodings encodings;
    const std::string path = encodings.make({"-c:a libmp3lame -b:a 96k -write_xing 0 -id3v2_version 0", "plain.mp3"});
    const auto plain = openSound(path);
    REQUIRE(plain);
    const auto whole = readLinearly(*plain);
    std::ifstream in(path, std::ios::binary);
    const std::vector<std::uint8_t> frames{std::istreambuf_iterator<char>(in), {}};
    const auto tag = Bytes().text("ID3").big(3, 2).big(0, 1).big(0, 2).big(1, 1).big(0x10, 1).repeat(0xff, 144).get();
    const auto oldTag = Bytes().text("TAG").repeat('x', 125).get();
    std::vector<std::uint8_t> garbage;
    for (int i = 0; i < 120000; ++i) {
        garbage.push_back(static_cast<std::uint8_t>(codedSample(i, 0) >> 3));
    }
    for (const auto& bytes : {Bytes().add(tag).add(tag).add(frames).get(), Bytes().add(garbage).add(frames).get(),
                              Bytes().repeat(0, 3000).add(frames).get(), Bytes().add(frames).add(oldTag).get(),
                              Bytes().add(tag).add(frames).add(garbage).add(oldTag).get()}) {
        const auto sound = openSound(encodings.folder().write("wrapped.mp3", bytes));
        REQUIRE(sound);
        CHECK(readLinearly(*sound) == whole);
    }
}

TEST_CASE("a damaged stretch of an mp3 file does not move what comes after it") {
    const Encodings encodings;
    const std::string path = encodings.make({"-c:a libmp3lame -b:a 128k -write_xing 0 -id3v2_version 0", "plain.mp3"});
    const auto plain = openSound(path);
    REQUIRE(plain);
    const auto whole = readLinearly(*plain);
    std::ifstream in(path, std::ios::binary);
    std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
    std::fill(bytes.begin() + 20000, bytes.begin() + 20300, 0x11);
    const auto sound = openSound(encodings.folder().write("spoilt.mp3", bytes));
    REQUIRE(sound);
    CHECK(sound->length() >= plain->length() - 1152);
    const auto spoilt = readLinearly(*sound);
    CHECK(std::equal(spoilt.end() - 20000, spoilt.end(), whole.end() - 20000));
    checkExact(encodings.folder().file("spoilt.mp3"));
}

TEST_CASE("compressed files cut anywhere or spoilt are shorter or refused, never harmful") {
    const Encodings encodings;
    for (const Encoded& encoded : {kMpeg[1], kAac[0], kLossless[2], kOthers[6], kOthers[8]}) {
        checkSurvivesSpoiling(encodings, encodings.make(encoded));
    }
}

TEST_CASE("the collected real files read the same however they are reached") {
    const char* folder = std::getenv("QUILLMERE_SAMPLE_MEDIA");
    if (!folder || !*folder) NOT_RUN_BECAUSE("there is no folder of sample media");
    int sounding = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        CAPTURE(entry.path().string());
        auto media = openMedia(entry.path().string());
        if (media && media.value().sound && media.value().sound->length() < 5000000) {
            ++sounding;
            SoundReader& sound = *media.value().sound;
            const auto whole = readLinearly(sound);
            CHECK(countWrongSeeks(sound, whole) == 0);
            CHECK(countWrongChunksBackward(sound, whole) == 0);
        }
    }
    CHECK(sounding > 20);
}
