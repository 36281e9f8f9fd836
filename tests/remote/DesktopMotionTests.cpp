#include "remote/DesktopMotion.h"

#include <doctest/doctest.h>

using namespace qm;

namespace {

bool isWanted(const char* group, const char* key, const QVariant& value) {
    return DesktopMotion::isWantedBy({{QString::fromLatin1(group), {{QString::fromLatin1(key), value}}}});
}

}  // namespace

TEST_CASE("things move unless one of the desktop's settings forbids it") {
    CHECK(DesktopMotion::isWantedBy({}));
    CHECK_FALSE(isWanted("org.freedesktop.appearance", "reduced-motion", 1u));
    CHECK(isWanted("org.freedesktop.appearance", "reduced-motion", 0u));
    CHECK_FALSE(isWanted("org.gnome.desktop.interface", "enable-animations", false));
    CHECK(isWanted("org.gnome.desktop.interface", "enable-animations", true));
    CHECK_FALSE(isWanted("org.kde.kdeglobals.KDE", "AnimationDurationFactor", QStringLiteral("0")));
    CHECK(isWanted("org.kde.kdeglobals.KDE", "AnimationDurationFactor", QStringLiteral("0.5")));
    CHECK(isWanted("org.kde.kdeglobals.KDE", "AnimationDurationFactor", QStringLiteral("fast")));
    CHECK(isWanted("org.gnome.desktop.interface", "gtk-theme", false));
}
