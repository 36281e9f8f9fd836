#include "app/state/PlayListCells.h"

#include <string>

#include "app/state/FilePath.h"
#include "app/state/TimeFormat.h"

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
    const std::string name = pathExtension(path).toLower().toStdString();
    if (name.empty()) return TrackIcon::None;
    const FileExtension* extension = findExtension(name);
    return extension ? extension->icon : TrackIcon::Track;
}

QString trackTotalText(int count) {
    return count == 1 ? QStringLiteral("1 Track") : QStringLiteral("%1 items").arg(count);
}

}  // namespace qm
