#include "app/state/PlayListCells.h"

#include <QStringList>

#include "app/state/TimeFormat.h"
#include "ui/dialogs/FileAcceptance.h"

namespace qm {

QString shortTimeString(std::int64_t value, std::int32_t scale) {
    const auto text = stringFromQTTime({value, scale, 0});
    if (!text) return {};
    QString cell = text->mid(2, 10);
    cell.replace(QStringLiteral("00:00"), QStringLiteral("00"));
    if (static_cast<double>(value) > static_cast<double>(scale) * 60.0) cell.remove(QStringLiteral("00:"));
    return cell;
}

TrackIcon iconForTrack(const QString& path) {
    static const QStringList compressed = {"m4a", "m4p"};
    static const QStringList video = {"mov", "mp4", "m4v", "avi", "wmv", "dv"};
    const QString extension = pathExtension(path);
    if (extension.isEmpty()) return TrackIcon::None;
    if (compressed.contains(extension, Qt::CaseInsensitive)) return TrackIcon::M4a;
    if (video.contains(extension, Qt::CaseInsensitive)) return TrackIcon::Video;
    return TrackIcon::Track;
}

QString trackTotalText(int count) {
    return count == 1 ? QStringLiteral("1 Track") : QStringLiteral("%1 items").arg(count);
}

}  // namespace qm
