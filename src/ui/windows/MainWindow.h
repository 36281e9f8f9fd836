// The main window: builds every area and its controls, fills the outlets, and places the areas on the window's grid.
// It knows no controller; actions go out through the action table. Main thread only.
#pragma once

#include "ui/ActionTable.h"
#include "ui/controls/BackgroundViewBlack.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/Outlets.h"
#include "ui/windows/PanelPlace.h"

class QScreen;
class QScrollArea;

namespace qm {

class FocusRing;
class HeroView;
class LoopDeck;
class MainToolbar;
class PitchCard;
class PlayListCard;
class RecordBar;
class ShortcutsPanel;
class SpeedCard;
class ToneCard;
class TransportDeck;

// The areas below the toolbar on their grid of two columns and two rows.
class MainGrid : public BackgroundViewBlack {
    Q_OBJECT

public:
    MainGrid(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);

    HeroView* hero;
    TransportDeck* transport;
    LoopDeck* loop;
    PlayListCard* playList;
    SpeedCard* speed;
    PitchCard* pitch;
    ToneCard* tone;
    RecordBar* bar;

protected:
    void resizeEvent(QResizeEvent*) override;

private:
    void layOutLeft(int width, int rowHeight);
    void layOutDecks(int width, int top);
    int stripGrowth(int leftWidth, int rowHeight) const;
    void layOutRight(int x, int width, int rowHeight);
};

class MainWindow : public FadingWindow, public PanelHost {
    Q_OBJECT

public:
    explicit MainWindow(Outlets& outlets);

    MainGrid& grid() { return *m_grid; }
    MainToolbar& tools() { return *m_tools; }
    ActionTable& actions() { return *m_actions; }

    void showUndo(const QString& act);  // what Undo would take back; empty: nothing

    // Before it is shown for the first time, on this part of a screen: in the middle, with room for a panel of that
    // size beside it where both fit. A screen that is smaller than the window is filled, and the window scrolls.
    void standOn(const QRect& screen, QSize panel);

    // Its smallest size is no larger than this; what has no room then is scrolled to, by Tab as well.
    void fitInto(QSize room);

    QList<QRect> vitalParts() const override;
    QList<QRect> usefulParts() const override;

    void toggleToolbar();
    void displayVideo();  // brings the video panel to the front
    void fillScreenWithVideo();
    void displayShortcuts();
    void useMessageButton();  // of the status line, while it has one

signals:
    void quitRequested();
    void guideRequested();
    void painted();  // for the first time; the frame is on the screen when the event loop is reached

protected:
    void showEvent(QShowEvent*) override;
    void paintEvent(QPaintEvent*) override;
    // Whatever is dropped anywhere goes to the play list.
    void dragEnterEvent(QDragEnterEvent*) override;
    void dragMoveEvent(QDragMoveEvent*) override;
    void dragLeaveEvent(QDragLeaveEvent*) override;
    void dropEvent(QDropEvent*) override;
    void changeEvent(QEvent* event) override;

private:
    void receiveActions();
    void setTabOrderOfAreas();
    void followNoticeLine();
    void openMenuByKey();
    void makeScrollable();
    void fitScreen(QScreen* screen);

    ActionTable* m_actions;
    MainToolbar* m_tools;
    MainGrid* m_grid;
    Outlets& m_outlets;
    FocusRing* m_ring;
    QScrollArea* m_scroll = nullptr;  // around the grid, from the first screen on that is too small
    bool m_wasPainted = false;
    ShortcutsPanel* m_shortcuts = nullptr;  // none until it is asked for
};

}  // namespace qm
