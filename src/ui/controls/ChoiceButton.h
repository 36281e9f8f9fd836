// One of several buttons in a row of which exactly one is chosen: Tab reaches the chosen one, the arrow keys move the
// choice, Return and Space choose. Its siblings are the other choice buttons of its parent. Main thread only.
#pragma once

#include "ui/controls/FaceButton.h"

namespace qm {

class ChoiceButton : public FaceButton {
    Q_OBJECT

public:
    explicit ChoiceButton(QWidget* parent);  // not chosen

protected:
    void keyPressEvent(QKeyEvent*) override;
};

}  // namespace qm
