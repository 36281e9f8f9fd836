#include "fuzz/HostileSeeds.h"

#include <stdexcept>
#include <string>

#include "engine/media/MediaFiles.h"
#include "engine/media/tags/TagFiles.h"

namespace qm::test {

namespace {

const std::string kTone = "-f lavfi -i sine=d=0.5:r=44100 ";
const std::string kFilm = "-f lavfi -i testsrc=d=1:s=96x64:r=10 " + kTone;

struct Coding {
    const char* name;
    std::string arguments;
};

const std::vector<Coding>& codings() {
    static const std::vector<Coding> all = {
        {"constant.mp3", kTone + "-b:a 64k"},
        {"variable.mp3", kTone + "-q:a 5 -ac 2"},
        {"layer2.mp3", kTone + "-c:a mp2 -f mp2"},
        {"aac.m4a", kTone + "-c:a aac -metadata title=Title -metadata artist=Artist"},
        {"lossless.m4a", kTone + "-c:a alac"},
        {"pieces.m4a", kTone + "-c:a aac -movflags frag_keyframe+empty_moov -frag_duration 100000"},
        {"front.m4a", kTone + "-c:a aac -movflags faststart"},
        {"samples.mov", kTone + "-c:a pcm_s16be -ac 2"},
        {"blocks.mov", kTone + "-c:a adpcm_ima_qt"},
        {"law.mov", kTone + "-c:a pcm_mulaw"},
        {"surround.mov", kTone + "-c:a ac3 -ac 6"},
        {"free.mp4", kTone + "-c:a flac -strict -2"},
        {"two.mp4", kTone + "-f lavfi -i sine=f=300:d=0.4:r=22050 -map 0 -map 1 -c:a aac"},
        {"ms.wav", kTone + "-c:a adpcm_ms"},
        {"ima.wav", kTone + "-c:a adpcm_ima_wav -ac 2"},
        {"law.wav", kTone + "-c:a pcm_alaw"},
        {"little.aifc", kTone + "-c:a pcm_s16le -f aiff"},
        {"lossless.caf", kTone + "-c:a alac"},
        {"sound.wmv", kTone + "-c:a wmav2 -f asf"},
        {"film.mp4", kFilm + "-c:v libx264 -bf 2 -g 5 -pix_fmt yuv420p -c:a aac"},
        {"edited.mp4", kFilm + "-c:v libx264 -g 5 -pix_fmt yuv420p -c:a aac -output_ts_offset 0.3"},
        {"pieces.mp4", kFilm + "-c:v mpeg4 -g 3 -c:a aac -movflags frag_keyframe+empty_moov"},
        {"film.mov", kFilm + "-c:v mjpeg -c:a pcm_s16le"},
        {"old.mov", kFilm + "-c:v svq1 -c:a adpcm_ima_qt"},
        {"film.avi", kFilm + "-c:v mpeg4 -bf 2 -c:a libmp3lame"},
        {"plain.avi", kFilm + "-c:v mjpeg -c:a pcm_s16le"},
        {"lossless.flac", kTone + "-c:a flac -metadata title=Title -metadata artist=Artist"},
        {"lossless.oga", kTone + "-c:a flac"},
        {"lossy.ogg", kTone + "-c:a libvorbis -metadata title=Title -metadata artist=Artist"},
        {"lossy.opus", kTone + "-c:a libopus -b:a 32k"},
        {"lossless.mka", kTone + "-c:a flac"},
        {"lossy.mka", kTone + "-c:a aac"},
        {"lossless.wv", kTone + "-c:a wavpack"},
        {"surround.ac3", kTone + "-c:a ac3 -ac 6"},
        {"film.webm", kFilm + "-c:v libvpx -g 5 -c:a libopus"},
        {"film.mkv", kFilm + "-c:v mpeg4 -bf 2 -c:a libvorbis"},
        {"film.wmv", kFilm + "-c:v wmv2 -c:a wmav2"},
    };
    return all;
}

Input rifx() {
    Bytes sound;
    for (std::int64_t n = 0; n < 3000; ++n) {
        sound.big(static_cast<std::uint16_t>(codedSample(n, 0)), 2);
    }
    return Bytes()
        .text("RIFX")
        .big(36 + sound.get().size(), 4)
        .text("WAVEfmt ")
        .big(16, 4)
        .big(1, 2)
        .big(1, 2)
        .big(44100, 4)
        .big(88200, 4)
        .big(2, 2)
        .big(16, 2)
        .text("data")
        .big(sound.get().size(), 4)
        .add(sound.get())
        .get();
}

}  // namespace

std::vector<NamedInput> hostileSeeds() {
    std::vector<NamedInput> seeds = {
        {"mono8.wav", waveFile(1, 8000, 4000, SampleFormat::Int8)},
        {"stereo16.wav", waveFile(2, 44100, 4000, SampleFormat::Int16)},
        {"surround24.wav", waveFile(6, 48000, 2000, SampleFormat::Int24)},
        {"float.wav", waveFile(2, 192000, 4000, SampleFormat::Float32)},
        {"big.wav", rifx()},
        {"info.wav", waveWithChunks(infoList({{"INAM", "Title"}, {"IART", "Artist"}}), {})},
        {"mono.aiff", aiffFile(1, 22050, 4000)},
        {"stereo.aiff", aiffFile(2, 44100, 4000)},
        {"stereo.caf", cafFile(2, 96000, 4000)},
        {"info.caf", cafWithInfo({{"title", "Title"}, {"artist", "Artist"}})},
        {"tagged.mp3", mp3WithTag(id3Tag(3, {id3Frame(3, "TPE1", std::string("\0Artist", 7))}))},
        {"foreign.asf", asfFile("Title", "Artist", {{"WM/AlbumTitle", "Album"}})},
        {"movie.m4a", movieFile(itemList({listItem("\xa9nam", "Title")}))},
    };
    const TemporaryFolder folder;
    for (const Coding& coding : codings()) {
        std::vector<Input> read;
        if (encode(coding.arguments, folder.file(coding.name))) addFile(read, folder.file(coding.name));
        if (read.empty()) throw std::runtime_error("the ffmpeg program did not make " + std::string(coding.name));
        seeds.push_back({coding.name, read.front()});
    }
    return seeds;
}

}  // namespace qm::test
