#include <algorithm>

#include "engine/media/DisplayName.h"
#include "engine/media/MediaTracks.h"
#include "engine/media/MixReader.h"
#include "engine/media/PictureEnd.h"
#include "engine/media/SoundIdentity.h"
#include "engine/media/SoundReader.h"
#include "engine/media/VideoDecoder.h"
#include "engine/media/tags/Tags.h"

namespace qm {

namespace {

std::string titleOf(const AVFormatContext& context) {
    const AVDictionaryEntry* title = av_dict_get(context.metadata, "title", nullptr, 0);
    return title ? title->value : "";
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

std::vector<SoundTrack> forAnotherReader(const std::vector<SoundTrack>& tracks) {
    std::vector<SoundTrack> others;
    for (const SoundTrack& track : tracks) others.push_back(track.forAnotherReader());
    return others;
}

SoundOpener soundOpener(std::shared_ptr<const std::vector<SoundTrack>> plans, double seconds) {
    return [plans = std::move(plans), seconds]() -> std::unique_ptr<SoundReader> {
        auto mix = mixOf(forAnotherReader(*plans));
        if (mix) mix->lengthen(seconds);
        return mix;
    };
}

VideoOpener videoOpener(const MediaTracks& tracks, int stream, double origin) {
    return [file = tracks.file, kind = tracks.kind, stream, origin] {
        return VideoDecoder::open(file, kind, stream, origin);
    };
}

Result<OpenedMedia> completed(OpenedMedia media, const std::string& path) {
    media.description.hasSound = media.sound != nullptr;
    if (!media.description.hasSound && !media.description.hasVideo) {
        return Error{ErrorCategory::Damaged, path + ": holds neither sound nor pictures that can be decoded"};
    }
    if (media.sound) {
        media.description.durationSeconds = static_cast<double>(media.sound->length()) / media.sound->sampleRate();
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
    if (!tracks.sound.empty()) media.identity = soundIdentity(tracks.sound.front(), *media.file);
    const auto plans = std::make_shared<const std::vector<SoundTrack>>(forAnotherReader(tracks.sound));
    auto mix = mixOf(std::move(tracks.sound));
    if (media.description.hasVideo) {
        const AVStream& first = tracks.demuxer->stream(tracks.pictures.front());
        const double origin = mix ? mix->startSeconds() : startSeconds(first);
        media.openVideo = videoOpener(tracks, tracks.pictures.front(), origin);
        media.description.durationSeconds = std::max(pictureEnd(tracks) - origin, 0.0);
    }
    if (mix) {
        mix->lengthen(media.description.durationSeconds);
        media.openSound = soundOpener(plans, media.description.durationSeconds);
    }
    media.sound = std::move(mix);
    return completed(std::move(media), path);
}

}  // namespace qm
