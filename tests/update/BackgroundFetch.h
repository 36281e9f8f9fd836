// A fetch on a thread of its own, while this thread runs its event loop and with it the servers that live here.
#pragma once

#include <QEventLoop>
#include <QThread>
#include <memory>
#include <optional>

#include "update/Fetch.h"

namespace qm {

inline constexpr qint64 kFetchedSize = 1000;
inline constexpr FetchLimits kPatient{std::chrono::seconds(120), std::chrono::seconds(120), std::chrono::seconds(240),
                                      kFetchedSize};

inline Result<QByteArray> fetchInBackground(const QUrl& url, const FetchLimits& limits = kPatient) {
    std::optional<Result<QByteArray>> result;
    const std::unique_ptr<QThread> worker(QThread::create([&] { result = fetchFromNetwork(url, limits); }));
    QEventLoop loop;
    QObject::connect(worker.get(), &QThread::finished, &loop, &QEventLoop::quit);
    worker->start();
    loop.exec();
    worker->wait();
    return *result;
}

}  // namespace qm
