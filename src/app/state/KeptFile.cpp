#include "app/state/KeptFile.h"

#include <QFile>
#include <QFileInfo>
#include <filesystem>
#include <system_error>

namespace qm {

namespace {

constexpr int kMostNames = 1000;
constexpr qint64 kBlock = 1 << 16;

std::filesystem::path pathOf(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

bool isThere(const QString& path) {
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

bool makeLink(const QString& path, const QString& name) {
    std::error_code error;
    std::filesystem::create_hard_link(pathOf(path), pathOf(name), error);
    return !error;
}

// A link is the same file, which somebody may write over; it is better than nothing where no copy can be made.
bool makeCopy(const QString& path, const QString& name) {
    return QFile::copy(path, name) || makeLink(path, name);
}

bool haveSameContent(const QString& one, const QString& other) {
    if (!QFileInfo(other).isFile() || QFileInfo(one).size() != QFileInfo(other).size()) return false;
    std::error_code error;
    if (std::filesystem::equivalent(pathOf(one), pathOf(other), error)) return true;
    QFile first(one), second(other);
    if (!first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly)) return false;
    while (!first.atEnd()) {
        const QByteArray block = first.read(kBlock);
        if (block.isEmpty() || block != second.read(kBlock)) return false;
    }
    return true;
}

}  // namespace

QString keepAside(const QString& path, const QString& word) {
    const QFileInfo file(path);
    for (int i = 1; i < kMostNames; ++i) {
        const QString number = i == 1 ? QString() : QStringLiteral(" %1").arg(i);
        const QString kept =
            QStringLiteral("%1/%2 (%3%4).%5").arg(file.path(), file.completeBaseName(), word, number, file.suffix());
        if (haveSameContent(path, kept)) return kept;
        if (isThere(kept)) continue;
        return (file.isFile() ? makeCopy(path, kept) : QFile::rename(path, kept)) ? kept : QString();
    }
    return {};
}

bool keepAs(const QString& path, const QString& name) {
    const QString fresh = name + QStringLiteral(".new");
    QFile::remove(fresh);
    if (!makeLink(path, fresh) && !QFile::copy(path, fresh)) return false;
    std::error_code error;
    std::filesystem::rename(pathOf(fresh), pathOf(name), error);
    QFile::remove(fresh);  // is still there when both were one file already
    return !error;
}

}  // namespace qm
