// The menus that stand where they are asked for, by the right button, the Menu key or Shift+F10: on the rows of the
// play list and on the position's strip and slider. They are made of the actions that the program has. Main thread
// only.
#pragma once

#include <QObject>
#include <QPoint>

#include "app/PlayerState.h"
#include "library/LoadedTrack.h"
#include "ui/controls/Outlets.h"

class QAction;
class QMenu;

namespace qm {

class MainWindow;

class ContextMenus : public QObject {
    Q_OBJECT

public:
    ContextMenus(MainWindow& window, const PlayerState& state, const PlayListArrays& list, const Outlets& outlets);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void showForList(const QPoint& place, bool byKey);
    void showForPosition(const QPoint& place, bool byKey);
    QPoint placeOfSelectedRow() const;
    QAction* addGoHere(QMenu& menu, double x);

    MainWindow& m_window;
    const PlayerState& m_state;
    const Outlets& m_outlets;
    LoadedTrack m_loaded;
};

}  // namespace qm
