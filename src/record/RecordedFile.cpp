#include "record/RecordedFile.h"

#include <QEventLoop>
#include <QFile>
#include <QSaveFile>
#include <QThread>
#include <filesystem>
#include <memory>

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
    return target.commit();
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

void moveRecording(const QString& from, const QString& to) {
    std::error_code error;
    std::filesystem::rename(systemPath(from), systemPath(to), error);
    if (!error) return;
    if (error == std::errc::cross_device_link && moveToOtherDisk(from, to)) return;
    qmLog("the recording stays in " + from.toStdString() + ", it could not be moved to " + to.toStdString());
}

}  // namespace qm
