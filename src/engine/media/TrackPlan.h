// The planners: each makes a SoundTrack from one kind of file, quickly and exactly. A planner that finds the file not
// to be of its kind answers nothing, and the slower, general one (planByPass) is used. One thread at a time.
#pragma once

#include <memory>
#include <optional>

#include "engine/media/Demuxer.h"
#include "engine/media/MovieBoxes.h"
#include "engine/media/SoundTrack.h"

namespace qm {

// What the first packets of a stream tell; they are consumed.
struct StreamStart {
    int sampleRate = 0;  // 0: nothing could be decoded
    int channels = 0;
    int framesPerPacket = 0;
    int mutePackets = 0;              // in front, which decode to nothing
    std::int64_t firstPosition = -1;  // of the first packet in the file
    std::int64_t skippedFrames = 0;   // the container asks to leave out at the start
};
StreamStart examineStart(Demuxer& demuxer, int stream);

// A track without packets yet: what the stream and its beginning tell.
SoundTrack beginTrack(const AVStream& stream, const StreamStart& start);

// MPEG audio without a container: walks the frames themselves. `farInto` also looks for them behind much garbage.
std::optional<SoundTrack> planMpegAudio(std::shared_ptr<const FileBytes> file, bool farInto);

// Samples or blocks of one size in wav, aiff, caf and nist files: arithmetic.
std::optional<SoundTrack> planUniform(std::shared_ptr<const FileBytes> file, MediaKind kind, const AVStream& stream,
                                      const StreamStart& start);

// Samples in a RIFX file: a wave file whose numbers, and samples, are big-endian.
std::optional<SoundTrack> planBigEndianWave(std::shared_ptr<const FileBytes> file);

// From the sample tables that the demuxer of a movie or caf file has in memory.
std::optional<SoundTrack> planFromTable(std::shared_ptr<const FileBytes> file, MediaKind kind, Demuxer& demuxer,
                                        int stream, const StreamStart& start, const MovieFacts& facts);

// A FLAC file: frames of equal length without looking at them, others by looking for each.
std::optional<SoundTrack> planFlac(std::shared_ptr<const FileBytes> file, const AVStream& stream,
                                   const StreamStart& start);

// Opus, Vorbis and FLAC in Ogg: by the pages' headers and the first bytes of the packets.
std::optional<SoundTrack> planOgg(std::shared_ptr<const FileBytes> file, const AVStream& stream,
                                  const StreamStart& start);

// Matroska and WebM, for codecs whose packets tell their length: by the blocks' headers.
std::optional<SoundTrack> planMatroska(std::shared_ptr<const FileBytes> file, Demuxer& demuxer, int stream,
                                       const StreamStart& start);

// WavPack: by the blocks' headers.
std::optional<SoundTrack> planWavPack(std::shared_ptr<const FileBytes> file, const AVStream& stream,
                                      const StreamStart& start);

// Anything: reads every packet of the stream once.
std::optional<SoundTrack> planByPass(std::shared_ptr<const FileBytes> file, MediaKind kind, int stream);

}  // namespace qm
