#include "ui/WindowChrome.h"

#include <QTimer>

#include "ui/controls/WindowOrder.h"

#include "ui/controls/FadingWindow.h"

namespace qm {

namespace {

constexpr int kStepMilliseconds = 50;
constexpr double kAlphaStep = 0.05;
constexpr double kAlphaEnd = 1.1;

void setBackgroundColor(QWidget* panel, const QColor& color) {
    if (!panel) return;
    QPalette palette = panel->palette();
    palette.setColor(QPalette::Window, color);
    panel->setPalette(palette);
    panel->setAutoFillBackground(true);
    panel->setProperty("backgroundColor", color);
}

}  // namespace

WindowChrome::WindowChrome(FadeTimer& state,
                           Uses<const MainWindowOutlet, const AboutOutlet, const InfoWindowOutlet> outlets)
    : m_fade(state), m_window(outlets), m_about(outlets), m_infoWindow(outlets) {}

void WindowChrome::startFadeIn() {
    if (!m_window.mainWindow) return;
    m_window.mainWindow->setAlphaValue(0.0);
    m_window.mainWindow->refuseKeys();
    m_fade.fadeInTimer = std::make_unique<QTimer>();
    QObject::connect(m_fade.fadeInTimer.get(), &QTimer::timeout, m_fade.fadeInTimer.get(),
                     [this] { fadeinMainWindow(); });
    m_fade.fadeInTimer->start(kStepMilliseconds);
}

void WindowChrome::fadeinMainWindow() {
    FadingWindow* window = m_window.mainWindow;
    if (!window) return;
    const auto alpha = static_cast<float>(window->alphaValue() + kAlphaStep);
    if (kAlphaEnd > alpha) {
        window->setAlphaValue(alpha);
        if (window->isHidden()) window->show();  // on the screen from the first step, though transparent
        return;
    }
    if (m_fade.fadeInTimer) m_fade.fadeInTimer->stop();
    window->makeKeyAndOrderFront();
}

void WindowChrome::setAboutPanelBackground() {
    setBackgroundColor(m_about.aboutPanel, Qt::white);
}

void WindowChrome::setTrackInfoWindowBackground() {
    setBackgroundColor(m_infoWindow.trackInfoWindow, Qt::black);
}

void WindowChrome::displayAboutPanel() {
    if (m_about.aboutPanel) makeKeyAndOrderFront(*m_about.aboutPanel);
}

}  // namespace qm
