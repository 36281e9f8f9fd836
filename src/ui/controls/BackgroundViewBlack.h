// The main window's ground, behind all controls: dark grey at the bottom edge, black at the top. Main thread only.
#pragma once

#include <QWidget>

namespace qm {

class BackgroundViewBlack : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override;
};

}  // namespace qm
