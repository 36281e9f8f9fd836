// The sound of an exported movie is the sound that was there: read back with our own reader, and decoded by the
// ffmpeg program.
#include "engine/export/Exports.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::int64_t kFrames = 100003;

void checkCopied(const TemporaryFolder& folder, const std::string& source) {
    CAPTURE(source);
    const std::string copy = exported(folder, source);
    const auto before = wholeSound(source);
    CHECK(!before.empty());
    CHECK(wholeSound(copy) == before);
    CHECK(decodedByProgram(copy) == decodedByProgram(source));
}

void checkDecoded(const TemporaryFolder& folder, const std::string& source) {
    CAPTURE(source);
    const std::string copy = exported(folder, source);
    const auto before = wholeSound(source);
    CHECK(!before.empty());
    CHECK(largestDifference(before, wholeSound(copy)) <= kOneLsb);
    CHECK(largestDifference(decodedByProgram(source), decodedByProgram(copy)) <= kOneLsb);
}

// A gliding tone with noise in it, encoded.
std::string encoded(const TemporaryFolder& folder, const std::string& arguments, const std::string& name) {
    const std::string path = folder.file(name);
    const std::string source =
        "-f lavfi -i \"aevalsrc=0.3*sin(2*PI*(200+400*t)*t)+0.05*(random(0)-0.5)|0.3*sin(2*PI*(290+400*t)*t):s=44100,"
        "atrim=end_sample=100003\" ";
    CAPTURE(arguments);
    REQUIRE(encode(source + arguments, path));
    return path;
}

struct Encoded {
    const char* arguments;
    const char* name;
};

}  // namespace

TEST_CASE("uncompressed sound is copied sample by sample") {
    const TemporaryFolder folder;
    for (const auto format : {SampleFormat::Int8, SampleFormat::Int16, SampleFormat::Int24, SampleFormat::Float32})
        checkCopied(folder, folder.write("a.wav", waveFile(2, 44100, kFrames, format)));
    checkCopied(folder, folder.write("mono.wav", waveFile(1, 8000, 5001, SampleFormat::Int16)));
    checkCopied(folder, folder.write("fast.wav", waveFile(2, 192000, kFrames, SampleFormat::Int24)));
    checkCopied(folder, folder.write("a.aiff", aiffFile(2, 48000, kFrames)));
    checkCopied(folder, folder.write("a.caf", cafFile(2, 44100, kFrames)));
}

TEST_CASE("sound that a movie truly holds is copied packet by packet") {
    const TemporaryFolder folder;
    for (const Encoded& e : {Encoded{"-c:a aac -aac_pns 0", "a.m4a"},
                             {"-c:a aac -aac_pns 0 -ar 22050 -ac 1", "mono.m4a"},
                             {"-c:a alac", "alac.m4a"},
                             {"-c:a alac", "alac.caf"},
                             {"-c:a alac -sample_fmt s32p", "alac24.m4a"},
                             {"-c:a libmp3lame -b:a 128k -write_xing 0", "plain.mp3"},
                             {"-c:a libmp3lame -q:a 4 -write_xing 0", "variable.mp3"},
                             {"-c:a ac3", "ac3.mov"},
                             {"-c:a pcm_mulaw", "mulaw.wav"},
                             {"-c:a pcm_alaw", "alaw.aifc"},
                             {"-c:a pcm_s16le", "sowt.mov"},
                             {"-c:a pcm_f64le", "double.wav"}})
        checkCopied(folder, encoded(folder, e.arguments, e.name));
}

TEST_CASE("sound that it does not hold, or not to its exact end, becomes 16-bit samples") {
    const TemporaryFolder folder;
    for (const Encoded& e : {Encoded{"-c:a libmp3lame -b:a 128k", "constant.mp3"},
                             {"-c:a libmp3lame -q:a 4 -ac 1", "variable.mp3"},
                             {"-c:a adpcm_ms", "ms.wav"},
                             {"-c:a adpcm_ima_wav", "ima.wav"},
                             {"-c:a adpcm_ima_qt -f aiff", "ima.aifc"},
                             {"-c:a flac -strict -2", "flac.mp4"}})
        checkDecoded(folder, encoded(folder, e.arguments, e.name));
}

TEST_CASE("a bare number of channels, many channels and odd rates go along") {
    const TemporaryFolder folder;
    checkCopied(folder, folder.write("six.wav", waveFile(6, 48000, 20011, SampleFormat::Int24)));
    checkCopied(folder, folder.write("odd.wav", waveFile(2, 37811, 20011, SampleFormat::Int16)));
    checkCopied(folder, folder.write("one.wav", waveFile(2, 44100, 1, SampleFormat::Int16)));
}

TEST_CASE("every sound track that is switched on goes along, each at its place") {
    const TemporaryFolder folder;
    const std::string two =
        encoded(folder,
                "-itsoffset 0.25 -f lavfi -i sine=frequency=660:d=1:sample_rate=44100 -map 0:a -map 1:a "
                "-c:a pcm_s16le -disposition:a default",
                "two.mov");
    CHECK(probed(two, "stream=index").size() == 2);
    const std::string copy = exported(folder, two);
    CHECK(probed(copy, "stream=codec_name,sample_rate") ==
          std::vector<std::string>{"pcm_s16le|44100", "pcm_s16le|44100"});
    CHECK(wholeSound(copy) == wholeSound(two));
    CHECK(std::stod(probed(copy, "stream=start_time").at(1)) == doctest::Approx(0.25).epsilon(0.001));
}

TEST_CASE("a track that is switched off stays behind") {
    const TemporaryFolder folder;
    const std::string two = encoded(folder,
                                    "-f lavfi -i sine=frequency=660:d=1 -map 0:a -map 1:a -c:a pcm_s16le "
                                    "-disposition:a:0 default -disposition:a:1 0",
                                    "two.mov");
    const std::string copy = exported(folder, two);
    CHECK(probed(copy, "stream=index").size() == 1);
    CHECK(wholeSound(copy) == wholeSound(two));
}

TEST_CASE("title and artist go along, a cover does not become a film") {
    const TemporaryFolder folder;
    const std::string tagged =
        encoded(folder,
                "-f lavfi -i color=red:s=64x64:d=1 -map 0:a -map 1:v -frames:v 1 -c:a alac -c:v png "
                "-disposition:v attached_pic -metadata title=Twine -metadata artist=Halm",
                "tagged.m4a");
    CHECK(probed(tagged, "stream=codec_type").size() == 2);
    const std::string copy = exported(folder, tagged);
    CHECK(probed(copy, "stream=codec_type") == std::vector<std::string>{"audio"});
    CHECK(probed(copy, "format_tags=title,artist") == std::vector<std::string>{"Halm|Twine"});
    const auto opened = openMedia(copy);
    REQUIRE(opened);
    CHECK(opened.value().description.displayName == "Twine");
    CHECK_FALSE(opened.value().description.hasVideo);
}
