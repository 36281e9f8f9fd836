#include "engine/media/tags/TagList.h"

#include <algorithm>
#include <array>

#include "engine/api/TagKeys.h"
#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

constexpr std::size_t kMostTags = 20000;
constexpr std::size_t kMostBytes = std::size_t{4} << 20;
constexpr std::int64_t kMostSpent = std::int64_t{16} << 20;

struct Field {
    std::string_view name;  // in the other format, in small letters where it has them
    std::string_view movieKey;
};

constexpr std::array kFields = {
    Field{"tpe1", kArtistKey},         Field{"tp1", kArtistKey},
    Field{"iart", kArtistKey},         Field{"artist", kArtistKey},
    Field{"talb", kAlbumKey},          Field{"tal", kAlbumKey},
    Field{"iprd", kAlbumKey},          Field{"album", kAlbumKey},
    Field{"wm/albumtitle", kAlbumKey}, Field{"tit2", kTitleKey},
    Field{"tt2", kTitleKey},           Field{"inam", kTitleKey},
    Field{"name", kTitleKey},          Field{"title", kTitleKey},
    Field{"tcop", kCopyrightKey},      Field{"tcr", kCopyrightKey},
    Field{"icop", kCopyrightKey},      Field{"(c) ", kCopyrightKey},
    Field{"copyright", kCopyrightKey}, Field{"auth", kAuthorKey},
    Field{"anno", kCommentKey},        Field{"trck", kTrackNumberKey},
    Field{"trk", kTrackNumberKey},     Field{"itrk", kTrackNumberKey},
    Field{"track", kTrackNumberKey},   Field{"tracknumber", kTrackNumberKey},
};

char small(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isSame(std::string_view smallLetters, std::string_view name) {
    return std::equal(smallLetters.begin(), smallLetters.end(), name.begin(), name.end(),
                      [](char a, char b) { return a == small(b); });
}

bool misleads(std::string_view name) {
    return holdsLetters(name, kArtistLetters) || holdsLetters(name, kAlbumLetters);
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
