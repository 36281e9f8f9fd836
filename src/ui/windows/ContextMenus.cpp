#include "ui/windows/ContextMenus.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <initializer_list>
#include <optional>

#include "ui/controls/PlayListView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/HeroView.h"
#include "ui/windows/MainWindow.h"

namespace qm {

namespace {

void popUp(QMenu* menu, const QPoint& place) {
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
}

void enable(const QMenu& menu, std::initializer_list<ActionId> ids, bool enabled) {
    for (const ActionId id : ids)
        if (auto* item = menu.findChild<QAction*>(actionName(id))) item->setEnabled(enabled);
}

bool isMenuKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier;
}

}  // namespace

// The strip is transparent for the mouse, so the hero gets the right click; the Menu key reaches the slider.
ContextMenus::ContextMenus(MainWindow& window, const PlayerState& state, const PlayListArrays& list,
                           const Outlets& outlets)
    : QObject(&window), m_window(window), m_state(state), m_outlets(outlets), m_loaded(state, list, outlets) {
    for (QWidget* widget : {static_cast<QWidget*>(outlets.playList), outlets.playList->viewport(),
                            static_cast<QWidget*>(outlets.cueSlider), static_cast<QWidget*>(window.grid().hero)})
        widget->installEventFilter(this);
}

bool ContextMenus::eventFilter(QObject* object, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress && isMenuKey(*static_cast<QKeyEvent*>(event));
    if (!isKey && event->type() != QEvent::ContextMenu) return false;
    const auto* menuEvent = isKey ? nullptr : static_cast<QContextMenuEvent*>(event);
    const bool byKey = isKey || menuEvent->reason() == QContextMenuEvent::Keyboard;
    const QPoint place = isKey ? QPoint() : menuEvent->globalPos();
    if (object == m_outlets.playList || object == m_outlets.playList->viewport()) {
        showForList(place, byKey);
        return true;
    }
    const QWidget& strip = *m_outlets.waveformStrip;
    const bool onStrip = !byKey && strip.rect().contains(strip.mapFromGlobal(place));
    if (object != m_outlets.cueSlider && !onStrip) return false;
    showForPosition(place, byKey);
    return true;
}

// Information and export are of the loaded track, so they are for its row only.
void ContextMenus::showForList(const QPoint& place, bool byKey) {
    PlayListView& view = *m_outlets.playList;
    const bool onRow =
        byKey ? view.isShown(view.selectedRow()) : view.listRowAt(view.viewport()->mapFromGlobal(place)) >= 0;
    if (!onRow) {
        QMenu* menu = m_window.actions().makeContextMenu(
            {ActionId::openFile, ActionId::findTrack, std::nullopt, ActionId::clearList}, &view);
        return popUp(menu, byKey ? view.viewport()->mapToGlobal(QPoint(0, 0)) : place);
    }
    QMenu* menu = m_window.actions().makeContextMenu(
        {ActionId::rowDoubleClicked, ActionId::selectTrack, std::nullopt, ActionId::displayInfo, ActionId::exportMovie,
         std::nullopt, ActionId::removeListEntry},
        &view);
    enable(*menu, {ActionId::displayInfo, ActionId::exportMovie},
           m_state.qtMovie && m_loaded.row() == view.selectedRow());
    popUp(menu, byKey ? placeOfSelectedRow() : place);
}

QPoint ContextMenus::placeOfSelectedRow() const {
    const PlayListView& view = *m_outlets.playList;
    const QRect row = view.visualRect(view.currentIndex()).intersected(view.viewport()->rect());
    return view.viewport()->mapToGlobal(row.isEmpty() ? QPoint(0, 0) : row.bottomLeft());
}

void ContextMenus::showForPosition(const QPoint& place, bool byKey) {
    Slider& cue = *m_outlets.cueSlider;
    QMenu* menu = m_window.actions().makeContextMenu(
        {ActionId::toggleStartStop, ActionId::goToStart, std::nullopt, ActionId::markAUpdate, ActionId::markBUpdate,
         ActionId::loopSwitch, ActionId::resetMarks},
        &cue);
    const bool isLoaded = m_state.qtMovie != nullptr;
    if (!byKey) addGoHere(*menu, cue.mapFromGlobal(place).x())->setEnabled(isLoaded && !cue.isLocked());
    enable(
        *menu,
        {ActionId::goToStart, ActionId::markAUpdate, ActionId::markBUpdate, ActionId::loopSwitch, ActionId::resetMarks},
        isLoaded);
    const int knob = static_cast<int>(cue.xOfValue(cue.value()));
    popUp(menu, byKey ? cue.mapToGlobal(QPoint(knob, cue.height())) : place);
}

// Moves the position there, as a click on the slider's groove does.
QAction* ContextMenus::addGoHere(QMenu& menu, double x) {
    Slider& cue = *m_outlets.cueSlider;
    const double left = cue.xOfValue(cue.minimum()), right = cue.xOfValue(cue.maximum());
    const double part = right > left ? std::clamp((x - left) / (right - left), 0.0, 1.0) : 0;
    auto* item = new QAction(tr("Go Here"), &menu);
    item->setObjectName(QStringLiteral("goHere"));
    connect(item, &QAction::triggered, &cue,
            [&cue, part] { cue.moveByUser(cue.minimum() + part * (cue.maximum() - cue.minimum())); });
    menu.insertAction(menu.actions().value(0), item);
    return item;
}

}  // namespace qm
