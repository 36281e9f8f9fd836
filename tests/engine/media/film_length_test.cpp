// How long a film is: as long as the longest of what it holds, in every container and also when it was cut.
#include <doctest/doctest.h>

#include <cmath>

#include "engine/media/MediaFiles.h"
#include "engine/video/Films.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr double kPictureSeconds = 6;

struct Coding {
    const char* name;
    const char* options;
};
constexpr Coding kCodings[] = {
    {"a.mp4", "-c:v libx264 -bf 3 -g 40 -c:a aac"},
    {"edited.mp4", "-c:v libx264 -bf 3 -g 40 -c:a aac -output_ts_offset 1.5"},
    {"fragments.mp4", "-c:v libx264 -bf 3 -g 40 -c:a aac -movflags frag_keyframe+empty_moov"},
    {"a.mov", "-c:v mjpeg -c:a pcm_s16le"},
    {"a.avi", "-c:v mpeg4 -bf 2 -g 20 -c:a pcm_s16le"},
    {"long.avi", "-c:v mpeg4 -g 1000 -c:a libmp3lame"},
    {"a.wmv", "-c:v wmv2 -g 20 -c:a wmav2"},
};

OpenedMedia opened(const std::string& path) {
    auto media = openMedia(path);
    REQUIRE(media);
    REQUIRE(media.value().sound);
    return std::move(media.value());
}

double seconds(const SoundReader& sound) {
    return static_cast<double>(sound.length()) / sound.sampleRate();
}

}  // namespace

TEST_CASE("a film lasts as long as its pictures where its sound ends before them") {
    const TemporaryFolder folder;
    for (const Coding& coding : kCodings) {
        CAPTURE(std::string(coding.name));
        const std::string path = folder.file(coding.name);
        REQUIRE(makeUnevenFilm(path, 150, 2, coding.options));
        OpenedMedia media = opened(path);
        CHECK(std::abs(seconds(*media.sound) - kPictureSeconds) < 0.085);
        CHECK(media.description.durationSeconds == doctest::Approx(seconds(*media.sound)));
        const auto another = media.openSound();
        REQUIRE(another);
        CHECK(another->length() == media.sound->length());
        const auto whole = readLinearly(*media.sound);
        std::size_t loud = 0, last = 0;
        for (std::size_t i = 0; i < whole.size(); ++i) {
            if (std::abs(whole[i]) > 0.01f) {
                ++loud;
                last = i / 2;
            }
        }
        CHECK(loud > whole.size() / 4);
        CHECK(std::abs(static_cast<double>(last) / media.sound->sampleRate() - 2) < 0.15);
        CHECK(countWrongSeeks(*media.sound, whole) == 0);
    }
}

TEST_CASE("a film lasts as long as its sound where its pictures end before it") {
    const TemporaryFolder folder;
    for (const Coding& coding : kCodings) {
        CAPTURE(std::string(coding.name));
        const std::string path = folder.file(coding.name);
        REQUIRE(makeUnevenFilm(path, 25, 5, coding.options));
        const OpenedMedia media = opened(path);
        CHECK(seconds(*media.sound) > 4.9);  // some coders lose the last packet
        CHECK(seconds(*media.sound) < 5.15);
    }
}

TEST_CASE("a film that was cut lasts as long as what is left of it, whatever its header says") {
    const TemporaryFolder folder;
    const Coding codings[] = {{"a.mp4", "-c:v libx264 -g 10 -c:a aac -movflags faststart"},
                              {"a.avi", "-c:v mpeg4 -g 10 -c:a pcm_s16le"},
                              {"a.wmv", "-c:v wmv2 -g 10 -c:a wmav2"}};
    for (const Coding& coding : codings) {
        CAPTURE(std::string(coding.name));
        const std::string path = folder.file(coding.name);
        REQUIRE(makeFilm(path, 150, "25", coding.options));
        std::filesystem::resize_file(path, std::filesystem::file_size(path) * 2 / 3);
        const OpenedMedia media = opened(path);
        CHECK(seconds(*media.sound) > 2);
        CHECK(seconds(*media.sound) < 5);
    }
}
