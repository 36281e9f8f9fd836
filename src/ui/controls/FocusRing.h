// The ring round the control that has the keyboard focus. One lies over each window and follows the focus; a control
// shows it by being a FocusShape. A push button of the toolkit's shows it when the focus comes from another control of
// its window, not already because the dialog begins with it. Main thread only.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QPointer>
#include <QWidget>

namespace qm {

class FocusShape {
public:
    virtual ~FocusShape() = default;
    virtual QPainterPath focusPath() const = 0;  // centre line of the ring, in the control's own coordinates
};

// Round a rectangle with the corners of a button.
QPainterPath focusPathRound(const QRect& rect);

class FocusRing : public QWidget {
    Q_OBJECT

public:
    explicit FocusRing(QWidget* window);
    FocusRing(QWidget* window, const QColor& color);
    QWidget* followedWidget() const { return m_followed; }
    void place();  // anew, when something else than the control has moved

protected:
    void paintEvent(QPaintEvent*) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(QWidget* before, QWidget* now);
    QPainterPath path() const;
    void drawAnew();

    QPointer<QWidget> m_followed;
    QPainterPath m_drawn;  // in the control's coordinates
    QColor m_color;
};

}  // namespace qm
