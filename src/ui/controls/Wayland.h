// What a window cannot have on Wayland: it neither places itself, nor knows its place, nor fades. Main thread only.
#pragma once

#include <QGuiApplication>

namespace qm {

inline bool isOnWayland() {
    static const bool is = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    return is;
}

}  // namespace qm
