#include "update/UpdateServer.h"

namespace qm {

QUrl updateUrl(QLatin1StringView path) {
    QUrl url(qEnvironmentVariable("QUILLMERE_UPDATE_SERVER", QStringLiteral(QUILLMERE_UPDATE_SERVER)));
    url.setPath(path);
    return url;
}

}  // namespace qm
