#include "remote/DesktopEntry.h"

namespace qm {

// Some kinds have had more than one name.
const QStringList& playedMimeTypes() {
    static const QStringList types{
        QStringLiteral("audio/mpeg"),      QStringLiteral("audio/mp4"),       QStringLiteral("audio/x-m4a"),
        QStringLiteral("audio/x-wav"),     QStringLiteral("audio/wav"),       QStringLiteral("audio/vnd.wave"),
        QStringLiteral("audio/x-aiff"),    QStringLiteral("audio/x-caf"),     QStringLiteral("video/mp4"),
        QStringLiteral("video/quicktime"), QStringLiteral("video/x-msvideo"), QStringLiteral("video/vnd.avi"),
        QStringLiteral("video/x-ms-wmv"),  QStringLiteral("video/dv")};
    return types;
}

const QStringList& desktopActions() {
    static const QStringList actions{QStringLiteral("openFile")};
    return actions;
}

}  // namespace qm
