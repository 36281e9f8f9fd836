// The vendor's update server, the paths on it, and how much of its time and content is taken. The server is set when
// the program is built; the environment variable QUILLMERE_UPDATE_SERVER names another one. Any thread.
//
//                      begins to answer   silent in between   in all    at most
//     description      10 s               10 s                30 s      256 KiB
//     disc image       30 s               60 s                2 hours   512 MiB, held in memory until it is whole
#pragma once

#include <QUrl>

#include "update/Fetch.h"

namespace qm {

inline constexpr FetchLimits kDescriptionLimits{std::chrono::seconds(10), std::chrono::seconds(10),
                                                std::chrono::seconds(30), qint64(256) << 10};
inline constexpr FetchLimits kImageLimits{std::chrono::seconds(30), std::chrono::seconds(60), std::chrono::hours(2),
                                          qint64(512) << 20};

inline constexpr QLatin1StringView kDescriptionPath{"/quillmere/QuillmereVersionLeopard.xml"};
inline constexpr QLatin1StringView kDiscImagePath{"/Download/Quillmere.dmg"};
inline constexpr QLatin1StringView kProductPath{"/quillmere/"};

QUrl updateUrl(QLatin1StringView path);

}  // namespace qm
