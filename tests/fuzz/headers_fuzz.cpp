// Any bytes as the headers of a file: the boxes of a movie, and where the sound of other files lies.
#include "engine/media/FileKind.h"
#include "engine/media/MediaFiles.h"
#include "engine/media/MovieBoxes.h"
#include "engine/media/SoundData.h"
#include "fuzz/FuzzTarget.h"

using namespace qm;
using namespace qm::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostTracks = 256;
    const auto file = fileOf(data, size);
    fileKind(*file);
    promise(readMovieFacts(*file).tracks.size() <= kMostTracks);
    for (const MediaKind kind : {MediaKind::Wave, MediaKind::BigEndianWave, MediaKind::Aiff, MediaKind::Caf}) {
        if (const auto sound = findSoundData(*file, kind, 0)) {
            promise(sound->bytes <= file->size());
        }
    }
    readCafFrames(*file);
    return 0;
}

std::vector<std::vector<std::uint8_t>> qm::test::fuzzSeeds() {
    const auto track = [](int version) {
        const auto word = [&](Bytes& bytes, std::uint64_t value) { bytes.big(value, version == 1 ? 8 : 4); };
        Bytes head, media, entries;
        head.big(static_cast<std::uint64_t>(version), 1).big(0, 3);
        media.add(head.get());
        for (Bytes* times : {&head, &media}) {
            word(*times, 1);
            word(*times, 2);
        }
        head.big(1, 4).repeat(0, 60);
        media.big(44100, 4);
        word(media, 44100);
        entries.big(0, 4).big(1, 4).add(box("mp4a", Bytes().repeat(0, 28).get()));
        const auto table = box("minf", box("stbl", box("stsd", entries.get())));
        return box("trak", Bytes()
                               .add(box("tkhd", head.get()))
                               .add(box("mdia", Bytes().add(box("mdhd", media.get())).add(table).get()))
                               .get());
    };
    const auto movie = [&](int version) {
        Bytes head;
        head.big(static_cast<std::uint64_t>(version), 1).repeat(0, 11).big(600, 4).big(1000, 4).repeat(0, 80);
        return Bytes()
            .add(box("ftyp", Bytes().text("M4A ").big(0, 4).get()))
            .add(box("moov", Bytes().add(box("mvhd", head.get())).add(track(version)).add(track(version)).get()))
            .add(box("moof", {}))
            .get();
    };
    const auto packets = Bytes().text("pakt").big(24, 8).big(3, 8).big(90, 8).big(5, 4).big(1, 4).get();
    return {movie(0), movie(1), waveFile(2, 44100, 40, SampleFormat::Int16), aiffFile(2, 44100, 40),
            Bytes().add(cafFile(2, 44100, 40)).add(packets).get()};
}
