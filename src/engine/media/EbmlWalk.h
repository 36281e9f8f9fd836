// Elements of an EBML file, one behind the other (RFC 8794). Pure but for the reading.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/media/FileBytes.h"

namespace qm {

struct EbmlElement {
    std::uint32_t id = 0;  // with the bits that say its length
    std::int64_t begin = 0;
    std::int64_t content = 0;
    std::int64_t end = 0;      // behind it; where its size is unknown, the end of what holds it
    bool isOpenEnded = false;  // it ends where an element comes that cannot be in it
};

// The element at `position` of what ends at `end`, cut there; none for bytes that are none.
std::optional<EbmlElement> readEbmlElement(ByteWindow& bytes, std::int64_t position, std::int64_t end);

// A number whose first bits say its length, without them; moves `position` behind it. None where it does not fit.
std::optional<std::uint64_t> readEbmlNumber(ByteWindow& bytes, std::int64_t& position, std::int64_t end);

// The unsigned number that an element holds.
std::uint64_t ebmlUnsigned(ByteWindow& bytes, const EbmlElement& element);

// Calls fn for each element in [position, end) until it answers false.
template <typename Fn>
void forEachEbmlElement(ByteWindow& bytes, std::int64_t position, std::int64_t end, Fn&& fn) {
    while (const auto element = readEbmlElement(bytes, position, end)) {
        if (!fn(*element)) return;
        position = element->end;
    }
}

}  // namespace qm
