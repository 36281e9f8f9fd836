#include "app/state/SupportFolder.h"

#include <QDir>

namespace qm {

// Without a home the toolkit answers the root folder, where no user's files belong.
QString homeFolder() {
    const QString home = QDir::homePath();
    return home == QDir::rootPath() ? QString() : home;
}

}  // namespace qm
