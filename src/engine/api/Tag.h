// One tag of a media file: raw bytes, the value meant as UTF-8. A value.
#pragma once

#include <string>

namespace qm {

struct Tag {
    std::string key;
    std::string value;

    friend bool operator==(const Tag&, const Tag&) = default;
};

}  // namespace qm
