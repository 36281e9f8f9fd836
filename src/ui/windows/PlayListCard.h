// The play list's card: the table with its empty state, and the footer with add, remove, the count and the track's
// format. Main thread only.
#pragma once

#include <QWidget>

#include "app/state/Outlets.h"
#include "ui/actions/ActionTable.h"
#include "ui/controls/Card.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/EmptyListView.h"
#include "ui/controls/FindBar.h"

namespace qm {

class PlayListCard : public Card {
    Q_OBJECT

public:
    PlayListCard(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);
    void setRemoveDimmed(bool dimmed) { m_remove->setDimmed(dimmed); }
    void pulseDropArea();  // when the list is empty
    FindBar& findBar();    // made when it is first asked for

private:
    QWidget* makeFooter(Outlets& outlets, ActionTable& actions);

    EmptyListView* m_empty = nullptr;
    ChipButton* m_remove = nullptr;
    FindBar* m_findBar = nullptr;
};

}  // namespace qm
