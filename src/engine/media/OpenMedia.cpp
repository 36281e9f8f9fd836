#include <algorithm>

#include "engine/media/DisplayName.h"
#include "engine/media/MediaTracks.h"
#include "engine/media/MixReader.h"
#include "engine/media/SoundReader.h"
#include "engine/media/VideoDecoder.h"
#include "engine/media/tags/Tags.h"

namespace qm {

namespace {

constexpr double kLongestBelieved = 400 * 3600.0;  // seconds that a header may claim for pictures

std::string titleOf(const AVFormatContext& context) {
    const AVDictionaryEntry* title = av_dict_get(context.metadata, "title", nullptr, 0);
    return title ? title->value : "";
}

double secondsOf(const AVStream& stream) {
    const double seconds = static_cast<double>(stream.duration) * av_q2d(stream.time_base);
    return stream.duration > 0 && seconds <= kLongestBelieved ? seconds : 0;
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

SoundOpener soundOpener(const std::vector<SoundTrack>& tracks) {
    auto again = [](const std::vector<SoundTrack>& some) {
        std::vector<SoundTrack> others;
        for (const SoundTrack& track : some) others.push_back(track.forAnotherReader());
        return others;
    };
    auto plans = std::make_shared<const std::vector<SoundTrack>>(again(tracks));
    return [plans, again] { return mixOf(again(*plans)); };
}

VideoOpener videoOpener(const MediaTracks& tracks, int stream, double origin) {
    return [file = tracks.file, format = tracks.format, analysed = tracks.analysed, stream, origin] {
        return VideoDecoder::open(file, format, analysed, stream, origin);
    };
}

double longestPictures(const MediaTracks& tracks) {
    double longest = 0;
    for (const int stream : tracks.pictures) {
        longest = std::max(longest, secondsOf(tracks.demuxer->stream(stream)));
    }
    return longest;
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
    media.tags = readTags(*media.file);
    return media;
}

}  // namespace

Result<OpenedMedia> openMedia(const std::string& path, ReadCount reads) {
    const auto file = FileBytes::open(path, std::move(reads));
    if (!file) {
        return file.error();
    }
    auto found = findTracks(file.value());
    if (!found) {
        return found.error();
    }
    MediaTracks& tracks = found.value();
    OpenedMedia media;
    media.file = file.value();
    media.description.displayName = displayName(tracks.demuxer ? titleOf(tracks.demuxer->context()) : "", path);
    media.description.hasVideo = !tracks.pictures.empty();
    media.description.preferredRate = tracks.facts.preferredRate;
    media.description.trackFormats = std::move(tracks.formats);
    if (!tracks.sound.empty()) media.openSound = soundOpener(tracks.sound);
    auto mix = mixOf(std::move(tracks.sound));
    if (media.description.hasVideo) {
        const AVStream& first = tracks.demuxer->stream(tracks.pictures.front());
        media.openVideo = videoOpener(tracks, tracks.pictures.front(), mix ? mix->startSeconds() : startSeconds(first));
    }
    media.sound = std::move(mix);
    if (!media.sound || !tracks.facts.isFragmented) {  // that header was written before its length was known
        media.description.durationSeconds = longestPictures(tracks);
    }
    return completed(std::move(media), path);
}

}  // namespace qm
