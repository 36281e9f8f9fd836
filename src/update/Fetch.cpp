#include "update/Fetch.h"

#include <QCoreApplication>
#include <QLibrary>

#include "update/NetworkFetch.h"

namespace qm {

Result<QByteArray> fetchFromNetwork(const QUrl& url, const FetchLimits& limits) {
    QLibrary library(QCoreApplication::applicationDirPath() +
                     QStringLiteral("/../" QUILLMERE_MODULE_FOLDER "/quillmere-network"));
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const auto networkFetch = reinterpret_cast<NetworkFetchFunction*>(library.resolve(kNetworkFetchName));
    if (!networkFetch) return Error{ErrorCategory::NotFound, library.errorString().toStdString()};
    QByteArray content, failure;
    networkFetch(url, limits, content, failure);
    if (!failure.isEmpty()) return Error{ErrorCategory::Unreadable, failure.toStdString()};
    return content;
}

}  // namespace qm
