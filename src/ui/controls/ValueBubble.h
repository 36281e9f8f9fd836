// The small dark bubble above a slider's knob that says the value in words. A child of the window, so that it may reach
// over the slider's neighbours; it takes no mouse events. Main thread only.
#pragma once

#include <QWidget>

namespace qm {

class ValueBubble : public QWidget {
    Q_OBJECT

public:
    explicit ValueBubble(QWidget* window);

    // Shows the text centred above `tip`, in the window's coordinates, kept inside the window.
    void showAt(const QPoint& tip, const QString& text);
    QString text() const { return m_text; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_text;
};

}  // namespace qm
