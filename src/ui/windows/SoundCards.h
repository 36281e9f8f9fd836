// The cards at the right of the main window: speed, pitch, tone, and the bar that resets them all and records. Main
// thread only.
#pragma once

#include <QWidget>
#include <vector>

#include "app/state/Outlets.h"
#include "ui/actions/ActionTable.h"
#include "ui/controls/Card.h"
#include "ui/controls/ChipButton.h"

class QVBoxLayout;

namespace qm {

// A card of three rows: a head with title and value, a scale, and buttons.
class ScaleCard : public Card {
    Q_OBJECT

public:
    explicit ScaleCard(QWidget* parent);
    void setRoomy(bool roomy);

protected:
    void build(QWidget* head, QWidget* scale, QWidget* buttons);

private:
    QVBoxLayout* m_column;
};

class SpeedCard : public ScaleCard {
    Q_OBJECT

public:
    SpeedCard(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);
    void showRate(float rate);  // lights the preset that equals it

private:
    QWidget* makeButtons(ActionTable& actions);

    struct Preset {
        ChipButton* chip;
        float rate;
    };
    std::vector<Preset> m_presets;
};

class PitchCard : public ScaleCard {
    Q_OBJECT

public:
    PitchCard(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);
};

class ToneCard : public Card {
    Q_OBJECT

public:
    ToneCard(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);
};

class RecordBar : public Card {
    Q_OBJECT

public:
    RecordBar(Outlets& outlets, ActionTable& actions, QWidget* parent = nullptr);
};

}  // namespace qm
