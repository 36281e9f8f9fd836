// A track is known again by its sound. Files that the ffmpeg program makes from a gliding tone.
#include <doctest/doctest.h>

#include <atomic>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>

#include "MediaFiles.h"
#include "engine/media/MediaTracks.h"
#include "engine/media/SoundIdentity.h"

using namespace qm;
using namespace qm::test;

namespace {

std::string identityOf(const std::string& path) {
    const auto opened = openMedia(path);
    CAPTURE(path);
    REQUIRE(opened);
    return opened.value().identity;
}

// Silence, and from then on a tone that glides from `hertz`.
std::vector<std::uint8_t> wave(double silentSeconds, double seconds, double hertz) {
    const auto frames = static_cast<std::int64_t>(seconds * 44100);
    auto bytes = waveFile(2, 44100, frames, SampleFormat::Int16);
    for (std::int64_t n = 0; n < frames; ++n) {
        const double t = static_cast<double>(n) / 44100;
        const double tone = t < silentSeconds ? 0 : 9000 * std::sin(2 * M_PI * (hertz + 300 * t) * t);
        for (int c = 0; c < 2; ++c) {
            const auto sample = static_cast<std::int16_t>(tone);
            const auto at = static_cast<std::size_t>(44 + 2 * (2 * n + c));
            bytes[at] = static_cast<std::uint8_t>(sample);
            bytes[at + 1] = static_cast<std::uint8_t>(sample >> 8);
        }
    }
    return bytes;
}

// One way to keep a sound, and what may be done to such a file. FILE stands for it, PICTURE for a cover.
struct Kind {
    std::string coding;  // of a wave file, and the extension
    std::string extension;
    std::string otherTags;
    std::string moved;  // into another file, with a cover or in another order
    std::string movedExtension;
    std::string otherCoding;
};

const std::vector<Kind>& kinds() {
    static const std::string tags = "-i FILE -map 0 -c copy -metadata title=Other -metadata artist=Somebody ";
    static const std::string cover = "-i FILE -i PICTURE -map 0:a -map 1 -c copy -disposition:v attached_pic ";
    static const std::vector<Kind> all = {
        {"-c:a libmp3lame -b:a 128k", "mp3", tags + "-write_id3v1 1", cover, "mp3", "-c:a libmp3lame -b:a 160k"},
        {"-c:a libmp3lame -q:a 2", "mp3", tags, "-i FILE -c copy -write_xing 0 -id3v2_version 0", "mp3",
         "-c:a libmp3lame -q:a 5"},
        {"-c:a aac -b:a 128k", "m4a", tags, "-i FILE -c copy", "mov", "-c:a aac -b:a 96k"},
        {"-c:a alac", "m4a", tags + "-movflags +faststart", cover, "m4a", "-c:a aac"},
        {"-c:a pcm_s16be", "mov", tags, "-i FILE -c copy -movflags +faststart", "mov", "-c:a pcm_s24be"},
        {"-c:a pcm_s16le", "wav", tags, "-i FILE -c copy -rf64 always", "wav", "-c:a pcm_s24le"},
        {"-c:a pcm_s16be", "aiff", tags + "-write_id3v2 1", cover + "-write_id3v2 1", "aiff", "-ar 48000"},
        {"-c:a alac", "caf", tags, "-i FILE -c copy -metadata comment=Moved", "caf", "-c:a pcm_s16be"},
        {"-c:a wmav2 -b:a 128k", "wma", tags, "-i FILE -c copy -metadata comment=Moved", "wma", "-c:a wmav2 -b:a 96k"},
        {"-c:a flac", "flac", tags, cover, "flac", "-c:a flac -compression_level 0"},
        {"-c:a libopus -b:a 96k", "ogg", tags, "-i FILE -c copy -page_duration 100000", "ogg", "-c:a libopus -b:a 64k"},
        {"-c:a libvorbis -q:a 4", "mka", tags, "-i FILE -c copy -cluster_time_limit 300", "mka",
         "-c:a libvorbis -q:a 2"},
        {"-f lavfi -i testsrc=s=64x64:r=25 -map 0:a -map 1:v -shortest -c:v mpeg4 -c:a aac", "mp4", tags,
         "-i FILE -c copy -movflags +faststart", "mov", "-c:a aac -b:a 64k"},
    };
    return all;
}

std::string replaced(std::string text, const std::string& name, const std::string& by) {
    for (auto at = text.find(name); at != std::string::npos; at = text.find(name)) text.replace(at, name.size(), by);
    return text;
}

class Files {
public:
    Files() {
        m_folder.write("sound.wav", wave(0, 4, 200));
        m_folder.write("one.wav", wave(2, 3, 300));
        m_folder.write("other.wav", wave(2, 3, 500));
        REQUIRE(encode("-f lavfi -i testsrc=s=32x32 -frames:v 1 -c:v mjpeg -f image2", path("cover.jpg")));
    }

    std::string path(const std::string& name) const { return m_folder.file(name); }

    std::string coded(const Kind& kind, const std::string& source, const std::string& coding,
                      const std::string& name) const {
        return made("-i '" + path(source) + "' " + coding, {}, name + "." + kind.extension);
    }

    std::string made(const std::string& arguments, const std::string& from, const std::string& name) const {
        const std::string all =
            replaced(replaced(arguments, "FILE", "'" + from + "'"), "PICTURE", "'" + path("cover.jpg") + "'");
        CAPTURE(all);
        REQUIRE(encode(all, path(name)));
        return path(name);
    }

private:
    TemporaryFolder m_folder;
};

struct Pairs {
    int wrong = 0;
    int all = 0;

    void check(const std::string& what, const std::string& one, const std::string& other, bool same) {
        ++all;
        const std::string first = identityOf(one), second = identityOf(other);
        const bool right = !first.empty() && (first == second) == same;
        if (!right) MESSAGE(what << ": " << one << " and " << other);
        wrong += right ? 0 : 1;
    }
};

}  // namespace

TEST_CASE("A sound is known again in another file, and not taken for another sound") {
    const Files files;
    Pairs pairs;
    for (std::size_t i = 0; i < kinds().size(); ++i) {
        const Kind& kind = kinds()[i];
        const std::string n = std::to_string(i);
        const std::string file = files.coded(kind, "sound.wav", kind.coding, n);
        pairs.check("other tags", file, files.made(kind.otherTags, file, n + "tags." + kind.extension), true);
        pairs.check("moved", file, files.made(kind.moved, file, n + "moved." + kind.movedExtension), true);
        pairs.check("coded anew", file, files.coded(kind, "sound.wav", kind.otherCoding, n + "anew"), false);
        pairs.check("cut", file, files.made("-i FILE -t 3 -map 0 -c copy", file, n + "cut." + kind.extension), false);
        pairs.check("other sound after the same silence", files.coded(kind, "one.wav", kind.coding, n + "one"),
                    files.coded(kind, "other.wav", kind.coding, n + "other"), false);
    }
    CHECK(pairs.all == 65);
    CHECK(pairs.wrong == 0);
}

TEST_CASE("A copy under another name has the same identity, and the first second alone another one") {
    const TemporaryFolder folder;
    auto bytes = wave(0, 3, 200);
    const std::string path = folder.write("one.wav", bytes);
    const std::string identity = identityOf(path);
    CHECK(identity.size() == 3 + 32);
    CHECK(identity.starts_with("q1-"));
    CHECK(identityOf(folder.write("Other Name.mp3", bytes)) == identity);
    CHECK(identityOf(folder.write("shorter.wav", wave(0, 2, 200))) != identity);
}

TEST_CASE("A tag behind a cut file is not taken for its sound") {
    const Files files;
    const std::string whole = files.coded(kinds()[0], "sound.wav", "-c:a libmp3lame -b:a 128k", "whole");
    const std::string cut = files.path("cut.mp3"), tagged = files.path("tagged.mp3");
    std::filesystem::copy_file(whole, cut);
    std::filesystem::resize_file(cut, std::filesystem::file_size(whole) - 300);
    std::filesystem::copy_file(cut, tagged);
    std::ofstream(tagged, std::ios::app) << "TAG" << std::string(125, 'x');
    CHECK(identityOf(cut) == identityOf(tagged));
}

TEST_CASE("An identity takes at most 16 reads, of at most 512 KiB together") {
    const Files files;
    const TemporaryFolder folder;
    folder.write("long.wav", wave(0, 60, 200));
    const auto bytesRead = []() -> std::optional<long long> {
        std::ifstream counts("/proc/self/io");
        std::string name;
        long long count = 0;
        return counts >> name >> count && name == "rchar:" ? std::optional(count) : std::nullopt;
    };
    for (const std::size_t kind : {0, 1, 2, 3, 4, 5, 12}) {
        const std::string path = files.made("-i '" + folder.file("long.wav") + "' " + kinds()[kind].coding, {},
                                            "long" + std::to_string(kind) + "." + kinds()[kind].extension);
        CAPTURE(path);
        auto tracks = findTracks(FileBytes::open(path).value());
        REQUIRE(tracks);
        const auto reads = std::make_shared<std::atomic<std::uint64_t>>(0);
        const auto counted = FileBytes::open(path, reads);
        REQUIRE(counted);
        const auto before = bytesRead();
        CHECK(soundIdentity(tracks.value().sound.front(), *counted.value()).size() == 35);
        const auto after = bytesRead();
        CHECK(*reads <= 16);
        if (before && after) CHECK(*after - *before <= (512 << 10) + 4096);  // the count of the bytes is read, too
    }
}
