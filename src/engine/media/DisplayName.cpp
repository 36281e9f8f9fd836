#include "engine/media/DisplayName.h"

#include <algorithm>

#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); });
}

}  // namespace

std::string displayName(std::string_view title, std::string_view path) {
    if (!isBlank(title)) {
        return utf8FromUnknown(title);
    }
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return utf8FromUnknown(path.substr(path.find_last_of('/') + 1));
}

}  // namespace qm
