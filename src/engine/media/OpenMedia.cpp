#include <algorithm>
#include <string_view>

#include "engine/media/DisplayName.h"
#include "engine/media/FileKind.h"
#include "engine/media/MixReader.h"
#include "engine/media/MovieBoxes.h"
#include "engine/media/SoundReader.h"
#include "engine/media/TrackPlan.h"
#include "engine/media/VideoDecoder.h"

namespace qm {

namespace {

constexpr std::size_t kMostTracks = 16;
constexpr double kLongestBelieved = 400 * 3600.0;  // seconds that a header may claim for pictures

using File = std::shared_ptr<const FileBytes>;

std::string titleOf(const AVFormatContext& context) {
    const AVDictionaryEntry* title = av_dict_get(context.metadata, "title", nullptr, 0);
    return title ? title->value : "";
}

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

bool isMovingPicture(const AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && stream.codecpar->codec_id != AV_CODEC_ID_NONE &&
           (stream.disposition & (AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS)) == 0 &&
           !isStill(stream);
}

double secondsOf(const AVStream& stream) {
    const double seconds = static_cast<double>(stream.duration) * av_q2d(stream.time_base);
    return stream.duration > 0 && seconds <= kLongestBelieved ? seconds : 0;
}

// The tracks that sound: those a movie file marks as enabled, or its first; of streams that stand for one another in
// different qualities the best; elsewhere all.
std::vector<int> soundStreams(const AVFormatContext& context, std::string_view format) {
    std::vector<int> all;
    std::vector<int> enabled;
    for (int i = 0; i < static_cast<int>(context.nb_streams); ++i) {
        const AVStream& stream = *context.streams[i];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
            all.push_back(i);
            if (stream.disposition & AV_DISPOSITION_DEFAULT) {
                enabled.push_back(i);
            }
        }
    }
    if (format == "mov" && !enabled.empty()) {
        all = enabled;
    } else if (format == "mov" && !all.empty()) {
        all.resize(1);
    } else if (format == "asf" && all.size() > 1) {
        all = {*std::max_element(all.begin(), all.end(), [&](int a, int b) {
            return context.streams[a]->codecpar->bit_rate < context.streams[b]->codecpar->bit_rate;
        })};
    }
    all.resize(std::min(all.size(), kMostTracks));
    return all;
}

// Formats whose headers leave out what their streams hold.
bool mustBeAnalysed(std::string_view format) {
    return format == "avi" || format == "asf" || format == "dv";
}

std::optional<SoundTrack> planTrack(const File& file, const std::string& format, int stream, const MovieFacts& facts) {
    // Examining a stream moves the others along too, so each is planned with a demuxer of its own.
    const auto opened = Demuxer::open(file, format, mustBeAnalysed(format));
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
    std::optional<SoundTrack> track = planUniform(file, format, demuxer.stream(stream), start);
    if (!track && !facts.isFragmented) {
        track = planFromTable(file, format, demuxer, stream, start, facts);
    }
    return track ? std::move(track) : planByPass(file, format, stream);
}

std::unique_ptr<MixReader> mixOf(std::vector<SoundTrack> tracks) {
    std::vector<std::unique_ptr<TrackReader>> readers;
    for (SoundTrack& track : tracks) {
        if (track.kept.length() > 0) {
            if (auto reader = TrackReader::create(std::move(track))) {
                readers.push_back(std::move(reader));
            }
        }
    }
    return readers.empty() ? nullptr : std::make_unique<MixReader>(std::move(readers));
}

// The first stream of moving pictures; -1 if there is none.
int pictureStream(const AVFormatContext& context) {
    for (unsigned i = 0; i < context.nb_streams; ++i) {
        if (isMovingPicture(*context.streams[i])) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

VideoOpener videoOpener(const File& file, const std::string& format, int stream, double origin) {
    return [=] { return VideoDecoder::open(file, format, mustBeAnalysed(format), stream, origin); };
}

double startOf(const AVStream& stream) {
    return stream.start_time == AV_NOPTS_VALUE ? 0 : static_cast<double>(stream.start_time) * av_q2d(stream.time_base);
}

Result<OpenedMedia> completed(OpenedMedia media, const std::string& path) {
    media.description.hasSound = media.sound != nullptr;
    if (!media.description.hasSound && !media.description.hasVideo) {
        return Error{ErrorCategory::Damaged, path + ": holds neither sound nor pictures that can be decoded"};
    }
    if (media.sound) {
        const double seconds = static_cast<double>(media.sound->length()) / media.sound->sampleRate();
        media.description.durationSeconds = std::max(media.description.durationSeconds, seconds);
    }
    return media;
}

Result<OpenedMedia> openContainer(const File& file, const std::string& format, const std::string& path) {
    MovieFacts facts;
    if (format == "mov") {
        facts = readMovieFacts(*file);
        if (facts.isProtected) {
            return Error{ErrorCategory::Protected, path + ": protected against copying"};
        }
    }
    const auto opened = Demuxer::open(file, format, mustBeAnalysed(format));
    if (!opened) {
        return Error{opened.error().category, path + ": " + opened.error().message};
    }
    const AVFormatContext& context = opened.value()->context();
    OpenedMedia media;
    media.description.displayName = displayName(titleOf(context), path);
    double pictureSeconds = 0;
    for (unsigned i = 0; i < context.nb_streams; ++i) {
        if (isMovingPicture(*context.streams[i]) && holdsPictures(*context.streams[i], file->size())) {
            media.description.hasVideo = true;
            pictureSeconds = std::max(pictureSeconds, secondsOf(*context.streams[i]));
        }
    }
    std::vector<SoundTrack> tracks;
    for (const int stream : soundStreams(context, format)) {
        if (auto track = planTrack(file, format, stream, facts)) {
            tracks.push_back(std::move(*track));
        }
    }
    auto mix = mixOf(std::move(tracks));
    if (const int stream = pictureStream(context); stream >= 0) {
        const double origin = mix ? mix->startSeconds() : startOf(*context.streams[stream]);
        media.openVideo = videoOpener(file, format, stream, origin);
    }
    media.sound = std::move(mix);
    if (!media.sound ||
        !facts.isFragmented) {  // the header of a fragmented file was written before its length was known
        media.description.durationSeconds = pictureSeconds;
    }
    return completed(std::move(media), path);
}

Result<OpenedMedia> openMpegAudio(const File& file, const std::string& path) {
    constexpr std::string_view kSuffix = ".mp3";
    const bool named =
        path.size() >= kSuffix.size() && std::equal(kSuffix.begin(), kSuffix.end(), path.end() - kSuffix.size(),
                                                    [](char a, char b) { return a == b || a == b + ('a' - 'A'); });
    auto track = planMpegAudio(file, named);
    if (!track) {
        return Error{ErrorCategory::Unsupported, path + ": not a kind of file that can be played"};
    }
    OpenedMedia media;
    const auto tags = Demuxer::open(file, "mp3", false);
    media.description.displayName = displayName(tags ? titleOf(tags.value()->context()) : "", path);
    std::vector<SoundTrack> tracks;
    tracks.push_back(std::move(*track));
    media.sound = mixOf(std::move(tracks));
    return completed(std::move(media), path);
}

}  // namespace

Result<OpenedMedia> openMedia(const std::string& path) {
    const auto file = FileBytes::open(path);
    if (!file) {
        return file.error();
    }
    if (file.value()->size() == 0) {
        return Error{ErrorCategory::Damaged, path + ": empty"};
    }
    const std::string format = fileKind(*file.value());
    return format.empty() ? openMpegAudio(file.value(), path) : openContainer(file.value(), format, path);
}

}  // namespace qm
