#include "engine/media/MediaTracks.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "engine/media/FileKind.h"
#include "engine/media/FormatSummary.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

constexpr std::size_t kMostTracks = 16;

using File = std::shared_ptr<const FileBytes>;

bool isStill(const AVStream& stream) {
    switch (stream.codecpar->codec_id) {
        case AV_CODEC_ID_MJPEG:
        case AV_CODEC_ID_PNG:
        case AV_CODEC_ID_BMP:
        case AV_CODEC_ID_GIF:
        case AV_CODEC_ID_TIFF:
        case AV_CODEC_ID_WEBP:
            return avformat_index_get_entries_count(&stream) <= 1 && stream.nb_frames <= 1;
        default:
            return false;
    }
}

// False where the file was cut before the first picture.
bool holdsPictures(AVStream& stream, std::int64_t fileSize) {
    const AVIndexEntry* first = avformat_index_get_entry(&stream, 0);
    return !first || first->pos + first->size <= fileSize;
}

bool isMovingPicture(AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && stream.codecpar->codec_id != AV_CODEC_ID_NONE &&
           (stream.disposition & (AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS)) == 0 &&
           !isStill(stream);
}

bool isSound(AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

// Of the streams of a kind, those that a movie file marks as enabled, or its first; elsewhere all.
std::vector<int> enabledStreams(const AVFormatContext& context, MediaKind kind,
                                const std::function<bool(AVStream&)>& isOfKind) {
    std::vector<int> all;
    std::vector<int> enabled;
    for (int i = 0; i < static_cast<int>(context.nb_streams); ++i) {
        AVStream& stream = *context.streams[i];
        if (isOfKind(stream)) {
            all.push_back(i);
            if (stream.disposition & AV_DISPOSITION_DEFAULT) {
                enabled.push_back(i);
            }
        }
    }
    if (kind == MediaKind::MovieFile && !enabled.empty()) {
        all = enabled;
    } else if (kind == MediaKind::MovieFile && !all.empty()) {
        all.resize(1);
    }
    all.resize(std::min(all.size(), kMostTracks));
    return all;
}

// Of streams that stand for one another in different qualities only the best sounds.
std::vector<int> soundStreams(const AVFormatContext& context, MediaKind kind) {
    const std::vector<int> all = enabledStreams(context, kind, isSound);
    if (kind != MediaKind::Asf || all.size() <= 1) {
        return all;
    }
    return {*std::max_element(all.begin(), all.end(), [&](int a, int b) {
        return context.streams[a]->codecpar->bit_rate < context.streams[b]->codecpar->bit_rate;
    })};
}

std::vector<int> pictureStreams(const AVFormatContext& context, MediaKind kind, std::int64_t fileSize) {
    return enabledStreams(context, kind,
                          [&](AVStream& stream) { return isMovingPicture(stream) && holdsPictures(stream, fileSize); });
}

// By the planner of the kind; none where it finds the stream not to be of its sort.
std::optional<SoundTrack> planQuickly(const File& file, MediaKind kind, Demuxer& demuxer, int stream,
                                      const StreamStart& start, const MovieFacts& facts) {
    switch (rowOf(kind).planner) {
        case TrackPlanner::Flac:
            return planFlac(file, demuxer.stream(stream), start);
        case TrackPlanner::Ogg:
            return planOgg(file, demuxer.stream(stream), start);
        case TrackPlanner::Matroska:
            return planMatroska(file, demuxer, stream, start);
        case TrackPlanner::WavPack:
            return planWavPack(file, demuxer.stream(stream), start);
        default:
            break;
    }
    std::optional<SoundTrack> track = planUniform(file, kind, demuxer.stream(stream), start);
    if (!track && !facts.isFragmented) {
        track = planFromTable(file, kind, demuxer, stream, start, facts);
    }
    return track;
}

std::optional<SoundTrack> planTrack(const File& file, MediaKind kind, int stream, const MovieFacts& facts) {
    // Examining a stream moves the others along too, so each is planned with a demuxer of its own.
    const auto opened = Demuxer::open(file, kind, rowOf(kind).mustBeAnalysed);
    if (!opened || stream >= static_cast<int>(opened.value()->context().nb_streams)) {
        return std::nullopt;
    }
    Demuxer& demuxer = *opened.value();
    const AVCodecParameters& parameters = *demuxer.stream(stream).codecpar;
    if (parameters.ch_layout.nb_channels > kMostChannels || parameters.sample_rate > kHighestRate) {
        return std::nullopt;
    }
    const StreamStart start = examineStart(demuxer, stream);
    if (start.sampleRate == 0) {
        return std::nullopt;
    }
    std::optional<SoundTrack> track = planQuickly(file, kind, demuxer, stream, start, facts);
    return track ? std::move(track) : planByPass(file, kind, stream);
}

struct PlannedTrack {
    int stream;
    SoundTrack sound;
};

// What the demuxer knows of a track, put right by what is known of it otherwise: how it is heard, or the size of its
// pictures, which the demuxer leaves to a decoder for some codecs.
std::optional<std::string> formatOf(const AVStream& stream, const SoundTrack* heard, const MovieFacts& facts) {
    const ParametersPtr parameters = copyParameters(*stream.codecpar);
    if (heard) {
        parameters->sample_rate = heard->sampleRate;
        if (parameters->ch_layout.nb_channels != heard->channels) {
            av_channel_layout_default(&parameters->ch_layout, heard->channels);
        }
    }
    for (const MovieTrackFacts& track : facts.tracks) {
        if (parameters->width == 0 && track.id == static_cast<std::uint32_t>(stream.id)) {
            parameters->width = track.width;
            parameters->height = track.height;
        }
    }
    return formatSummary(*parameters);
}

std::vector<std::optional<std::string>> trackFormats(const AVFormatContext& context,
                                                     const std::vector<PlannedTrack>& planned,
                                                     const MovieFacts& facts) {
    std::vector<std::optional<std::string>> formats;
    for (int i = 0; i < static_cast<int>(context.nb_streams); ++i) {
        AVStream& stream = *context.streams[i];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isMovingPicture(stream)) {
            continue;
        }
        const auto heard =
            std::find_if(planned.begin(), planned.end(), [&](const PlannedTrack& track) { return track.stream == i; });
        formats.push_back(formatOf(stream, heard == planned.end() ? nullptr : &heard->sound, facts));
    }
    return formats;
}

bool isNamedMpegAudio(std::string_view path) {
    constexpr std::string_view kSuffix = ".mp3";
    return path.size() >= kSuffix.size() && std::equal(kSuffix.begin(), kSuffix.end(), path.end() - kSuffix.size(),
                                                       [](char a, char b) { return a == b || a == b + ('a' - 'A'); });
}

Result<MediaTracks> onlyTrack(const File& file, MediaKind kind, std::optional<SoundTrack> track) {
    if (!track) {
        return Error{ErrorCategory::Unsupported, file->path() + ": not a kind of file that can be played"};
    }
    MediaTracks tracks;
    tracks.file = file;
    tracks.kind = kind;
    tracks.formats.push_back(formatSummary(*track->parameters));
    tracks.sound.push_back(std::move(*track));
    return tracks;
}

// MPEG audio behind much garbage is told from a foreign file by its name.
Result<MediaTracks> findMpegAudio(const File& file) {
    auto tracks = onlyTrack(file, MediaKind::MpegAudio, planMpegAudio(file, isNamedMpegAudio(file->path())));
    if (!tracks) {
        return tracks;
    }
    if (auto tags = Demuxer::open(file, MediaKind::MpegAudio, false)) {
        tracks.value().demuxer = std::move(tags.value());
    }
    return tracks;
}

Result<MediaTracks> findInContainer(const File& file, MediaKind kind) {
    MediaTracks tracks;
    tracks.file = file;
    tracks.kind = kind;
    if (kind == MediaKind::MovieFile) {
        tracks.facts = readMovieFacts(*file);
        if (tracks.facts.isProtected) {
            return Error{ErrorCategory::Protected, file->path() + ": protected against copying"};
        }
    }
    auto opened = Demuxer::open(file, kind, rowOf(kind).mustBeAnalysed);
    if (!opened) {
        return Error{opened.error().category, file->path() + ": " + opened.error().message};
    }
    tracks.demuxer = std::move(opened.value());
    const AVFormatContext& context = tracks.demuxer->context();
    tracks.pictures = pictureStreams(context, kind, file->size());
    std::vector<PlannedTrack> planned;
    for (const int stream : soundStreams(context, kind)) {
        if (auto track = planTrack(file, kind, stream, tracks.facts)) {
            planned.push_back({stream, std::move(*track)});
        }
    }
    tracks.formats = trackFormats(context, planned, tracks.facts);
    for (PlannedTrack& track : planned) {
        tracks.sound.push_back(std::move(track.sound));
    }
    return tracks;
}

}  // namespace

Result<MediaTracks> findTracks(std::shared_ptr<const FileBytes> file) {
    if (file->size() == 0) {
        return Error{ErrorCategory::Damaged, file->path() + ": empty"};
    }
    const MediaKind kind = fileKind(*file);
    switch (rowOf(kind).planner) {
        case TrackPlanner::MpegAudio:
            return findMpegAudio(file);
        case TrackPlanner::BigEndianWave:
            return onlyTrack(file, kind, planBigEndianWave(file));
        default:
            break;
    }
    return findInContainer(file, kind);
}

}  // namespace qm
