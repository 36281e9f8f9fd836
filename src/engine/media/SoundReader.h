// The sound of one media file as exact frames: frame n is the same frame however it was reached (from the start, after
// a seek, backwards). All sound tracks of the file are mixed and folded to stereo; mono stands in both channels.
// The encoder's delay and padding and the container's edit lists are taken off, so frame 0 is the first frame meant to
// be heard and length() is the true number of frames.
// One thread at a time; no method may be called on the sound callback. A damaged stretch reads as silence.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/api/Result.h"
#include "engine/api/Tag.h"
#include "engine/media/FileBytes.h"
#include "engine/media/VideoReader.h"

namespace qm {

class SoundReader {
public:
    virtual ~SoundReader() = default;

    virtual int sampleRate() const = 0;       // frames per second
    virtual std::int64_t length() const = 0;  // frames
    virtual int channels() const = 0;         // of the first sound track, before folding

    // Decodes frames [first, first + count) as interleaved stereo into `stereo` (2 * count floats). Frames outside
    // [0, length()) and frames that cannot be decoded are zero. Consecutive forward calls cost no seek; any other call
    // costs one seek and the codec's preroll. Returns false when the file has become unreadable (the rest is zero).
    virtual bool read(std::int64_t first, float* stereo, std::size_t count) = 0;

    // For what concerns the first sound track only: the same frames in two parts, the first track and the sum of the
    // others. Without others there is nothing but the first.
    virtual bool hasOtherTracks() const { return false; }
    virtual bool readParts(std::int64_t first, float* firstTrack, float* others, std::size_t count) {
        std::fill_n(others, 2 * count, 0.0f);
        return read(first, firstTrack, count);
    }
};

using SoundOpener = std::function<std::unique_ptr<SoundReader>()>;

struct MediaDescription {
    std::string displayName;  // embedded title if it is not blank, else the file name with its extension; UTF-8
    bool hasVideo = false;    // moving pictures; an attached cover does not count
    bool hasSound = false;
    double durationSeconds = 0;  // of the longest stream
    double preferredRate = 1;    // signed, as a movie's header states it

    // Of each track: what a musician would call its format; none if it is unknown. Attached covers are left out.
    std::vector<std::optional<std::string>> trackFormats;
};

struct OpenedMedia {
    std::shared_ptr<const FileBytes> file;  // stays readable when its name is gone
    MediaDescription description;
    std::unique_ptr<SoundReader> sound;  // as long as the longest track; none for a file without sound
    std::string identity;                // of the sound (SoundIdentity.h); empty without sound
    SoundOpener openSound;               // another reader of it; empty for a file without sound; any thread
    std::vector<Tag> tags;               // what the file says of itself
    VideoOpener openVideo;               // empty for a file without moving pictures; any thread
};

// Opens the file and builds its exact index. Protected, damaged beyond use, empty or foreign files are an Error.
// A three-hour file opens in well under a second. `path` is in the file system's own encoding. `reads` counts what is
// read on the way.
Result<OpenedMedia> openMedia(const std::string& path, ReadCount reads = {});

}  // namespace qm
