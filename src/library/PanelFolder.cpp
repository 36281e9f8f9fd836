#include "library/PanelFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <utility>

#include "app/state/FilePath.h"
#include "app/state/SupportFolder.h"
#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr qint64 kLongestPath = 4096;

QString readFolder(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
    const QString folder = pathFromBytes(file.read(kLongestPath));
    return QDir::isAbsolutePath(folder) ? folder : QString();
}

}  // namespace

QString panelFolderPath() {
    const QString home = homeFolder();
    return home.isEmpty() ? QString() : home + kSupportFolder + QStringLiteral("/openfolder");
}

QString PanelFolder::last() {
    if (!std::exchange(m_isRead, true)) m_folder = readFolder(panelFolderPath());
    return m_folder;
}

void PanelFolder::remember(const QString& folder) {
    if (folder == last()) return;
    m_folder = folder;
    const QString path = panelFolderPath();
    if (path.isEmpty()) return;
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const QByteArray bytes = pathBytes(folder);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        qmLog("openFile: cannot write " + pathBytes(path).toStdString());
}

}  // namespace qm
