#include "ui/windows/ToolPanel.h"

#include <QKeySequence>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>
#include <algorithm>
#include <utility>

namespace qm {

namespace {

constexpr int kGap = 12;  // between the main window and a panel beside it, in pixels

}  // namespace

// Being a tool window of the main window is what lets the main window's keys work here.
ToolPanel::ToolPanel(const QString& title, QWidget* mainWindow, Keys keys)
    : QWidget(mainWindow, keys == Keys::PassedOn ? Qt::Tool : Qt::Dialog) {
    setWindowTitle(title);
    setAttribute(Qt::WA_ShowWithoutActivating, keys == Keys::PassedOn);
    for (const QKeySequence& key : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
}

void ToolPanel::furnish() {
    if (!std::exchange(m_furnished, true)) build();
}

void ToolPanel::setVisible(bool visible) {
    m_isToBeShown = visible && m_held;
    if (visible && m_held) return;
    if (visible) furnish();
    QWidget::setVisible(visible);
}

void ToolPanel::release() {
    m_held = false;
    if (m_isToBeShown) show();
}

// Beside the main window if there is room, at the screen's edge otherwise, and below the panels that are there; with
// keys of its own, in front of the main window.
QPoint ToolPanel::firstPlace() const {
    const QRect main = parentWidget()->frameGeometry();
    const QRect room = parentWidget()->screen()->availableGeometry();
    const bool inFront = windowType() == Qt::Dialog;
    const int left = inFront ? main.center().x() - width() / 2 : main.right() + 1 + kGap;
    const int top = inFront ? main.top() + (main.height() - height()) / 3 : main.top();
    const int rightmost = std::max(room.left(), room.right() + 1 - width());
    const QPoint first(std::clamp(left, room.left(), rightmost), std::max(room.top(), top));
    if (inFront) return first;
    QRect place(first, size());
    for (const ToolPanel* panel = panelAt(place); panel; panel = panelAt(place))
        place.moveTop(panel->frameGeometry().bottom() + 1 + kGap);
    return room.contains(place) ? place.topLeft() : first;
}

// One that is shown and covers some of the place.
const ToolPanel* ToolPanel::panelAt(const QRect& place) const {
    for (const ToolPanel* panel : parentWidget()->findChildren<ToolPanel*>())
        if (panel != this && panel->isVisible() && panel->frameGeometry().intersects(place)) return panel;
    return nullptr;
}

void ToolPanel::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        if (!m_place && parentWidget()) m_place = firstPlace();
        if (m_place) move(*m_place);
        if (!focusWidget()) setFocus(Qt::OtherFocusReason);  // no control is marked before the user comes to it
    }
    QWidget::showEvent(event);
}

void ToolPanel::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) m_place = pos();
    QWidget::hideEvent(event);
}

}  // namespace qm
