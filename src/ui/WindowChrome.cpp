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

WindowChrome::WindowChrome(PlayerState& state, const Outlets& outlets) : m_state(state), m_outlets(outlets) {}

void WindowChrome::startFadeIn() {
    if (!m_outlets.mainWindow) return;
    m_outlets.mainWindow->setAlphaValue(0.0);
    m_outlets.mainWindow->refuseKeys();
    m_state.fadeInTimer = std::make_unique<QTimer>();
    QObject::connect(m_state.fadeInTimer.get(), &QTimer::timeout, m_state.fadeInTimer.get(),
                     [this] { fadeinMainWindow(); });
    m_state.fadeInTimer->start(kStepMilliseconds);
}

void WindowChrome::fadeinMainWindow() {
    FadingWindow* window = m_outlets.mainWindow;
    if (!window) return;
    const auto alpha = static_cast<float>(window->alphaValue() + kAlphaStep);
    if (kAlphaEnd > alpha) {
        window->setAlphaValue(alpha);
        if (window->isHidden()) window->show();  // on the screen from the first step, though transparent
        return;
    }
    if (m_state.fadeInTimer) m_state.fadeInTimer->stop();
    window->makeKeyAndOrderFront();
}

void WindowChrome::setAboutPanelBackground() {
    setBackgroundColor(m_outlets.aboutPanel, Qt::white);
}

void WindowChrome::setTrackInfoWindowBackground() {
    setBackgroundColor(m_outlets.trackInfoWindow, Qt::black);
}

void WindowChrome::displayAboutPanel() {
    if (m_outlets.aboutPanel) makeKeyAndOrderFront(*m_outlets.aboutPanel);
}

}  // namespace qm
