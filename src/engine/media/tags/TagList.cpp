#include "engine/media/tags/TagList.h"

#include <algorithm>
#include <array>

#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

constexpr std::size_t kMostTags = 20000;
constexpr std::size_t kMostBytes = std::size_t{4} << 20;
constexpr std::int64_t kMostSpent = std::int64_t{16} << 20;
constexpr std::string_view kNoKey = "----";

struct Field {
    std::string_view name;  // in the other format, in small letters where it has them
    std::string_view movieKey;
};

constexpr std::string_view kArtist =
    "\xa9"
    "ART";
constexpr std::string_view kAlbum =
    "\xa9"
    "alb";
constexpr std::string_view kTitle = "\xa9nam";
constexpr std::string_view kCopyright =
    "\xa9"
    "cpy";
constexpr std::string_view kAuthor =
    "\xa9"
    "aut";
constexpr std::string_view kComment =
    "\xa9"
    "cmt";
constexpr std::string_view kTrackNumber = "trkn";

constexpr std::array kFields = {
    Field{"tpe1", kArtist},         Field{"tp1", kArtist},
    Field{"iart", kArtist},         Field{"artist", kArtist},
    Field{"talb", kAlbum},          Field{"tal", kAlbum},
    Field{"iprd", kAlbum},          Field{"album", kAlbum},
    Field{"wm/albumtitle", kAlbum}, Field{"tit2", kTitle},
    Field{"tt2", kTitle},           Field{"inam", kTitle},
    Field{"name", kTitle},          Field{"title", kTitle},
    Field{"tcop", kCopyright},      Field{"tcr", kCopyright},
    Field{"icop", kCopyright},      Field{"(c) ", kCopyright},
    Field{"copyright", kCopyright}, Field{"auth", kAuthor},
    Field{"anno", kComment},        Field{"trck", kTrackNumber},
    Field{"trk", kTrackNumber},     Field{"itrk", kTrackNumber},
    Field{"track", kTrackNumber},   Field{"tracknumber", kTrackNumber},
};

char small(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isSame(std::string_view smallLetters, std::string_view name) {
    return std::equal(smallLetters.begin(), smallLetters.end(), name.begin(), name.end(),
                      [](char a, char b) { return a == small(b); });
}

bool misleads(std::string_view name) {
    constexpr std::array<std::string_view, 4> kTelling = {"ART", "TRA", "alb", "bla"};
    return std::any_of(kTelling.begin(), kTelling.end(),
                       [&](std::string_view letters) { return name.find(letters) != name.npos; });
}

std::string_view movieKey(std::string_view name) {
    const auto field =
        std::find_if(kFields.begin(), kFields.end(), [&](const Field& known) { return isSame(known.name, name); });
    if (field != kFields.end()) {
        return field->movieKey;
    }
    return misleads(name) ? kNoKey : name;
}

}  // namespace

bool TagList::isFull() const {
    return m_tags.size() >= kMostTags || m_bytes >= kMostBytes || m_spent >= kMostSpent;
}

void TagList::add(std::string_view key, std::string_view value) {
    if (isFull()) {
        return;
    }
    if (value.size() > kLongestText) {
        value = withoutBrokenTail(value.substr(0, kLongestText));
    }
    key = key.substr(0, kLongestKey);
    m_bytes += key.size() + value.size();
    m_tags.push_back({std::string(key), std::string(value)});
}

void TagList::addForeign(std::string_view name, std::string_view value) {
    add(movieKey(name), value);
}

}  // namespace qm
