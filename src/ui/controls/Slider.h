// A horizontal slider over doubles. It fills from its reset value to its knob, so that a glance shows what was changed.
// setValue() never sends the action; only the user's hand does. Main thread only. Values are in the owner's unit.
#pragma once

#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "ui/controls/FocusRing.h"

namespace qm {

class ValueBubble;

struct SliderTick {
    double value;
    double length;          // pixels
    double opacity = 0.38;  // of white
};

struct SliderLook {
    double knobRadius = 10;
    double grooveHeight = 5;
    double knobCentreY = 10;  // from the top of the slider
    bool neutralFill = false;
    std::vector<SliderTick> ticks = {};
};

class Slider : public QWidget, public FocusShape {
    Q_OBJECT

public:
    explicit Slider(QWidget* parent = nullptr);

    double value() const { return m_value; }
    void setValue(double value);  // clamped to the bounds; -0.0 becomes 0.0
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    void setMinimum(double minimum);
    void setMaximum(double maximum);
    void setRange(double minimum, double maximum);

    double resetValue() const { return m_resetValue; }  // where the fill starts and the knob returns
    void setResetValue(double value);
    void setDoubleClickValue(double value) { m_doubleClickValue = value; }  // if it is not where the fill starts
    void setStep(double step) { m_step = step; }                            // of the wheel and of Up and Down
    double step() const { return m_step; }

    // Values nearer to 0 than this, but 0 itself, are none that the user's hand can set: the knob snaps to 0 or to the
    // gap's edge, and a step leads from the edge to 0 and on.
    void setGap(double edge) { m_gap = edge; }
    double nearestValue(double value) const;  // that the hand can set

    bool isHeld() const { return m_held; }  // the user holds the knob
    void setLocked(bool locked);            // amber knob, forbidden pointer; the action is still sent
    bool isLocked() const { return m_locked; }

    // The A-B part of the groove, in values; none when there is no loop.
    void setLoopRegion(std::optional<std::pair<double, double>> region);
    std::optional<std::pair<double, double>> loopRegion() const { return m_region; }

    void setLook(const SliderLook& look);
    const SliderLook& look() const { return m_look; }
    void setDimmed(bool dimmed);  // drawn faint; the slider still works
    bool isDimmed() const { return m_dimmed; }

    // The value in words: in the bubble, and as assistive tools speak it.
    void setReadableForm(std::function<QString(double)> form);
    QString readableValue() const;
    void setSpokenForm(std::function<QString(double)> form);
    QString spokenValue() const;

    // As the user's hand does: sets the value, or so many steps more or less, and sends the action.
    void moveByUser(double value);
    void stepByUser(int steps);

    double xOfValue(double value) const;  // pixels from the slider's left edge
    QPainterPath focusPath() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    // The user moved the knob: continuously while dragging, by key, wheel, groove click, double-click.
    void action(double value);

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void mouseDoubleClickEvent(QMouseEvent*) override;
    void wheelEvent(QWheelEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;
    void hideEvent(QHideEvent*) override;

private:
    double valueOfX(double x) const;
    double afterStep(double value, int direction) const;
    bool isOnKnob(const QPointF& position) const;
    void paintMove();
    void paintAll(QPainter& painter) const;
    void paintGroove(QPainter& painter) const;
    void paintKnob(QPainter& painter) const;
    double knobX() const { return xOfValue(m_value); }
    void placeBubble();
    void showBubble();
    void hideBubble();
    void updatePointer();

    SliderLook m_look;
    double m_value = 0;
    double m_drawnValue = 0;  // where the knob stands on the screen, as near to the value as can be seen
    double m_minimum = 0;
    double m_maximum = 1;
    double m_resetValue = 0;
    double m_step = 0.05;
    double m_gap = 0;
    double m_wheelRest = 0;
    double m_grip = 0;  // pointer minus knob centre, pixels, while held
    bool m_held = false;
    bool m_locked = false;
    bool m_dimmed = false;
    bool m_hovered = false;
    std::optional<std::pair<double, double>> m_region;
    std::optional<double> m_doubleClickValue;
    std::function<QString(double)> m_readable;
    std::function<QString(double)> m_spoken;
    QTimer m_bubbleDelay;
    QPointer<ValueBubble> m_bubble;
};

}  // namespace qm
