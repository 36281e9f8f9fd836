#include <doctest/doctest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <vector>

#include "engine/media/MediaFiles.h"
#include "engine/video/Films.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr PictureSize kLargePlace{4096, 4096};

struct Coding {
    const char* file;
    const char* rate;
    double perSecond;
    const char* options;
    double first = 0;  // seconds: where the sound is padded
};

const Coding kCodings[] = {
    {"b.mp4", "25", 25, "-c:v libx264 -bf 3 -g 30 -pix_fmt yuv420p -c:a aac"},
    {"open.mp4", "30000/1001", 30000.0 / 1001, "-c:v libx264 -bf 2 -g 24 -x264opts open-gop -c:a aac"},
    {"long.mov", "24", 24, "-c:v libx264 -bf 3 -g 500 -c:a pcm_s16le"},
    {"m.avi", "25", 25, "-c:v mjpeg -q:v 2 -pix_fmt yuvj420p -c:a pcm_s16le"},
    {"x.avi", "25", 25, "-c:v mpeg4 -q:v 2 -g 20 -c:a pcm_s16le"},
    {"bx.avi", "25", 25, "-c:v mpeg4 -bf 2 -q:v 2 -g 20 -c:a pcm_s16le"},
    {"bh.avi", "25", 25, "-c:v libx264 -bf 3 -g 30 -pix_fmt yuv420p -c:a pcm_s16le"},
    {"w.wmv", "25", 25, "-c:v wmv2 -q:v 2 -g 20 -c:a wmav2", 0.046},
    {"v.mov", "25", 25, "-c:v mpeg4 -bf 2 -q:v 2 -g 12 -c:a aac"},
};

std::unique_ptr<VideoReader> openPictures(const std::string& path) {
    auto opened = openMedia(path);
    REQUIRE(opened);
    REQUIRE(opened.value().openVideo);
    return opened.value().openVideo();
}

bool nextPicture(VideoReader& reader, RawPicture& picture) {
    for (;;) {
        const VideoReader::Outcome outcome = reader.next(picture, -1, VideoReader::kAllPixels);
        if (outcome != VideoReader::Outcome::Working) return outcome == VideoReader::Outcome::Picture;
    }
}

int numberOfNext(VideoReader& reader, double& seconds) {
    RawPicture picture;
    if (!nextPicture(reader, picture)) return -2;
    seconds = picture.seconds;
    const auto shown = reader.convert(picture, kLargePlace);
    return shown ? numberOf(*shown) : -3;
}

}  // namespace

TEST_CASE("every picture of a film comes in order and at its time") {
    const TemporaryFolder folder;
    for (const Coding& coding : kCodings) {
        CAPTURE(coding.file);
        const std::string path = folder.file(coding.file);
        REQUIRE(makeFilm(path, 100, coding.rate, coding.options));
        const auto reader = openPictures(path);
        REQUIRE(reader);
        reader->seek(0);
        int expected = 0;
        int wrong = 0;
        double seconds = 0, farthest = 0;
        for (int number = 0; (number = numberOfNext(*reader, seconds)) >= -1; ++expected) {
            wrong += number != expected;
            farthest = std::max(farthest, std::abs(seconds - coding.first - expected / coding.perSecond));
        }
        CHECK(expected == 100);
        CHECK(wrong == 0);
        CHECK(farthest < 0.002);
    }
}

TEST_CASE("after a seek reading goes on at or before the picture of that time, without a wrong one") {
    const TemporaryFolder folder;
    for (const Coding& coding : kCodings) {
        CAPTURE(coding.file);
        const std::string path = folder.file(coding.file);
        REQUIRE(makeFilm(path, 100, coding.rate, coding.options));
        const auto reader = openPictures(path);
        int wrong = 0, late = 0;
        for (const int target : {99, 0, 57, 3, 30, 29, 31, 98, 12, 66, 1, 44}) {
            REQUIRE(reader->seek(coding.first + (target + 0.5) / coding.perSecond));
            double seconds = 0;
            int number = numberOfNext(*reader, seconds);
            late += number > target;
            for (; number >= 0 && number < target; number = numberOfNext(*reader, seconds)) {
                wrong += std::abs(seconds - coding.first - number / coding.perSecond) > 0.002;
            }
            wrong += number != target;
        }
        CHECK(late == 0);
        CHECK(wrong == 0);
    }
}

TEST_CASE("time 0 of the pictures is the first frame of the sound, wherever the container puts it") {
    const TemporaryFolder folder;
    const std::string plain = folder.file("plain.mp4");
    REQUIRE(makeFilm(plain, 75, "25", "-c:v libx264 -bf 2 -g 12 -c:a aac"));
    const std::string cut = folder.file("cut.mp4");  // an edit list begins within a group of pictures
    REQUIRE(encode("-ss 1 -i '" + plain + "' -c copy", cut));
    const std::string late = folder.file("late.mp4");  // the pictures begin half a second after the sound
    REQUIRE(encode("-i '" + plain + "' -itsoffset 0.52 -i '" + plain + "' -map 0:a -map 1:v -c copy", late));
    double seconds = 0;

    const auto afterCut = openPictures(cut);
    afterCut->seek(1);
    int number = 0;
    while ((number = numberOfNext(*afterCut, seconds)) >= 0 && seconds < 0.999) {
    }
    CHECK(std::abs(number - 50) <= 1);  // copying cuts the sound at its own packets
    CHECK(seconds == doctest::Approx(1).epsilon(0.03));

    const auto afterShift = openPictures(late);
    afterShift->seek(0);
    CHECK(numberOfNext(*afterShift, seconds) == 0);
    CHECK(seconds == doctest::Approx(0.52).epsilon(0.001));
}

TEST_CASE("a picture knows its shape: the shape of its pixels and how the camera was held count") {
    const TemporaryFolder folder;
    const std::string wide = folder.file("wide.mp4");
    REQUIRE(encode("-f lavfi -i testsrc=s=144x96:r=25 -frames:v 5 -vf setsar=2 -c:v libx264", wide));
    const std::string straight = folder.file("straight.mp4");
    const std::string turned = folder.file("turned.mp4");
    REQUIRE(
        encode("-f lavfi -i \"color=red:s=64x32:r=25,drawbox=x=0:y=0:w=32:h=16:color=blue:t=fill\" -frames:v 5 "
               "-c:v libx264 -pix_fmt yuv420p",
               straight));
    REQUIRE(encode("-i '" + straight + "' -c copy -metadata:s:v rotate=90", turned));
    RawPicture raw;
    const auto first = openPictures(wide);
    first->seek(0);
    REQUIRE(nextPicture(*first, raw));
    CHECK(first->convert(raw, kLargePlace)->aspect == doctest::Approx(3));
    CHECK(first->convert(raw, kLargePlace)->width == 144);

    const auto second = openPictures(turned);
    second->seek(0);
    REQUIRE(nextPicture(*second, raw));
    const auto upright = second->convert(raw, kLargePlace);
    CHECK(upright->width == 32);
    CHECK(upright->height == 64);
    CHECK(upright->aspect == doctest::Approx(0.5));
    const auto isBlue = [&](int x, int y) { return (upright->pixels[y * 32 + x] & 0xff) > 128; };
    CHECK(isBlue(8, 56));  // the encoder's 90 is a quarter turn to the left: from the top left to the bottom left
    CHECK_FALSE(isBlue(8, 8));
    CHECK_FALSE(isBlue(24, 8));
    CHECK_FALSE(isBlue(24, 56));
}

TEST_CASE("pictures are made smaller to fit where they are shown, and smaller still to be kept") {
    const TemporaryFolder folder;
    const std::string path = folder.file("large.mp4");
    REQUIRE(makeFilm(path, 3, "25", "-c:v libx264 -preset ultrafast -c:a aac", "2880x960"));
    const auto reader = openPictures(path);
    RawPicture raw;
    reader->seek(0);
    double seconds = 0;
    CHECK(numberOfNext(*reader, seconds) == 0);
    REQUIRE(nextPicture(*reader, raw));
    const auto full = reader->convert(raw, kLargePlace);
    CHECK(full->width == 1920);
    CHECK(full->height == 640);
    CHECK(full->aspect == doctest::Approx(3));
    CHECK_FALSE(raw.reduced);
    const auto fitting = reader->convert(raw, {600, 900});
    CHECK(fitting->width == 600);
    CHECK(fitting->height == 200);
    CHECK(fitting->aspect == doctest::Approx(3));
    CHECK(numberOf(*fitting) == 1);
    const RawPicture kept = reader->reduced(raw, 480 * 160);
    CHECK(kept.reduced);
    CHECK(kept.bytes < raw.bytes / 30);
    CHECK(reader->convert(kept, kLargePlace)->width == 480);
    CHECK(numberOf(*reader->convert(kept, kLargePlace)) == 1);
    CHECK_FALSE(reader->reduced(raw, VideoReader::kAllPixels).reduced);
    while (reader->next(raw, -1, 960 * 320) == VideoReader::Outcome::Working) {
    }
    const auto small = reader->convert(raw, kLargePlace);
    CHECK(raw.reduced);
    CHECK(small->width == 960);
    CHECK(small->aspect == doctest::Approx(3));
    CHECK(numberOf(*small) == 2);
}

TEST_CASE("a picture of a song is not a film") {
    const TemporaryFolder folder;
    const std::string path = folder.file("song.m4a");
    const std::string cover = folder.file("cover.jpg");
    REQUIRE(encode("-f lavfi -i testsrc=s=64x64:r=1:d=1 -frames:v 1", cover));
    REQUIRE(encode("-f lavfi -i sine=duration=1 -i '" + cover +
                       "' -map 0 -map 1 -c:a aac -c:v copy -disposition:v "
                       "attached_pic",
                   path));
    const auto opened = openMedia(path);
    REQUIRE(opened);
    CHECK_FALSE(opened.value().openVideo);
    CHECK_FALSE(opened.value().description.hasVideo);
}

TEST_CASE("a film that is cut off or damaged shows what can be decoded and comes to an end") {
    const TemporaryFolder folder;
    const std::string path = folder.file("whole.mp4");
    REQUIRE(makeFilm(path, 60, "25", "-c:v libx264 -bf 2 -g 12 -movflags +faststart -c:a aac"));
    std::ifstream file(path, std::ios::binary);
    const std::vector<std::uint8_t> whole{std::istreambuf_iterator<char>(file), {}};
    std::uint32_t random = 1;
    for (int attempt = 0; attempt < 30; ++attempt) {
        std::vector<std::uint8_t> bytes = whole;
        if (attempt % 3 == 0) bytes.resize(bytes.size() / 2 + attempt * bytes.size() / 60);
        for (int i = 0; attempt % 3 != 0 && i < 40; ++i) {
            random = random * 1664525 + 1013904223;
            bytes[random % bytes.size()] = static_cast<std::uint8_t>(random >> 24);
        }
        auto opened = openMedia(folder.write("damaged.mp4", bytes));
        const auto reader = opened && opened.value().openVideo ? opened.value().openVideo() : nullptr;
        if (!reader) continue;
        for (const double target : {1.0, 0.0, 2.3, 100.0}) {
            reader->seek(target);
            RawPicture raw;
            double last = -1e9;
            int count = 0;
            for (; count < 1000 && nextPicture(*reader, raw); ++count) {
                CHECK(raw.seconds > last);
                last = raw.seconds;
                reader->convert(raw, kLargePlace);
            }
            CHECK(count < 1000);
        }
    }
}

TEST_CASE("a film of high dynamic range is shown with the contrast of an ordinary one, also where it is kept small") {
    const TemporaryFolder folder;
    // Left grey of 18 percent, right reference white, as HLG codes them: 0.38 and 0.75 of the range.
    const std::string path = folder.file("hlg.mp4");
    REQUIRE(
        encode("-f lavfi -i \"color=c=black:s=128x64:r=25,format=yuv420p10le,"
               "geq=lum='if(lt(X\\,64)\\,64+876*0.38\\,64+876*0.75)':cb=512:cr=512\" -frames:v 3 -c:v libx264 -qp 4 "
               "-color_primaries bt2020 -color_trc arib-std-b67 -colorspace bt2020nc -color_range tv",
               path));
    const auto reader = openPictures(path);
    RawPicture raw;
    reader->seek(0);
    REQUIRE(nextPicture(*reader, raw));
    for (const RawPicture& picture : {raw, reader->reduced(raw, 64 * 32)}) {
        const auto shown = reader->convert(picture, kLargePlace);
        REQUIRE(shown);
        const auto green = [&](double x) {
            const auto column = static_cast<int>(x * shown->width);
            return int(shown->pixels[std::size_t(shown->height / 2) * shown->width + column] >> 8 & 0xff);
        };
        CHECK(green(0.25) == doctest::Approx(0.426 * 255).epsilon(0.04));
        CHECK(green(0.75) == doctest::Approx(0.903 * 255).epsilon(0.03));
    }
}
