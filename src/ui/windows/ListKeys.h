// What leads through the play list beside the list itself: next and previous track, the key to the list, and the field
// that narrows what is shown of it. They select a row and send what its keys send; the list stays as it is. Main thread
// only.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include "app/PlayerState.h"
#include "library/LoadedTrack.h"
#include "library/PlayListArrays.h"
#include "player/Notices.h"
#include "ui/controls/FoldedText.h"
#include "ui/controls/Outlets.h"

namespace qm {

class FindBar;
class MainWindow;

class ListKeys : public QObject {
    Q_OBJECT

public:
    // Does those actions of the table that lead through the list.
    ListKeys(MainWindow& window, const PlayerState& state, const PlayListArrays& list, const Outlets& outlets,
             Notices& notices);

    void nextTrack();
    void previousTrack();
    void goToPlayList();  // where letters lead to titles until the keys go back to the player
    void findTrack();

private:
    void playBeside(int step);
    void play(int row);
    void connectFindBar(FindBar& bar);
    void narrow(const QString& typed);
    void endFinding();
    void tellCount();
    void tell(const QString& text);
    bool mayRemove();

    MainWindow& m_window;
    const PlayListArrays& m_list;
    const Outlets& m_outlets;
    Notices& m_notices;
    LoadedTrack m_loaded;
    FindBar* m_bar = nullptr;  // once it was asked for
    SearchWords m_words{QString()};
    QTimer m_counting{this};  // until the count is told: not after each letter
};

}  // namespace qm
