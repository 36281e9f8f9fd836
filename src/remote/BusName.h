// A name on the message bus, for others to find the program by. Main thread only.
#pragma once

#include <QDBusConnection>
#include <QString>
#include <functional>

class QObject;

namespace qm {

// Asks for the name and waits for nothing. `then` is called with whether the name is the program's now, while `asker`
// lives; not at all if there is no answer but an error, which leaves a log line. Another owner keeps its name.
void claimBusName(const QDBusConnection& bus, const QString& name, QObject* asker,
                  std::function<void(bool isOurs)> then);

}  // namespace qm
