// The controller with every control of the main window, offscreen, against the fake engine, in a home folder of its
// own that vanishes with it. Everything that happens is in `log` in order. Main thread only; one at a time.
#pragma once

#include <QTemporaryDir>
#include <memory>

#include "app/QMController.h"
#include "support/widgets/EventLog.h"
#include "support/widgets/FakeCapture.h"
#include "support/widgets/FakeMediaEngine.h"
#include "support/widgets/LoggingPrefs.h"
#include "support/widgets/ScriptedDialogs.h"
#include "support/widgets/TestText.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/TitleButton.h"

class QTimer;

namespace qm {

// The folder that stands for the user's home, and the log lines of the program as events.
class TestHome {
public:
    explicit TestHome(EventLog& log);
    ~TestHome();

    QString path() const { return m_folder.path(); }
    QString supportFolder() const { return path() + QStringLiteral("/Library/Application Support/Quillmere"); }

private:
    QTemporaryDir m_folder;
    QByteArray m_formerHome;
};

class ControllerFixture {
public:
    ControllerFixture();
    ~ControllerFixture();

    // Both steps of start-up. Called by the tests after they have prepared files and preferences.
    QMController& start();

    // Only the first step.
    QMController& init();

    // start() with one row per path in the list; no row selected, nothing loaded; the log is empty afterwards.
    QMController& startWithRows(const QStringList& paths);

    // startWithRows() with two rows, the first of them selected, loaded and paused; the log is empty afterwards.
    QMController& startWithLoadedTrack();

    void addRow(const QString& path, std::int64_t duration = 60000, std::int32_t timescale = 600);

    // The user moves a slider to a value.
    void drag(Slider* slider, double value, void (QMController::*action)(double));

    // The three transport images, forward, pause, backward.
    Events transportImages() const;

    // What the user sees and what the player remembers, to compare before and after an action.
    Events everything() const;

    EventLog log;
    TestHome home{log};
    LoggingPrefs prefs{home.path() + QStringLiteral("/prefs.ini"), log};
    FakeMediaEngine engine{log};
    FakeCapture capture{log};
    ScriptedDialogs dialogs{log};
    Outlets outlets;  // all of them present; a test may take some away before start()
    std::unique_ptr<QMController> controller;

private:
    void buildTransport(QWidget* parent);
    void buildSound(QWidget* parent);
    void buildLabels(QWidget* parent);
    void connectDialogs();

    std::unique_ptr<FadingWindow> m_window;
    std::unique_ptr<QWidget> m_videoPanel;
    std::unique_ptr<QWidget> m_levelsPanel;
    std::unique_ptr<QWidget> m_exportPanel;
    std::unique_ptr<QWidget> m_recordingWindow;
};

// The second step of start-up, with outlets that were filled elsewhere.
void awakeWith(QMController& controller, const Outlets& outlets);

// Lets a running timer fire once, now.
void fire(QTimer* timer);

// The user takes hold of the slider's knob, or lets it go, where it is.
void pressKnob(Slider* slider);
void releaseKnob(Slider* slider);

}  // namespace qm
