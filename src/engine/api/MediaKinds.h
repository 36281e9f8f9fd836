// The kinds of media files, one row each: how a file of the kind is known, read, copied, and named to the desktop. Data
// only, for the engine and for the program above it; any thread. docs/adding-a-format.md says what a new row needs.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace qm {

enum class MediaKind : std::uint8_t {
    MpegAudio,
    Wave,
    BigEndianWave,
    Avi,
    Aiff,
    Caf,
    Flac,
    Ogg,
    WavPack,
    Matroska,
    NistSphere,
    Asf,
    Dv,
    Ac3,
    Eac3,
    MovieFile,
};

// What finds the tracks of a file.
enum class TrackPlanner : std::uint8_t { Container, MpegAudio, BigEndianWave, Flac, Ogg, Matroska, WavPack };

// How a file says what it is.
enum class TagFormat : std::uint8_t { None, MpegAudio, Riff, Aiff, Caf, Asf, Flac, Ogg, Matroska, MovieFile };

enum class TrackIcon : std::uint8_t { None, Track, M4a, Video };

// What stands in the way of copying a track into a movie packet by packet.
struct CopyRule {
    bool soundEndsInPacket = false;     // the last frame that is heard may lie within a packet
    bool picturesSayWhenShown = false;  // and not only when they are decoded
};

struct FileExtension {
    std::string_view name;  // in small letters
    TrackIcon icon = TrackIcon::Track;
    int panelPlace = 0;  // in the list of the open panel, from 1; 0: not offered there
    int dropPlace = 0;   // in the list of what a drop takes
};

struct MediaKindRow {
    MediaKind kind;
    // Any of these at the front of a file makes it one of this kind, `*` being any byte. The first row counts whose
    // mark fits; a file without any mark is taken for MPEG audio.
    std::vector<std::string_view> marks;
    bool marksAreShort = false;   // the rest of the head has to make sense, too, which fileKind() checks
    bool marksBehindId3 = false;  // they may follow a tag that was put in front of the file
    std::string_view demuxer;     // its short name in the media library; empty: read without one
    bool mustBeAnalysed = false;  // its headers leave out what its streams hold
    TrackPlanner planner = TrackPlanner::Container;
    TagFormat tags = TagFormat::None;
    CopyRule copy;
    std::vector<FileExtension> extensions;
    // As desktops know it; some kinds have had more than one name.
    std::vector<std::string_view> mimeTypes;       // of files that a drop takes
    std::vector<std::string_view> otherMimeTypes;  // of those that are only opened as any sound
};

std::span<const MediaKindRow> mediaKinds();  // in the order of MediaKind

inline const MediaKindRow& rowOf(MediaKind kind) {
    return mediaKinds()[static_cast<std::size_t>(kind)];
}

// The extension of this name, which is in small letters; null if no row has it.
const FileExtension* findExtension(std::string_view name);

}  // namespace qm
