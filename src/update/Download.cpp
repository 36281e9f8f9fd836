#include "update/Download.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QThread>
#include <memory>

#include "app/state/WholeFile.h"
#include "engine/api/Log.h"
#include "update/InputBlock.h"
#include "update/UpdateServer.h"

namespace qm {

namespace {

bool writeAtomically(const QByteArray& content, const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && commitWhole(file)) return true;
    qmLog(QStringLiteral("downloadNewDiscImage: cannot write %1: %2").arg(path, file.errorString()).toStdString());
    return false;
}

// What stands between this machine and the network may answer with a page of its own.
bool isWebPage(const QByteArray& content) {
    const QByteArray start = content.left(1024).trimmed().toLower();
    return start.startsWith("<!doctype html") || start.startsWith("<html");
}

Result<QByteArray> fetchImage(const Fetch& fetch, const QUrl& image) {
    Result<QByteArray> content = fetch(image, kImageLimits);
    if (content && isWebPage(content.value())) return Error{ErrorCategory::Damaged, "it is a web page"};
    return content;
}

bool fetchAndWrite(const Fetch& fetch, const QUrl& image, const QString& path) {
    const Result<QByteArray> content = fetchImage(fetch, image);
    if (content) return writeAtomically(content.value(), path);
    qmLog("downloadNewDiscImage: cannot read " + image.toString().toStdString() + ": " + content.error().message);
    return false;
}

}  // namespace

bool download(const Fetch& fetch, const QUrl& image, const QString& path) {
    bool done = false;
    const std::unique_ptr<QThread> worker(QThread::create([&] { done = fetchAndWrite(fetch, image, path); }));
    const InputBlock block;
    QEventLoop loop;
    QObject::connect(worker.get(), &QThread::finished, &loop, &QEventLoop::quit);
    worker->start();
    loop.exec();
    worker->wait();
    return done;
}

}  // namespace qm
