// A thin bar that fills from the left with what is done. Main thread only.
#pragma once

#include <QProgressBar>

namespace qm {

class ProgressBar : public QProgressBar {
    Q_OBJECT

public:
    explicit ProgressBar(QWidget* parent = nullptr);

    void setFraction(double done);  // 0 to 1

protected:
    void paintEvent(QPaintEvent*) override;
    virtual void paintFilling(QPainter& painter);  // the groove is painted, and nothing can be painted beside it
};

}  // namespace qm
