#include "engine/api/MediaKinds.h"

#include <algorithm>
#include <array>

namespace qm {

using namespace std::string_view_literals;

namespace {

using enum TrackIcon;

const std::array kRows = {
    MediaKindRow{.kind = MediaKind::MpegAudio,
                 .demuxer = "mp3",
                 .planner = TrackPlanner::MpegAudio,
                 .tags = TagFormat::MpegAudio,
                 .copy = {.soundEndsInPacket = true},
                 .extensions = {{"mp3", Track, 5, 4}},
                 .mimeTypes = {"audio/mpeg"}},
    MediaKindRow{.kind = MediaKind::Wave,
                 .marks = {"RIFF****WAVE", "RF64****WAVE"},
                 .marksBehindId3 = true,
                 .demuxer = "wav",
                 .tags = TagFormat::Riff,
                 .extensions = {{"wav", Track, 11, 10}},
                 .mimeTypes = {"audio/x-wav", "audio/wav", "audio/vnd.wave"}},
    MediaKindRow{.kind = MediaKind::BigEndianWave, .marks = {"RIFX****WAVE"}, .planner = TrackPlanner::BigEndianWave},
    MediaKindRow{.kind = MediaKind::Avi,
                 .marks = {"RIFF****AVI ", "RIFF****AVIX"},
                 .marksBehindId3 = true,
                 .demuxer = "avi",
                 .mustBeAnalysed = true,
                 .tags = TagFormat::Riff,
                 .extensions = {{"avi", Video, 1, 2}},
                 .mimeTypes = {"video/x-msvideo", "video/vnd.avi"}},
    MediaKindRow{.kind = MediaKind::Aiff,
                 .marks = {"FORM****AIFF", "FORM****AIFC"},
                 .marksBehindId3 = true,
                 .demuxer = "aiff",
                 .tags = TagFormat::Aiff,
                 .extensions = {{"aiff", Track, 8, 7}, {"aif", Track, 9, 8}, {"aifc", Track, 10}},
                 .mimeTypes = {"audio/x-aiff"},
                 .otherMimeTypes = {"audio/x-aifc"}},
    MediaKindRow{.kind = MediaKind::Caf,
                 .marks = {"caff"},
                 .marksBehindId3 = true,
                 .demuxer = "caf",
                 .tags = TagFormat::Caf,
                 .extensions = {{"caf", Track, 14, 9}},
                 .mimeTypes = {"audio/x-caf"}},
    MediaKindRow{.kind = MediaKind::Flac,
                 .marks = {"fLaC"},
                 .marksBehindId3 = true,
                 .demuxer = "flac",
                 .planner = TrackPlanner::Flac,
                 .tags = TagFormat::Flac,
                 .extensions = {{"flac"}},
                 .otherMimeTypes = {"audio/flac"}},
    MediaKindRow{.kind = MediaKind::Ogg,
                 .marks = {"OggS"},
                 .marksBehindId3 = true,
                 .demuxer = "ogg",
                 .planner = TrackPlanner::Ogg,
                 .tags = TagFormat::Ogg,
                 .extensions = {{"ogg"}, {"oga"}, {"opus"}},
                 .otherMimeTypes = {"audio/ogg", "audio/x-vorbis+ogg", "audio/x-opus+ogg", "audio/x-flac+ogg"}},
    MediaKindRow{.kind = MediaKind::WavPack,
                 .marks = {"wvpk"},
                 .marksBehindId3 = true,
                 .demuxer = "wv",
                 .planner = TrackPlanner::WavPack,
                 .tags = TagFormat::MpegAudio,
                 .extensions = {{"wv"}},
                 .otherMimeTypes = {"audio/x-wavpack"}},
    MediaKindRow{.kind = MediaKind::Matroska,
                 .marks = {"\x1a\x45\xdf\xa3"},
                 .marksBehindId3 = true,
                 .demuxer = "matroska",
                 .mustBeAnalysed = true,
                 .planner = TrackPlanner::Matroska,
                 .tags = TagFormat::Matroska,
                 .extensions = {{"mka"}, {"mkv"}, {"webm"}},
                 .otherMimeTypes = {"audio/x-matroska", "video/x-matroska", "audio/webm", "video/webm"}},
    MediaKindRow{.kind = MediaKind::NistSphere, .marks = {"NIST"}, .marksBehindId3 = true, .demuxer = "nistsphere"},
    MediaKindRow{.kind = MediaKind::Asf,
                 .marks = {"\x30\x26\xb2\x75\x8e\x66\xcf\x11"},
                 .marksBehindId3 = true,
                 .demuxer = "asf",
                 .mustBeAnalysed = true,
                 .tags = TagFormat::Asf,
                 .extensions = {{"wmv", Video, 13, 12}},
                 .mimeTypes = {"video/x-ms-wmv"}},
    MediaKindRow{.kind = MediaKind::Dv,
                 .marks = {"\x1f\x07\0\x3f"sv, "\x1f\x07\0\xbf"sv},
                 .demuxer = "dv",
                 .mustBeAnalysed = true,
                 .extensions = {{"dv", Video, 12, 11}},
                 .mimeTypes = {"video/dv"}},
    MediaKindRow{.kind = MediaKind::Ac3,
                 .marks = {"\x0b\x77"},
                 .marksAreShort = true,
                 .marksBehindId3 = true,
                 .demuxer = "ac3",
                 .mustBeAnalysed = true,
                 .tags = TagFormat::MpegAudio,
                 .extensions = {{"ac3"}},
                 .otherMimeTypes = {"audio/ac3"}},
    MediaKindRow{.kind = MediaKind::Eac3,
                 .marks = {"\x0b\x77"},
                 .marksAreShort = true,
                 .marksBehindId3 = true,
                 .demuxer = "eac3",
                 .mustBeAnalysed = true,
                 .tags = TagFormat::MpegAudio,
                 .extensions = {{"eac3"}, {"ec3"}},
                 .otherMimeTypes = {"audio/eac3"}},
    // Last, because its marks stand where other kinds have numbers of any value.
    MediaKindRow{.kind = MediaKind::MovieFile,
                 .marks = {"****ftyp", "****moov", "****mdat", "****free", "****skip", "****wide", "****pnot",
                           "****udta", "****uuid"},
                 .demuxer = "mov",
                 .tags = TagFormat::MovieFile,
                 .copy = {.picturesSayWhenShown = true},
                 .extensions = {{"mp4", Video, 2, 3},
                                {"m4v", Video, 3},
                                {"mov", Video, 4, 1},
                                {"m4a", M4a, 6, 5},
                                {"m4p", M4a, 7, 6},
                                {"m4b"}},
                 .mimeTypes = {"audio/mp4", "audio/x-m4a", "video/mp4", "video/quicktime"},
                 .otherMimeTypes = {"audio/x-m4b"}},
};

}  // namespace

std::span<const MediaKindRow> mediaKinds() {
    return kRows;
}

const FileExtension* findExtension(std::string_view name) {
    for (const MediaKindRow& row : mediaKinds()) {
        const auto found = std::find_if(row.extensions.begin(), row.extensions.end(),
                                        [name](const FileExtension& extension) { return extension.name == name; });
        if (found != row.extensions.end()) {
            return &*found;
        }
    }
    return nullptr;
}

}  // namespace qm
