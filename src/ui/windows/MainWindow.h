// The main window: builds every area and its controls, fills the outlets, and places the areas on the window's grid.
// It knows no controller; actions go out by name through the action table. Main thread only.
#pragma once

#include "ui/ActionTable.h"
#include "ui/controls/BackgroundViewBlack.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/Outlets.h"

namespace qm {

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
    void layOutRight(int x, int width, int rowHeight);
};

class MainWindow : public FadingWindow {
    Q_OBJECT

public:
    // `controller` receives the actions; it may not be awake yet.
    MainWindow(Outlets& outlets, QObject* controller);

    MainGrid& grid() { return *m_grid; }
    MainToolbar& tools() { return *m_tools; }
    ActionTable& actions() { return *m_actions; }

    void showUndo(const QString& act);  // what Undo would take back; empty: nothing

public slots:
    void quit() { emit quitRequested(); }
    void displayGuide() { emit guideRequested(); }
    void toggleToolbar();
    void displayVideo();  // brings the video panel to the front
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

private:
    void setTabOrderOfAreas();
    void followNoticeLine();
    void openMenuByKey();

    ActionTable* m_actions;
    MainToolbar* m_tools;
    MainGrid* m_grid;
    Outlets& m_outlets;
    bool m_wasPainted = false;
    ShortcutsPanel* m_shortcuts = nullptr;  // none until it is asked for
};

}  // namespace qm
