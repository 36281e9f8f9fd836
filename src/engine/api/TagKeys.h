// The letters by which tags are told: a movie file's own keys, which the tags of all other files are given too, and the
// parts of a key that make it an artist's or an album's, whichever way round the four letters were stored.
#pragma once

#include <array>
#include <string_view>

namespace qm {

// The byte of the copyright sign stands by itself, because letters after it would be read as its digits.
inline constexpr std::string_view kArtistKey =
    "\xa9"
    "ART";
inline constexpr std::string_view kAlbumKey =
    "\xa9"
    "alb";
inline constexpr std::string_view kTitleKey =
    "\xa9"
    "nam";
inline constexpr std::string_view kCopyrightKey =
    "\xa9"
    "cpy";
inline constexpr std::string_view kCopyrightNoticeKey = "cprt";
inline constexpr std::string_view kAuthorKey =
    "\xa9"
    "aut";
inline constexpr std::string_view kCommentKey =
    "\xa9"
    "cmt";
inline constexpr std::string_view kTrackNumberKey = "trkn";
inline constexpr std::string_view kNoKey = "----";

using TellingLetters = std::array<std::string_view, 2>;
inline constexpr TellingLetters kArtistLetters = {"ART", "TRA"};
inline constexpr TellingLetters kAlbumLetters = {"alb", "bla"};

constexpr bool holdsLetters(std::string_view key, const TellingLetters& letters) {
    return key.find(letters[0]) != key.npos || key.find(letters[1]) != key.npos;
}

}  // namespace qm
