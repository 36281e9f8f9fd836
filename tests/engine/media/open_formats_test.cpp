// FLAC, Ogg, Matroska and their kin, encoded by the ffmpeg program from a coded signal.
#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>

#include "Encodings.h"

using namespace qm;
using namespace qm::test;

namespace {

const std::vector<Encoded> kLossless = {
    {"-c:a flac", "a.flac"},          {"-c:a flac -compression_level 12", "best.flac"},
    {"-c:a flac -ac 1", "mono.flac"}, {"-c:a flac", "flac.oga"},
    {"-c:a flac", "flac.mka"},        {"-c:a pcm_s16le", "pcm.mka"},
    {"-c:a wavpack", "a.wv"},
};

const std::vector<Encoded> kLossy = {
    {"-c:a libvorbis -q:a 4", "a.ogg"},
    {"-c:a libvorbis -q:a 2 -ac 1 -ar 22050", "mono.ogg"},
    {"-c:a libopus -b:a 96k", "a.opus"},
    {"-c:a libopus -b:a 24k -ac 1 -application voip", "speech.opus"},
    {"-c:a libopus -b:a 64k -frame_duration 60", "long.opus"},
    {"-c:a libvorbis", "vorbis.mka"},
    {"-c:a libopus", "opus.webm"},
    {"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v mpeg4 -c:a aac -aac_pns 0", "aac.mkv"},
    {"-c:a libmp3lame", "mp3.mkv"},
    {"-c:a aac -aac_pns 0 -f ipod", "a.m4b"},
};

std::vector<std::uint8_t> bytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

TEST_CASE("FLAC, WavPack and PCM in open containers give back what was encoded, frame for frame") {
    const Encodings encodings;
    const auto source = openSound(encodings.folder().file("source.wav"));
    REQUIRE(source);
    const auto original = readLinearly(*source);
    for (const Encoded& encoded : kLossless) {
        CAPTURE(encoded.name);
        const std::string path = encodings.make(encoded);
        const auto sound = openSound(path);
        REQUIRE(sound);
        CHECK(sound->length() == kEncodedFrames);
        if (sound->channels() == 2) CHECK(readLinearly(*sound) == original);
        checkExact(path);
    }
}

TEST_CASE("Vorbis, Opus and others in open containers are exactly their linear decode") {
    const Encodings encodings;
    for (const Encoded& encoded : kLossy) {
        const std::string path = encodings.make(encoded);
        checkAgainstProgram(path, 2047);
        checkExact(path);
    }
}

TEST_CASE("Ogg files end where the sound ended") {
    const Encodings encodings;
    CHECK(openSound(encodings.make({"-c:a libvorbis", "a.ogg"}))->length() == kEncodedFrames);
    const std::int64_t at48 = (kEncodedFrames * 48000 + 44099) / 44100;
    CHECK(std::abs(openSound(encodings.make({"-c:a libopus", "a.opus"}))->length() - at48) <= 1);
}

// Its decoder makes up noise, so that it is not compared with a decode that began elsewhere.
TEST_CASE("AC-3 by itself and in Matroska reads the same however it is reached") {
    const Encodings encodings;
    for (const char* name : {"a.ac3", "ac3.mkv"}) {
        const std::string path = encodings.make({"-c:a ac3", name});
        checkExact(path);
        CHECK(openSound(path)->length() == static_cast<std::int64_t>(decodedByProgram(path).size() / 2));
    }
}

TEST_CASE(
    "a FLAC file is as long as its frames where its header does not say, is cut, or has tags in front and behind") {
    const Encodings encodings;
    const std::string path = encodings.make({"-c:a flac", "a.flac"});
    const auto bytes = bytesOf(path);
    const auto whole = readLinearly(*openSound(path));

    auto unsaid = bytes;
    std::fill(unsaid.begin() + 8 + 14, unsaid.begin() + 8 + 18, 0);
    unsaid[8 + 13] &= 0xf0;
    const auto longer = openSound(encodings.folder().write("unsaid.flac", unsaid));
    REQUIRE(longer);
    CHECK(longer->length() == kEncodedFrames);
    CHECK(readLinearly(*longer) == whole);

    auto cut = bytes;
    cut.resize(bytes.size() / 2);
    const auto half = openSound(encodings.folder().write("cut.flac", cut));
    REQUIRE(half);
    CHECK(half->length() > kEncodedFrames / 3);
    CHECK(half->length() < 2 * kEncodedFrames / 3);

    const auto tag = Bytes().text("ID3").big(3, 2).big(0, 1).big(0, 2).big(1, 1).big(0x10, 1).repeat(0xff, 144).get();
    const auto oldTag = Bytes().text("TAG").repeat('x', 125).get();
    const auto wrapped =
        openSound(encodings.folder().write("wrapped.flac", Bytes().add(tag).add(bytes).add(oldTag).get()));
    REQUIRE(wrapped);
    CHECK(readLinearly(*wrapped) == whole);
}

TEST_CASE("a damaged frame of a FLAC file is silent and moves nothing") {
    const Encodings encodings;
    const std::string path = encodings.make({"-c:a flac", "a.flac"});
    const auto whole = readLinearly(*openSound(path));
    auto bytes = bytesOf(path);
    std::fill(bytes.begin() + 100000, bytes.begin() + 100300, 0x11);
    const std::string spoilt = encodings.folder().write("spoilt.flac", bytes);
    const auto sound = openSound(spoilt);
    REQUIRE(sound);
    CHECK(sound->length() == kEncodedFrames);
    const auto heard = readLinearly(*sound);
    CHECK(std::equal(heard.begin(), heard.begin() + 40000, whole.begin()));
    CHECK(std::equal(heard.end() - 40000, heard.end(), whole.end() - 40000));
    CHECK(heard != whole);
    checkExact(spoilt);
}

TEST_CASE("a page that is missing from an Ogg file is missed and nothing else") {
    const Encodings encodings;
    for (const char* name : {"a.opus", "a.ogg"}) {
        CAPTURE(name);
        auto bytes = bytesOf(encodings.make(
            {std::string("-page_duration 200000 -c:a ") + (name[2] == 'o' && name[3] == 'p' ? "libopus" : "libvorbis"),
             name}));
        std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2),
                  bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2 + 40), 0);
        const std::string spoilt = encodings.folder().write(name, bytes);
        const auto sound = openSound(spoilt);
        REQUIRE(sound);
        CHECK(sound->length() > kEncodedFrames / 2);
        checkExact(spoilt);
    }
}

TEST_CASE("open formats cut anywhere or spoilt are shorter or refused, never harmful") {
    const Encodings encodings;
    for (const Encoded& encoded : {kLossless[0], kLossless[3], kLossless[4], kLossless[6], kLossy[0], kLossy[2],
                                   kLossy[5], kLossy[6], kLossy[7]}) {
        checkSurvivesSpoiling(encodings, encodings.make(encoded));
    }
}

TEST_CASE("a WebM film shows its pictures and a FLAC with a cover shows none") {
    const Encodings encodings;
    const auto film =
        openMedia(encodings.make({"-f lavfi -i testsrc=s=64x48:d=3.4 SOURCE -c:v libvpx -c:a libopus", "film.webm"}));
    REQUIRE(film);
    CHECK(film.value().description.hasVideo);
    CHECK(film.value().sound);
    const std::string cover = encodings.folder().file("cover.png");
    REQUIRE(encode("-f lavfi -i testsrc=s=64x48 -frames:v 1", cover));
    const auto song = openMedia(encodings.make(
        {"SOURCE -i '" + cover + "' -map 0 -map 1 -c:v copy -disposition:v attached_pic -c:a flac", "cover.flac"}));
    REQUIRE(song);
    CHECK_FALSE(song.value().description.hasVideo);
    CHECK(song.value().sound);
}
