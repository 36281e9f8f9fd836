// A bar that says that something goes on, without saying how much of it is done: a light that runs through it while the
// animation is started. Main thread only.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include "ui/controls/ProgressBar.h"

namespace qm {

class ProgressIndicator : public ProgressBar {
    Q_OBJECT

public:
    explicit ProgressIndicator(QWidget* parent = nullptr);

    void startAnimation();
    void stopAnimation();
    bool isAnimating() const { return m_timer.isActive(); }

protected:
    void paintFilling(QPainter& painter) override;

private:
    QTimer m_timer;
    QElapsedTimer m_running;
};

}  // namespace qm
