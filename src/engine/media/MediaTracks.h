// The tracks of a media file that count: those that sound, each planned to its last frame, and those that show moving
// pictures. What plays a file and what copies it both begin here. One thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/media/Demuxer.h"
#include "engine/media/MovieBoxes.h"
#include "engine/media/SoundTrack.h"

namespace qm {

struct MediaTracks {
    std::shared_ptr<const FileBytes> file;
    MediaKind kind = MediaKind::MpegAudio;
    std::unique_ptr<Demuxer> demuxer;  // has read the headers; null where there are none
    MovieFacts facts;                  // of a movie file
    std::vector<SoundTrack> sound;     // those that are switched on, the first one first
    std::vector<int> pictures;         // the streams of moving pictures that are switched on; a cover is none

    // Of all tracks in the file, switched on or not, but for covers: their formats in words; none where it is unknown.
    std::vector<std::optional<std::string>> formats;
};

// Protected, damaged beyond use, empty or foreign files are an Error, whose message begins with the file's path.
Result<MediaTracks> findTracks(std::shared_ptr<const FileBytes> file);

}  // namespace qm
