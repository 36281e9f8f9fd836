// What all painted buttons share: hover, press and dimming as drawing states, Return (never Space) as the key that
// presses, and focus by Tab only, so that a click leaves the keyboard with the play list. Main thread only.
#pragma once

#include <QAbstractButton>
#include <optional>

#include "ui/controls/FocusRing.h"

namespace qm {

class FaceButton : public QAbstractButton, public FocusShape {
    Q_OBJECT

public:
    explicit FaceButton(QWidget* parent = nullptr);

    void setDimmed(bool dimmed);  // drawn faint; the button still works
    bool isDimmed() const { return m_dimmed; }

    // For a button that says more than that it can be pressed: whether what it stands for is on.
    virtual std::optional<bool> onState() const { return std::nullopt; }

    QPainterPath focusPath() const override;

protected:
    void onStateChanged();  // tells assistive tools and draws again
    bool isHovered() const { return underMouse() && isEnabled(); }
    double drawingOpacity() const;
    void keyPressEvent(QKeyEvent*) override;
    void keyReleaseEvent(QKeyEvent*) override;

private:
    bool m_dimmed = false;
};

}  // namespace qm
