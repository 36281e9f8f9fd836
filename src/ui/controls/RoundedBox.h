// A black box with a thin line around it, which frames other controls. Main thread only.
#pragma once

#include <QWidget>

namespace qm {

class RoundedBox : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius)

public:
    using QWidget::QWidget;

    double cornerRadius() const { return m_cornerRadius; }  // pixels
    void setCornerRadius(double radius);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    double m_cornerRadius = 0;
};

}  // namespace qm
