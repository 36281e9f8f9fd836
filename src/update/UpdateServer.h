// The vendor's update server and the paths on it. The server is set when the program is built; the environment
// variable QUILLMERE_UPDATE_SERVER names another one. Any thread.
#pragma once

#include <QUrl>

namespace qm {

inline constexpr QLatin1StringView kDescriptionPath{"/quillmere/QuillmereVersionLeopard.xml"};
inline constexpr QLatin1StringView kDiscImagePath{"/Download/Quillmere.dmg"};
inline constexpr QLatin1StringView kProductPath{"/quillmere/"};

QUrl updateUrl(QLatin1StringView path);

}  // namespace qm
