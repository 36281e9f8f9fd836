#include "remote/DesktopEntry.h"

#include "engine/api/MediaKinds.h"

namespace qm {

namespace {

void append(QStringList& names, const std::vector<std::string_view>& types) {
    for (const std::string_view type : types) names.append(QLatin1StringView(type));
}

}  // namespace

const QStringList& playedMimeTypes() {
    static const QStringList types = [] {
        QStringList names;
        for (const MediaKindRow& row : mediaKinds()) {
            append(names, row.mimeTypes);
            append(names, row.otherMimeTypes);
        }
        return names;
    }();
    return types;
}

const QStringList& droppedMimeTypes() {
    static const QStringList types = [] {
        QStringList names;
        for (const MediaKindRow& row : mediaKinds()) append(names, row.mimeTypes);
        return names;
    }();
    return types;
}

const QStringList& desktopActions() {
    static const QStringList actions{QStringLiteral("openFile")};
    return actions;
}

}  // namespace qm
