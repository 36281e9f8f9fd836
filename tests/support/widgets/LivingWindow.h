// The main window over a real controller with a fake engine, offscreen. Main thread only; one at a time.
#pragma once

#include "app/ActionReceivers.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/IdleActs.h"
#include "ui/PlayerKeys.h"
#include "ui/windows/ContextMenus.h"
#include "ui/windows/ListKeys.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"
#include "ui/windows/StatusNotices.h"

namespace qm {

struct LivingWindow {
    ControllerFixture fixture;
    QMController& controller = fixture.init();
    Outlets& outlets = controller;
    MainWindow window{outlets};
    StatusNotices statusNotices{window, controller.notices()};
    PlayerKeys keys{controller,
                    controller,
                    outlets,
                    window.actions(),
                    controller.positionClock(),
                    controller.trackLoader(),
                    controller.trackInfo(),
                    controller.notices()};
    IdleActs idleActs{window.actions(), controller, controller, outlets, controller.notices()};
    ListKeys listKeys{window, controller, controller, outlets, controller.notices()};
    ContextMenus contextMenus{window, controller, controller, outlets};
    MainWindowState state{window, controller, controller, controller.abLoop(), outlets};

    LivingWindow() {
        receiveActions(window.actions(), controller);
        controller.awakeFromNib();
    }
    void addTrack(const QString& path) {
        controller.insertEntry(0, {path, QStringLiteral("Marlow Quartet"), QStringLiteral("Night Ferry"),
                                   QStringLiteral("Blue Lantern"), 60000, 600, 128, 128, 0, 60000});
        outlets.playList->reloadData();
    }
    void loadTrack() {
        addTrack(QStringLiteral("/music/a.mp3"));
        outlets.playList->selectRowIndex(0);
        controller.selectTrack();
    }
    void markAt(std::int64_t a, std::int64_t b) {
        fixture.engine.movie()->time.timeValue = a;
        controller.markAUpdate();
        fixture.engine.movie()->time.timeValue = b;
        controller.markBUpdate();
    }
    MainGrid& grid() { return window.grid(); }
};

}  // namespace qm
