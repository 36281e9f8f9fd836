#include "record/RecordedFile.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "app/state/SupportFolder.h"
#include "app/state/WholeFile.h"
#include "engine/api/Log.h"

namespace qm {

namespace {

std::filesystem::path systemPath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

// The copy appears under its name when it is whole.
bool copyWhole(const QString& from, const QString& to) {
    QFile source(from);
    QSaveFile target(to);
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly)) return false;
    constexpr qint64 kBlock = 1 << 20;
    while (!source.atEnd()) {
        const QByteArray block = source.read(kBlock);
        if (block.isEmpty() || target.write(block) != block.size()) return false;
    }
    return commitWhole(target);
}

void waitWithoutInput(QThread& thread) {
    QEventLoop loop;
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    thread.start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    thread.wait();
}

bool moveToOtherDisk(const QString& from, const QString& to) {
    bool copied = false;
    const std::unique_ptr<QThread> thread(QThread::create([&] { copied = copyWhole(from, to); }));
    waitWithoutInput(*thread);
    return copied && QFile::remove(from);
}

}  // namespace

QString desktopFolder() {
    return homeFolder() + QStringLiteral("/Desktop");
}

QString musicFolder() {
    return homeFolder() + QStringLiteral("/Music");
}

QString takeOnDesktop() {
    return desktopFolder() + u'/' + kTakeName;
}

QString takeInSupportFolder() {
    return homeFolder() + kSupportFolder + u'/' + kTakeName;
}

bool moveRecording(const QString& from, const QString& to) {
    std::error_code error;
    std::filesystem::rename(systemPath(from), systemPath(to), error);
    if (!error) return true;
    if (error == std::errc::cross_device_link && moveToOtherDisk(from, to)) return true;
    qmLog("the recording stays in " + from.toStdString() + ", it could not be moved to " + to.toStdString());
    return false;
}

// QFile::rename() replaces nothing: a name that is taken meanwhile is only one more that is not free.
std::optional<QString> setAside(const QString& path) {
    const QFileInfo file(path);
    constexpr int kMostTakes = 10000;
    for (int number = 2; number < kMostTakes; ++number) {
        const QString name = QStringLiteral("%1 %2.%3").arg(file.completeBaseName()).arg(number).arg(file.suffix());
        const QString free = file.path() + u'/' + name;
        if (QFileInfo::exists(free) || QFileInfo(free).isSymLink()) continue;
        if (QFile::rename(path, free)) return free;
        if (!QFileInfo::exists(free)) break;
    }
    qmLog("the recording in " + path.toStdString() + " cannot be set aside");
    return std::nullopt;
}

QStringList takesIn(const QString& folder) {
    static const QRegularExpression pattern(QStringLiteral("^Quillmere(?: ([0-9]{1,8}))?\\.mov$"));
    std::vector<std::pair<int, QString>> numbered;
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden)) {
        const auto match = pattern.match(name);
        if (match.hasMatch()) numbered.emplace_back(match.captured(1).toInt(), folder + u'/' + name);
    }
    std::sort(numbered.begin(), numbered.end());
    QStringList takes;
    for (const auto& [number, path] : numbered) takes.append(path);
    return takes;
}

}  // namespace qm
