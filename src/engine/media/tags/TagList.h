// The tags of one file while they are being read: bounded in number, in bytes and in work, whatever the file claims.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/api/Tag.h"

namespace qm {

class TagList {
public:
    static constexpr std::size_t kLongestKey = 256;    // bytes
    static constexpr std::size_t kLongestText = 4096;  // bytes; readers need to read no more of a value

    // True once it takes no more; then reading ends.
    bool isFull() const;

    // Work that gives no tag, about as much as looking at so many bytes.
    void spend(std::int64_t bytes) { m_spent += bytes; }

    void add(std::string_view key, std::string_view value);

    // With the key that the same field has in a movie file. Fields that have none there keep their name, unless its
    // letters would make an artist or an album of it.
    void addForeign(std::string_view name, std::string_view value);

    std::vector<Tag> take() { return std::move(m_tags); }

private:
    std::vector<Tag> m_tags;
    std::size_t m_bytes = 0;
    std::int64_t m_spent = 0;
};

}  // namespace qm
