#include <doctest/doctest.h>

#include <QTemporaryDir>
#include <string>
#include <vector>

#include "engine/api/Log.h"
#include "remote/MprisService.h"
#include "remote/RemotePlayer.h"
#include "support/widgets/LivingWindow.h"

using namespace qm;

TEST_CASE("without a session bus there is one line in the log and nothing else") {
    LivingWindow living;
    RemotePlayer remote(living.controller, living.controller, living.outlets, living.fixture.engine.toolbox,
                        living.controller.abLoop(), living.window.actions());
    const QTemporaryDir empty;
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS"), runtime = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", empty.path().toUtf8());
    living.fixture.log.take();
    MprisService service(remote);
    service.start();
    CHECK(living.fixture.log.take() == Events{"log No session bus: no media keys and no remote control."});
    if (!address.isEmpty()) qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    if (!runtime.isEmpty()) qputenv("XDG_RUNTIME_DIR", runtime);
}
