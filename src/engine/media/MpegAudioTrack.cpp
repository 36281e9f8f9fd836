#include <algorithm>
#include <cstring>

#include "engine/media/FileBytes.h"
#include "engine/media/Id3Header.h"
#include "engine/media/MpegAudioHeader.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

constexpr std::int64_t kNearBytes = 64 << 10;  // junk that is skipped before the first frame without more ado
constexpr std::int64_t kFarBytes = 4 << 20;
constexpr std::int64_t kLongestDamage = 32 << 20;
constexpr int kFirstChain = 2;  // frames in a row that make a stream, at the beginning of the file
constexpr int kNearChain = 3;
constexpr int kFarChain = 8;
constexpr int kDecoderDelay = 529;              // frames, of every layer III decoder
constexpr std::int64_t kSmallestCutFrame = 40;  // bytes of a cut last frame that are still worth decoding

struct Walk {
    ByteWindow bytes;
    std::int64_t end;

    std::optional<MpegAudioHeader> header(std::int64_t position, std::uint32_t like = 0) {
        const std::uint8_t* p = bytes.at(position, 4);
        if (!p || p[0] != 0xff || (like != 0 && ((bigEndian32(p) ^ like) & kMpegStreamMask) != 0)) {
            return std::nullopt;
        }
        return MpegAudioHeader::parse(bigEndian32(p));
    }

    std::uint32_t word(std::int64_t position) {
        const std::uint8_t* p = bytes.at(position, 4);
        return p ? bigEndian32(p) : 0;
    }

    bool isText(std::int64_t position, const char* text) {
        const std::size_t length = std::strlen(text);
        const std::uint8_t* p = bytes.at(position, length);
        return p && std::memcmp(p, text, length) == 0;
    }
};

// The end of a tag that begins here, or the position itself.
std::int64_t skipTag(Walk& walk, std::int64_t position) {
    const std::uint8_t* initial = walk.bytes.at(position, 1);
    if (!initial || (*initial != 'I' && *initial != 'A' && *initial != 'T' && *initial != 'L')) {
        return position;
    }
    if (walk.isText(position, "ID3")) {
        const std::uint8_t* p = walk.bytes.at(position, Id3Header::kBytes);
        if (const auto tag = p ? readId3Header(p) : std::nullopt) {
            return position + tag->tagBytes;
        }
    }
    if (walk.isText(position, "APETAGEX")) {
        if (const std::uint8_t* p = walk.bytes.at(position, 24)) {
            const bool isHeader = (littleEndian32(p + 20) & 0x20000000) != 0;
            return position + 32 + (isHeader ? std::int64_t{littleEndian32(p + 12)} : 0);
        }
    }
    if (walk.isText(position, "TAG") && position == walk.end - 128) {
        return walk.end;
    }
    if (walk.isText(position, "LYRICSBEGIN")) {
        return walk.end;
    }
    return position;
}

// Whether `chain` frames follow one another here. A shorter row of at least `shortest` that ends with the file or at a
// tag counts too, also when the file ends within the last of several frames.
bool startsChain(Walk& walk, std::int64_t position, int chain, int shortest) {
    const std::uint32_t like = walk.word(position);
    for (int i = 0; i < chain; ++i) {
        const auto header = walk.header(position, like);
        if (!header) {
            const bool isCut = position > walk.end;
            const bool ends = position >= walk.end || skipTag(walk, position) != position;
            return ends && i >= (isCut ? std::max(shortest, 2) : shortest);
        }
        position += header->bytes;
    }
    return true;
}

// What may be found by chance has to be shown by more frames: behind junk, a row of them, and more of them far inside.
bool startsStream(Walk& walk, std::int64_t position, std::int64_t start) {
    if (position == start) {
        return startsChain(walk, position, kFirstChain, 1);
    }
    const int chain = position - start < kNearBytes ? kNearChain : kFarChain;
    return startsChain(walk, position, chain, chain);
}

struct FirstFrame {
    std::int64_t position;
    bool afterJunk;  // something other than tags lies before it
};

std::optional<FirstFrame> findFirstFrame(Walk& walk, bool farInto) {
    std::int64_t start = 0;
    for (int tags = 0; tags < 64; ++tags) {
        const std::int64_t next = skipTag(walk, start);
        if (next == start || next >= walk.end) {
            start = next;
            break;
        }
        start = next;
    }
    const std::int64_t reach = std::min(walk.end, start + (farInto ? kFarBytes : kNearBytes));
    for (std::int64_t p = start; p < reach; ++p) {
        if (!walk.header(p)) {
            const std::int64_t next = skipTag(walk, p);
            p = std::max(p, next - 1);
            continue;
        }
        if (startsStream(walk, p, start)) {
            return FirstFrame{p, p > start};
        }
    }
    return std::nullopt;
}

struct Information {  // of the frame in front that holds no sound
    bool present = false;
    std::int64_t frames = 0;  // packets that follow
    bool hasDelay = false;
    int startPad = 0;
    int endPad = 0;
};

bool lessBytesThanStated(std::int64_t available, std::int64_t stated) {
    return available > stated && available - stated > stated >> 4;
}

Information readXing(Walk& walk, std::int64_t position, const MpegAudioHeader& header) {
    Information info;
    std::int64_t p =
        position + 4 + (header.lowRate ? (header.channels == 1 ? 9 : 17) : (header.channels == 1 ? 17 : 32));
    if (!walk.isText(p, "Xing") && !walk.isText(p, "Info")) {
        return info;
    }
    const std::uint32_t flags = walk.word(p + 4);
    p += 8;
    std::int64_t stated = 0;
    if (flags & 1) {
        info.frames = walk.word(p);
        p += 4;
    }
    if (flags & 2) {
        stated = walk.word(p);
        p += 4;
    }
    info.present = info.frames > 0 || stated > 0;
    if (stated > 0 && lessBytesThanStated(walk.end - p, stated)) {
        info.frames = 0;  // several files in one: the count is only the first one's
    }
    p += (flags & 4 ? 100 : 0) + (flags & 8 ? 4 : 0);
    if (walk.isText(p, "LAME") || walk.isText(p, "Lavf") || walk.isText(p, "Lavc")) {
        const std::uint32_t pads = walk.word(p + 21) >> 8;
        info.hasDelay = true;
        info.startPad = static_cast<int>(pads >> 12);
        info.endPad = static_cast<int>(pads & 0xfff);
    }
    return info;
}

Information readInformation(Walk& walk, std::int64_t position, const MpegAudioHeader& header) {
    if (header.layer != 3) {
        return {};
    }
    Information info = readXing(walk, position, header);
    const std::int64_t vbri = position + 4 + 32;
    if (!info.present && walk.isText(vbri, "VBRI") && walk.word(vbri + 4) >> 16 == 1) {
        info.frames = walk.word(vbri + 14);
        info.present = info.frames > 0 || walk.word(vbri + 10) > 0;
    }
    return info;
}

// The next frame behind a damaged stretch, or the end where the stretch is very long.
std::int64_t resynchronise(Walk& walk, std::int64_t position, std::uint32_t like) {
    const std::int64_t reach = std::min(walk.end, position + kLongestDamage);
    while (position < reach) {
        const std::int64_t behindTag = skipTag(walk, position);
        if (behindTag > position) {
            position = behindTag;
            continue;
        }
        if (walk.header(position, like) && startsChain(walk, position, 2, 1)) {
            return position;
        }
        ++position;
    }
    return walk.end;
}

PacketIndex walkFrames(Walk& walk, std::int64_t position, std::uint32_t like) {
    PacketIndex index;
    while (position < walk.end) {
        const auto header = walk.header(position, like);
        if (!header) {
            position = resynchronise(walk, position, like);
            continue;
        }
        const std::int64_t bytes = std::min<std::int64_t>(header->bytes, walk.end - position);
        if (bytes == header->bytes || bytes >= kSmallestCutFrame) {
            index.append(position, static_cast<std::uint32_t>(bytes), header->frames);
        }
        position += header->bytes;
    }
    return index;
}

KeptRanges keptFrames(const PacketIndex& index, const Information& info, int framesPerPacket) {
    KeptRanges kept(index.frames());
    if (!info.hasDelay) {
        return kept;
    }
    std::int64_t delay = info.startPad + kDecoderDelay;
    if (info.frames > 0) {
        const std::int64_t last = info.frames * framesPerPacket;
        const std::int64_t padding = std::min(last - info.endPad + kDecoderDelay, last);
        kept.cut(padding, last);
        // A very short file may claim more delay than it has sound; the packet where the padding begins is still heard.
        delay = std::min(delay, padding / framesPerPacket * framesPerPacket);
    }
    kept.cut(0, delay);
    return kept;
}

}  // namespace

std::optional<SoundTrack> planMpegAudio(std::shared_ptr<const FileBytes> file, bool farInto) {
    Walk walk{ByteWindow(*file), file->size()};
    const auto first = findFirstFrame(walk, farInto);
    if (!first) {
        return std::nullopt;
    }
    const std::uint32_t like = walk.word(first->position);
    const MpegAudioHeader header = *walk.header(first->position);
    Information info = readInformation(walk, first->position, header);
    if (first->afterJunk) {
        info.hasDelay = false;  // the file was put together by others than the encoder: its counts are not believed
    }
    SoundTrack track;
    track.index = walkFrames(walk, first->position + (info.present ? header.bytes : 0), like);
    if (track.index.packets() == 0) {
        return std::nullopt;
    }
    track.parameters.reset(avcodec_parameters_alloc());
    track.parameters->codec_type = AVMEDIA_TYPE_AUDIO;
    track.parameters->codec_id = header.layer == 3   ? AV_CODEC_ID_MP3
                                 : header.layer == 2 ? AV_CODEC_ID_MP2
                                                     : AV_CODEC_ID_MP1;
    track.parameters->sample_rate = header.sampleRate;
    av_channel_layout_default(&track.parameters->ch_layout, header.channels);
    track.timeBase = {1, header.sampleRate};
    track.sampleRate = header.sampleRate;
    track.channels = header.channels;
    track.traits = codecTraits(*track.parameters, header.sampleRate, header.frames);
    track.kept = keptFrames(track.index, info, header.frames);
    track.source = std::make_unique<FilePacketSource>(std::move(file));
    return track;
}

}  // namespace qm
