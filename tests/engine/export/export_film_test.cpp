// The pictures of an exported movie: numbered ones, each at its time, beside the sound.
#include "engine/export/Exports.h"
#include "engine/video/Films.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr int kPictures = 60;

struct Shown {
    int number;
    double seconds;
};

std::vector<Shown> film(const std::string& path) {
    const auto opened = openMedia(path);
    REQUIRE(opened);
    REQUIRE(opened.value().openVideo);
    const auto reader = opened.value().openVideo();
    REQUIRE(reader);
    std::vector<Shown> pictures;
    RawPicture raw;
    for (;;) {
        switch (reader->next(raw, 0, VideoReader::kAllPixels)) {
            case VideoReader::Outcome::Picture:
                pictures.push_back({numberOf(*reader->convert(raw, {1920, 1920})), raw.seconds});
                break;
            case VideoReader::Outcome::Working:
                break;
            case VideoReader::Outcome::End:
                return pictures;
        }
    }
}

// The silence behind it may end a little earlier or later: last pictures last as long as their containers can say.
double soundDifference(const std::string& a, const std::string& b) {
    constexpr std::size_t kLittle = 2 * 441;
    std::vector<float> before = wholeSound(a), after = wholeSound(b);
    const std::size_t common = std::min(before.size(), after.size());
    if (std::max(before.size(), after.size()) - common <= kLittle) {
        before.resize(common);
        after.resize(common);
    }
    return largestDifference(before, after);
}

void checkFilm(const TemporaryFolder& folder, const std::string& source, const std::string& codec) {
    CAPTURE(source);
    const std::string copy = exported(folder, source);
    CHECK(probed(copy, "stream=codec_name").at(0) == codec);
    const auto before = film(source);
    const auto after = film(copy);
    REQUIRE(before.size() == after.size());
    int wrong = 0, late = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        wrong += before[i].number != after[i].number;
        late += std::abs(before[i].seconds - after[i].seconds) > 0.0015;
    }
    CHECK(wrong == 0);
    CHECK(late == 0);
    CHECK(soundDifference(source, copy) <= kOneLsb);
}

std::string filmed(const TemporaryFolder& folder, const std::string& name, const std::string& coding) {
    const std::string path = folder.file(name);
    CAPTURE(coding);
    REQUIRE(makeFilm(path, kPictures, "25", coding));
    return path;
}

}  // namespace

TEST_CASE("pictures that a movie holds are copied, each at its time") {
    const TemporaryFolder folder;
    checkFilm(folder, filmed(folder, "a.mp4", "-c:v libx264 -bf 2 -g 20 -c:a aac"), "h264");
    checkFilm(folder, filmed(folder, "a.mov", "-c:v mpeg4 -bf 0 -c:a pcm_s16le"), "mpeg4");
    checkFilm(folder, filmed(folder, "b.mov", "-c:v mpeg4 -bf 2 -q:v 3 -c:a aac"), "mpeg4");
    checkFilm(folder, filmed(folder, "a.avi", "-c:v mjpeg -c:a pcm_s16le"), "mjpeg");
    checkFilm(folder, filmed(folder, "b.avi", "-c:v mpeg4 -bf 0 -c:a libmp3lame"), "mpeg4");
    checkFilm(folder, filmed(folder, "c.avi", "-c:v libx264 -bf 0 -c:a ac3"), "h264");
    checkFilm(folder, filmed(folder, "qt.mov", "-c:v qtrle -c:a pcm_s16be"), "qtrle");
}

TEST_CASE("pictures that it does not hold, or whose times are not known, are coded anew") {
    const TemporaryFolder folder;
    checkFilm(folder, filmed(folder, "a.wmv", "-c:v wmv2 -q:v 2 -c:a wmav2"), "h264");
    checkFilm(folder, filmed(folder, "b.avi", "-c:v mpeg4 -bf 2 -q:v 3 -c:a libmp3lame"), "h264");
    checkFilm(folder, filmed(folder, "c.avi", "-c:v ffv1 -c:a pcm_s16le"), "h264");
}

TEST_CASE("the shape of the pixels that the container states goes along, whatever the codec says") {
    const TemporaryFolder folder;
    const std::string source = filmed(folder, "square.mov", "-c:v libx264 -vf setsar=1 -an");
    const std::string wide = folder.file("wide.mov");
    REQUIRE(encode("-i '" + source + "' -c copy -aspect 4:1", wide));
    CHECK(probed(exported(folder, wide), "stream=sample_aspect_ratio") == probed(wide, "stream=sample_aspect_ratio"));
}

TEST_CASE("a silent film goes along, and so does the way it is held") {
    const TemporaryFolder folder;
    const std::string upright = filmed(folder, "upright.mov", "-c:v libx264 -an");
    const std::string held = folder.file("held.mov");
    REQUIRE(encode("-i '" + upright + "' -c copy -metadata:s:v rotate=90", held));
    const std::string copy = exported(folder, held);
    CHECK(probed(copy, "stream=codec_type") == std::vector<std::string>{"video"});
    CHECK(probed(copy, "stream_side_data=rotation") == probed(held, "stream_side_data=rotation"));
    CHECK(film(copy).size() == film(held).size());
}

TEST_CASE("pictures that begin before or after the sound keep their distance to it") {
    const TemporaryFolder folder;
    const std::string source = filmed(folder, "source.mov", "-c:v libx264 -bf 0 -c:a pcm_s16le");
    for (const char* offset : {"0.4", "-0.4"}) {
        CAPTURE(offset);
        const std::string apart = folder.file("apart.mov");
        REQUIRE(encode("-i '" + source + "' -itsoffset " + offset + " -i '" + source + "' -map 0:a -map 1:v -c copy",
                       apart));
        const std::string copy = exported(folder, apart);
        const auto before = film(apart), after = film(copy);
        REQUIRE(before.size() == after.size());
        CHECK(after.front().seconds == doctest::Approx(before.front().seconds).epsilon(0.003));
        CHECK(wholeSound(copy) == wholeSound(apart));
    }
}

TEST_CASE("every kind of file that can be opened becomes a movie of the same sound and pictures") {
    struct Kind {
        const char* name;
        const char* coding;
        const char* size;
    };
    const TemporaryFolder folder;
    for (const Kind& kind : {Kind{"a.avi", "-c:v mpeg4 -bf 0 -c:a libmp3lame", "192x64"},
                             {"a.mp4", "-c:v libx264 -c:a aac", "192x64"},
                             {"a.m4v", "-c:v libx264 -c:a aac -f mp4", "192x64"},
                             {"a.mov", "-c:v mjpeg -c:a pcm_s24le", "192x64"},
                             {"a.dv", "-c:v dvvideo -pix_fmt yuv420p -c:a pcm_s16le -ar 48000 -ac 2", "720x576"},
                             {"a.wmv", "-c:v wmv1 -q:v 2 -c:a wmav1", "192x64"},
                             {"a.mp3", "-vn -t 0.8 -c:a libmp3lame", "192x64"},
                             {"a.m4a", "-vn -t 0.8 -c:a aac", "192x64"},
                             {"a.m4p", "-vn -t 0.8 -c:a aac -f mp4", "192x64"},
                             {"a.aiff", "-vn -t 0.8 -c:a pcm_s16be", "192x64"},
                             {"a.aif", "-vn -t 0.8 -c:a pcm_s24be -f aiff", "192x64"},
                             {"a.aifc", "-vn -t 0.8 -c:a pcm_mulaw -f aiff", "192x64"},
                             {"a.wav", "-vn -t 0.8 -c:a pcm_f32le", "192x64"},
                             {"a.caf", "-vn -t 0.8 -c:a alac", "192x64"}}) {
        CAPTURE(kind.name);
        const std::string source = folder.file(kind.name);
        REQUIRE(makeFilm(source, 20, "25", kind.coding, kind.size));
        const std::string copy = exported(folder, source);
        CHECK(probed(copy, "format=format_name") == std::vector<std::string>{"mov,mp4,m4a,3gp,3g2,mj2"});
        CHECK(soundDifference(source, copy) <= kOneLsb);
        const auto before = openMedia(source), after = openMedia(copy);
        REQUIRE(before);
        REQUIRE(after);
        REQUIRE(before.value().description.hasVideo == after.value().description.hasVideo);
        if (before.value().description.hasVideo) CHECK(film(copy).size() == film(source).size());
    }
}

TEST_CASE("a film whose sound ends before its pictures is as long when it is exported") {
    const TemporaryFolder folder;
    for (const char* coding : {"-c:v libx264 -bf 2 -c:a aac", "-c:v mpeg4 -c:a libmp3lame"}) {
        CAPTURE(coding);
        const std::string source = folder.file("uneven.mp4");
        REQUIRE(makeUnevenFilm(source, kPictures, 1, coding));
        checkFilm(folder, source, probed(source, "stream=codec_name").at(0));
        CHECK(wholeSound(source).size() >= 2 * 44100 * kPictures / 25);
    }
}
