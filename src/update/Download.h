// The download of the disc image. Main thread only.
#pragma once

#include <QString>
#include <QUrl>

#include "update/Fetch.h"

namespace qm {

// Fetches the image and puts it at `path`, making the folder and replacing a file of that name, in one step: a failure
// is false, changes nothing and leaves a log line. Returns when it is done; until then windows are drawn and timers
// fire, but nobody can act on anything.
bool download(const Fetch& fetch, const QUrl& image, const QString& path);

}  // namespace qm
