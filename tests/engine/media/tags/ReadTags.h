// Reading tags in tests: the tags of a file made from bytes, and the first with a key.
#pragma once

#include <optional>

#include "engine/media/tags/TagFiles.h"
#include "engine/media/tags/Tags.h"

namespace qm::test {

inline const std::string kArtist =
    "\xa9"
    "ART";
inline const std::string kAlbum =
    "\xa9"
    "alb";
inline const std::string kTitle = "\xa9nam";
inline const std::string kCopyright =
    "\xa9"
    "cpy";

inline std::vector<Tag> tagsOfFile(const std::string& path) {
    const auto file = FileBytes::open(path);
    return file ? readTags(*file.value()) : std::vector<Tag>{};
}

inline std::vector<Tag> tagsOf(const FileContent& content) {
    const TemporaryFolder folder;
    return tagsOfFile(folder.write("file", content));
}

inline std::optional<std::string> firstValue(const std::vector<Tag>& tags, const std::string& key) {
    for (const Tag& tag : tags) {
        if (tag.key == key) {
            return tag.value;
        }
    }
    return std::nullopt;
}

}  // namespace qm::test
