#include "ui/dialogs/FileAcceptance.h"

#include <QCollator>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QLocale>
#include <QSortFilterProxyModel>
#include <QUrl>
#include <algorithm>
#include <map>

#include "app/state/FilePath.h"
#include "engine/api/MediaKinds.h"
#include "ui/dialogs/FilePanel.h"

namespace qm {

namespace {

QStringList extensionsBy(int FileExtension::*place) {
    std::map<int, QString> ordered;
    for (const MediaKindRow& row : mediaKinds()) {
        for (const FileExtension& extension : row.extensions) {
            if (extension.*place > 0) ordered[extension.*place] = QLatin1StringView(extension.name);
        }
    }
    QStringList names;
    for (const auto& [number, name] : ordered) names.append(name);
    return names;
}

// Offers folders to go through, and files whose extension is in the list letter by letter.
class OpenPanelFilter : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
        const auto* files = static_cast<const QFileSystemModel*>(sourceModel());
        const QModelIndex index = files->index(row, 0, parent);
        return files->isDir(index) || openPanelTypes().contains(pathExtension(files->fileName(index)));
    }
};

std::unique_ptr<FilePanel> makeFilesPanel(QWidget* parent, const QString& title, const QString& folder) {
    auto panel = std::make_unique<FilePanel>(parent, title, folder, QFileDialog::AcceptOpen);
    panel->setOption(QFileDialog::DontResolveSymlinks, false);
    panel->setFileMode(QFileDialog::ExistingFiles);
    return panel;
}

}  // namespace

const QStringList& openPanelTypes() {
    static const QStringList types = [] {
        QStringList list = extensionsBy(&FileExtension::panelPlace);
        for (qsizetype i = 0, count = list.size(); i < count; ++i) list.append(list[i].toUpper());
        return list;
    }();
    return types;
}

const QStringList& dropTypes() {
    static const QStringList types = extensionsBy(&FileExtension::dropPlace);
    return types;
}

const QStringList& soundTypes() {
    static const QStringList types = [] {
        QStringList names;
        for (const MediaKindRow& row : mediaKinds())
            for (const FileExtension& extension : row.extensions) names.append(QLatin1StringView(extension.name));
        return names;
    }();
    return types;
}

bool isValidFileForDrop(const QString& path) {
    return isFile(path) && dropTypes().contains(pathExtension(path).toLower());
}

QStringList droppedFiles(const QList<QUrl>& urls) {
    QStringList paths;
    for (const QUrl& url : urls) {
        if (const auto path = pathFromUrl(url)) paths.append(*path);
    }
    QCollator collator(QLocale::system());
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(false);
    collator.setIgnorePunctuation(false);
    std::stable_sort(paths.begin(), paths.end(), collator);
    return paths;
}

QStringList droppable(const QStringList& paths) {
    QStringList taken;
    for (const QString& path : paths)
        if (dropTypes().contains(pathExtension(path).toLower())) taken.append(path);
    return taken;
}

std::unique_ptr<FilePanel> makeOpenPanel(QWidget* parent, const QString& folder) {
    auto panel = makeFilesPanel(parent, QStringLiteral("Open"), folder);
    panel->setNameFilter(QStringLiteral("Audio and video files (*)"));
    panel->setProxyModel(new OpenPanelFilter(panel.get()));
    return panel;
}

std::unique_ptr<FilePanel> makeAnySoundPanel(QWidget* parent, const QString& folder) {
    auto panel = makeFilesPanel(parent, QStringLiteral("Open Any Sound"), folder);
    const QString patterns = QStringLiteral("*.") + soundTypes().join(QStringLiteral(" *."));
    panel->setOption(QFileDialog::HideNameFilterDetails);
    panel->setNameFilters({QStringLiteral("Sound and video (%1)").arg(patterns), QStringLiteral("All files (*)")});
    return panel;
}

std::optional<QStringList> runOpenPanel(FilePanel& panel) {
    if (panel.exec() != QDialog::Accepted) return std::nullopt;
    return panel.chosenFiles();
}

QString resolvedPath(const QString& path) {
    const QFileInfo file(path);
    const QString target = file.isSymLink() ? file.canonicalFilePath() : QString();
    return target.isEmpty() ? path : target;
}

}  // namespace qm
