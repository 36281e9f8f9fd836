#include "ui/windows/ToolPanel.h"

#include <QKeySequence>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>
#include <algorithm>
#include <utility>

#include "ui/windows/PanelPlace.h"

namespace qm {

namespace {

constexpr QSize kRounding{2, 2};  // a frame is told in whole logical pixels, of which there are fewer than it has
constexpr int kUnmoved = 32;      // pixels by which a desktop may put a window elsewhere than it was told

}  // namespace

// Being a tool window of the main window is what lets the main window's keys work here.
ToolPanel::ToolPanel(const QString& title, QWidget* mainWindow, Keys keys)
    : QWidget(mainWindow, keys == Keys::PassedOn ? Qt::Tool : Qt::Dialog) {
    setWindowTitle(title);
    setAttribute(Qt::WA_ShowWithoutActivating, keys == Keys::PassedOn);
    for (const QKeySequence& key : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
}

void ToolPanel::ensureBuilt() {
    if (!std::exchange(m_isBuilt, true)) build();
}

void ToolPanel::setVisible(bool visible) {
    m_isToBeShown = visible && m_held;
    if (visible && m_held) return;
    if (visible) ensureBuilt();
    QWidget::setVisible(visible);
}

void ToolPanel::release() {
    m_held = false;
    if (m_isToBeShown) show();
}

QPoint ToolPanel::wishedPlace(const QRect& window, QSize frame) const {
    return windowType() == Qt::Dialog ? placeInFront(window, frame) : placeBeside(window);
}

bool ToolPanel::fillsTheScreen() const {
    return isFullScreen() || isMaximized();
}

// With a frame as wide as the main window's, for it gets its own only when it is shown.
QRect ToolPanel::firstPlace(const QList<QSize>& sizes) const {
    const QWidget& window = *parentWidget();
    QSize frame = window.frameGeometry().size() - window.size();
    if (!frame.isNull()) frame += kRounding;
    const auto* host = dynamic_cast<const PanelHost*>(&window);
    Surroundings around;
    around.window = window.frameGeometry();
    if (host) {
        around.vital = host->vitalParts();
        around.useful = host->usefulParts();
    }
    for (const ToolPanel* panel : window.findChildren<ToolPanel*>())
        if (panel != this && panel->isVisible()) around.panels.append(panel->frameGeometry());
    around.screens.append(window.screen()->availableGeometry());
    for (const QScreen* screen : window.screen()->virtualSiblings())
        if (screen != window.screen()) around.screens.append(screen->availableGeometry());
    QList<QSize> frames;
    for (const QSize& size : sizes) frames.append(size + frame);
    const QRect place = panelPlace(frames, wishedPlace(around.window, frames.first()), around);
    return {place.topLeft(), place.size() - frame};
}

// Where it was left, unless no screen is there any more.
void ToolPanel::stand() {
    const auto shows = [this](const QScreen* screen) {
        return screen->availableGeometry().intersects(QRect(*m_place, size()));
    };
    const QList<QScreen*> screens = parentWidget()->screen()->virtualSiblings();
    if (!m_place || std::none_of(screens.begin(), screens.end(), shows))
        standFirst(firstSizes());
    else
        moveFrame(*m_place);
}

// Until a window has its frame the toolkit takes a place for that of what is in it: then the frame is thought to be the
// main window's.
void ToolPanel::moveFrame(QPoint place) {
    const bool hasFrame = frameGeometry() != geometry();
    const QWidget& window = *parentWidget();
    move(hasFrame ? place : place + window.geometry().topLeft() - window.frameGeometry().topLeft());
}

void ToolPanel::standFirst(const QList<QSize>& sizes) {
    const QRect first = firstPlace(sizes);
    if (first.size() != size()) resize(first.size());
    m_place = m_firstPlace = first.topLeft();
    moveFrame(*m_place);
}

void ToolPanel::standAnew() {
    const QPoint place = isVisible() ? pos() : m_place.value_or(QPoint());
    if (!m_firstPlace || (place - *m_firstPlace).manhattanLength() > kUnmoved || fillsTheScreen()) return;
    if (isVisible())
        standFirst({size()});
    else
        m_place.reset();
}

void ToolPanel::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        if (parentWidget() && !fillsTheScreen()) stand();
        if (!focusWidget()) setFocus(Qt::OtherFocusReason);  // no control is marked before the user comes to it
    }
    QWidget::showEvent(event);
}

void ToolPanel::hideEvent(QHideEvent* event) {
    if (!event->spontaneous() && !fillsTheScreen()) keepPlace();
    QWidget::hideEvent(event);
}

}  // namespace qm
