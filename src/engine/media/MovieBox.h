// The boxes that a movie file (mov, mp4, m4a, m4p, m4v) is made of.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/api/FourCharCode.h"
#include "engine/media/FileBytes.h"

namespace qm {

struct MovieBox {
    std::uint32_t type;
    std::int64_t content;
    std::int64_t end;  // never after the end of what holds the box
};

// The box at `position`, in something that ends at `end`; none where no box can be.
std::optional<MovieBox> readBox(ByteWindow& bytes, std::int64_t position, std::int64_t end);

}  // namespace qm
