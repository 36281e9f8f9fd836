#include "remote/DesktopEntry.h"

#include "engine/api/MediaKinds.h"

namespace qm {

const QStringList& playedMimeTypes() {
    static const QStringList types = [] {
        QStringList names;
        for (const MediaKindRow& row : mediaKinds()) {
            for (const std::string_view type : row.mimeTypes) names.append(QLatin1StringView(type));
        }
        return names;
    }();
    return types;
}

const QStringList& desktopActions() {
    static const QStringList actions{QStringLiteral("openFile")};
    return actions;
}

}  // namespace qm
