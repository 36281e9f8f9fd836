// The two decks of the main window: the transport with its skips, and the loop with its marks. Main thread only.
#pragma once

#include <QWidget>
#include <vector>

#include "app/state/Outlets.h"
#include "ui/actions/ActionTable.h"
#include "ui/controls/Card.h"
#include "ui/controls/FaceButton.h"

namespace qm {

class TransportDeck : public Card {
    Q_OBJECT

public:
    TransportDeck(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);
    void setDimmed(bool dimmed);  // all but Play forward

private:
    QWidget* makeFaces(Outlets& outlets, ActionTable& actions);
    QWidget* makeSkips(ActionTable& actions);

    std::vector<FaceButton*> m_dimming;
    QLabel* m_unit = nullptr;
};

class LoopDeck : public Card {
    Q_OBJECT

public:
    LoopDeck(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);
    void setDimmed(bool dimmed);

private:
    std::vector<FaceButton*> m_dimming;
};

}  // namespace qm
