#include "ui/windows/VideoPanel.h"

#include <QCloseEvent>
#include <QMouseEvent>

#include "ui/controls/MovieView.h"

namespace qm {

namespace {

constexpr QSize kSize{560, 315}, kMinimumSize{240, 135};
constexpr int kSmallestFirst = 60, kSizeStep = 10;  // percent of the size

}  // namespace

VideoPanel::VideoPanel(Outlets& outlets, QWidget* mainWindow)
    : ToolPanel(tr("Video"), mainWindow), m_view(new MovieView(this)) {
    setObjectName(QStringLiteral("videoPanel"));
    setMinimumSize(kMinimumSize);
    resize(kSize);
    m_view->setObjectName(QStringLiteral("movieView"));
    m_view->setAccessibleName(tr("Video"));
    outlets.videoPanel = this;
    outlets.movieView = m_view;
}

// Smaller sizes are tried, too, so that the panel covers no controls.
QList<QSize> VideoPanel::firstSizes() const {
    QList<QSize> sizes;
    for (int percent = 100; percent >= kSmallestFirst; percent -= kSizeStep) sizes.append(size() * percent / 100);
    return sizes;
}

void VideoPanel::resizeEvent(QResizeEvent*) {
    m_view->setGeometry(rect());
}

void VideoPanel::toggleFullScreen() {
    if (isFullScreen()) return showNormal();
    show();
    raise();
    keepPlace();
    m_sizeBefore = size();
    showFullScreen();
    activateWindow();
}

void VideoPanel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) toggleFullScreen();
}

// In full screen, closing only leaves full screen.
void VideoPanel::closeEvent(QCloseEvent* event) {
    if (!isFullScreen()) return ToolPanel::closeEvent(event);
    showNormal();
    event->ignore();
}

// A dialog, because some desktops let no tool window fill the screen. The type has to be set on the native window.
void VideoPanel::showEvent(QShowEvent* event) {
    setAttribute(Qt::WA_X11NetWmWindowTypeDialog);
    ToolPanel::showEvent(event);
}

void VideoPanel::hideEvent(QHideEvent* event) {
    ToolPanel::hideEvent(event);
    if (event->spontaneous() || !isFullScreen()) return;
    setWindowState(windowState() & ~Qt::WindowFullScreen);
    resize(m_sizeBefore);
}

}  // namespace qm
