#include "app/Application.h"

#include <QDesktopServices>
#include <QScreen>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdlib>

#ifdef Q_OS_UNIX
#include <sys/socket.h>
#include <unistd.h>
#endif

#include "app/ActionReceivers.h"
#include "app/LiveWait.h"
#include "app/SuddenEnd.h"
#include "app/TakePreparation.h"
#include "app/state/SupportFolder.h"
#include "engine/api/Log.h"
#include "remote/DesktopEntry.h"
#include "ui/controls/NamedImage.h"
#include "ui/dialogs/Style.h"
#include "ui/windows/SoftwareUpdatePanel.h"

namespace qm {

namespace {

constexpr double kIconScale = 4;  // sharp on every screen
constexpr std::chrono::milliseconds kLongestFlush{300};

int g_signalSockets[2];

// Look and number format come first, because every window is built with them.
void prepare() {
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(QStringLiteral("Quillmere"));
    QApplication::setDesktopFileName(kDesktopId);
    QApplication::setQuitOnLastWindowClosed(false);
    applyStyle();
}

}  // namespace

Application::Application(int& argc, char** argv, OnlyProgram& only)
    : m_only(only),
      m_application(argc, argv),
      m_controller((prepare(), m_engine), m_movies, m_capture, m_prefs,
                   [](const QString& name) { return namedImage(name, kIconScale); }),
      m_audioRecord(m_capture, m_controller.takes()),
      m_window(m_controller),
      m_statusNotices(m_window, m_controller.notices()),
      m_spokenDeeds(m_window.actions(), m_controller, m_controller.abLoop(), m_controller, m_controller.notices()),
      m_listKeys(m_window, m_controller, m_controller, m_controller, m_controller.notices()),
      m_contextMenus(m_window, m_controller, m_controller, m_controller),
      m_levelMeters(m_controller, &m_window),
      m_trackInfo(m_controller, &m_window),
      m_video(m_controller, &m_window),
      m_export(m_controller, m_window.actions(), &m_window),
      m_quitQuestion(
          m_controller.trackExport(), m_controller.notices(), [this] { return askWhetherToQuit(&m_window); },
          [this](bool waits) { m_export.setQuitsAfterwards(waits); }),
      m_recording(m_controller, m_window.actions(), &m_window,
                  [this] { return recorderStatus(m_controller, m_controller.isRecording); }),
      m_recorder(m_audioRecordOutlets, m_window.actions(), &m_window,
                 [this] { return recorderStatus(m_audioRecord, m_audioRecord.recordingStatus); }),
      m_preferences(m_controller, m_window.actions(), &m_window),
      m_about(m_controller, &m_window),
      m_keys(m_controller, m_controller, m_controller, m_window.actions(), m_controller.positionClock(),
             m_controller.trackLoader(), m_controller.trackInfo(), m_controller.notices()),
      m_idleActs(m_window.actions(), m_controller, m_controller, m_controller, m_controller.notices()),
      m_state(m_window, m_controller, m_controller, m_controller.abLoop(), m_controller),
      m_remote(m_controller, m_controller, m_controller, m_controller.movieToolbox(), m_controller.abLoop(),
               m_window.actions()),
      m_mpris(m_remote),
      m_launcher(m_remote, m_controller.trackLoader(), m_window.actions(),
                 [this](const QByteArray& token) { comeToFront(token); }),
      m_soundWatch(m_controller, m_controller.notices()) {
    receiveActions(m_window.actions(), m_controller);
    receiveActions(m_window.actions(), m_audioRecord);
    prepareTakes(m_window.actions(), m_controller, m_audioRecord);
    m_controller.setExit([this](int status) { end(status); });
    m_levelMeters.hold();
    m_window.standOn(QGuiApplication::primaryScreen()->availableGeometry(), m_levelMeters.size());
    m_controller.awakeFromNib();
    m_audioRecord.awakeFromNib(m_audioRecordOutlets);
    connectWindow();
    makeUpdaters();
    endOnSignals();
    m_only.listen([this](const QByteArray& token) { comeToFront(token); });
    m_controller.trackLoader().setPatience(waitWithLiveWindow);
    beforeSuddenEnd([this] {
        m_controller.keepWhatMustSurvive();
        m_controller.mainRecorder().finishFile();
        m_audioRecord.finishFile();
    });
}

Application::~Application() = default;

void Application::connectWindow() {
    QObject::connect(&m_window, &MainWindow::quitRequested, &m_window, [this] { quitAfterAsking(); });
    QObject::connect(&m_window, &MainWindow::guideRequested, &m_guide, &Guide::open);
    m_window.mayClose = [this] { return m_quitQuestion.mayQuit([this] { m_window.close(); }); };
    QObject::connect(&m_remote, &RemotePlayer::quitRequested, &m_window, [this] { quit(); });
    QObject::connect(
        &m_window, &MainWindow::painted, &m_window, [this] { startTheRest(); }, Qt::QueuedConnection);
    QObject::connect(
        &m_application, &QGuiApplication::commitDataRequest, &m_window,
        [this](QSessionManager&) { m_controller.applicationWillTerminate(); }, Qt::DirectConnection);
    QObject::connect(
        &m_window, &FadingWindow::madeKey, &m_window, [this] { buildPanels(); },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    UndoHistory& history = m_controller.undoHistory();
    QObject::connect(&history, &UndoHistory::changed, &m_window,
                     [this, &history] { m_window.showUndo(history.newestName()); });
    QObject::connect(&m_mpris, &MprisService::isOnTheBus, &m_motion, &DesktopMotion::follow);
    QObject::connect(&m_mpris, &MprisService::isOnTheBus, &m_launcher, &DesktopLauncher::follow);
}

// What the first frame does not need: doing it before would only delay the frame.
void Application::startTheRest() {
    m_levelMeters.release();
    m_state.refresh();
    m_engine.load();
    m_soundWatch.start();
    applyWindowIcon();
    m_mpris.start();
    m_controller.takes().offerLeft();
    m_controller.lookAfterPlayList();
}

// The user has started the program once more, or opened a file with it. The token is what the desktop wants to see
// before it lets a window come to the front; where it does not let it, the window says that it is there. One that fades
// in still comes when it has.
void Application::comeToFront(const QByteArray& token) {
    if (!token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token);
    if (!m_window.keyWindow) {
        QObject::connect(
            &m_window, &FadingWindow::madeKey, &m_window, [this] { comeToFront({}); },
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
        return;
    }
    m_remote.raise();
    QApplication::alert(&m_window);
}

// One panel for each turn of the event loop, so that input is handled in between. Not before the window has faded in:
// building takes so long that the fade would stutter.
void Application::buildPanels() {
    for (ToolPanel* panel : m_window.findChildren<ToolPanel*>(Qt::FindDirectChildrenOnly)) {
        if (panel->isBuilt()) continue;
        panel->ensureBuilt();
        QTimer::singleShot(0, &m_window, [this] { buildPanels(); });
        return;
    }
}

// A request to terminate ends the program as its own Quit does; the signal handler only passes it on.
void Application::endOnSignals() {
#ifdef Q_OS_UNIX
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, g_signalSockets) != 0) return;
    m_signalNotifier = std::make_unique<QSocketNotifier>(g_signalSockets[1], QSocketNotifier::Read);
    QObject::connect(m_signalNotifier.get(), &QSocketNotifier::activated, &m_window, [this] { quit(); });
    const auto handler = [](int) {
        const char byte = 1;
        [[maybe_unused]] const auto written = write(g_signalSockets[0], &byte, 1);
    };
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) std::signal(number, handler);
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is an error of its writer
#endif
}

// For the user's Quit. Signals, the end of the session and the bus end the program without a question.
void Application::quitAfterAsking() {
    if (m_quitQuestion.mayQuit([this] { quit(); })) quit();
}

void Application::quit() {
    m_controller.applicationWillTerminate();
    end(0);
}

// Destroys nothing: the sound threads still run, and of what they do only a recording has to be finished.
// The windows and the claim to be the only program go first, because the system keeps what is left of the program for
// as long as a thread of it waits for a file that does not answer.
void Application::end(int status) {
    m_controller.mainRecorder().finishFile();
    m_audioRecord.finishFile();
    for (QWidget* window : QApplication::topLevelWidgets()) window->hide();
    m_only.leave();
    flushLog(kLongestFlush);
    std::_Exit(status);
}

// The first one when the main window has faded in, which would hide its panel, and then one for each command.
void Application::makeUpdaters() {
    const auto first = [this] { (new SoftwareUpdater(updateServices()))->init(); };
    QObject::connect(&m_window, &FadingWindow::madeKey, &m_window, first,
                     Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    m_controller.setUpdaterMaker([this] { (new SoftwareUpdater(updateServices()))->initManual(); });
}

UpdateServices Application::updateServices() {
    const auto loadNib = [this](UpdateOutlets& outlets) {
        outlets.mainWindow = &m_window;
        new SoftwareUpdatePanel(outlets, &m_window);
        return true;
    };
    const auto storedUpdateCheck = [this]() -> std::optional<bool> {
        const QString key = QStringLiteral("SoftwareUpdateCheck");
        if (!m_prefs.contains(key)) return std::nullopt;
        return m_prefs.boolForKey(key);
    };
    const auto tell = [this](const QString& text) { m_controller.notices().tell(text); };
    return {loadNib,    storedUpdateCheck, [](const QUrl& url) { QDesktopServices::openUrl(url); },
            homeFolder, fetchFromNetwork,  tell};
}

int Application::run() {
    m_window.show();
    m_state.start();
    return QApplication::exec();
}

}  // namespace qm
