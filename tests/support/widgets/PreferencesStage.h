// The real main, preferences and about windows over a controller with a fake engine. `wakeUp()` is the second step of
// start-up. Main thread only; one at a time.
#pragma once

#include <QApplication>

#include "app/ActionReceivers.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/controls/CheckBox.h"
#include "ui/controls/PaneToolbar.h"
#include "ui/controls/RadioTiles.h"
#include "ui/windows/AboutPanel.h"
#include "ui/windows/LevelMetersPanel.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"
#include "ui/windows/PreferencesWindow.h"

namespace qm {

struct PreferencesStage {
    ControllerFixture fixture;
    EventLog& log = fixture.log;
    LoggingPrefs& prefs = fixture.prefs;
    QMController& controller = fixture.init();
    Outlets outlets;
    MainWindow window{outlets};
    LevelMetersPanel levels{outlets, &window};
    PreferencesWindow preferences{outlets, window.actions(), &window};
    AboutPanel about{outlets, &window};
    MainWindowState state{window, controller, controller, controller.abLoop(), outlets};

    PreferencesStage() { receiveActions(window.actions(), controller); }

    void wakeUp() {
        awakeWith(controller, outlets);
        controller.fadeInTimer->stop();  // the main window stays out of the way
        log.take();
    }

    void loadTrack() {
        controller.loadFileAdd(QStringLiteral("/music/one.wav"), true);
        log.take();
    }

    // The window that has the keyboard, once the system has said so.
    static QWidget* keyWindow() {
        QCoreApplication::processEvents();
        return QApplication::activeWindow();
    }

    void choose(int tag) { outlets.colorMatrix->findChildren<RadioTile*>()[tag]->click(); }
};

}  // namespace qm
