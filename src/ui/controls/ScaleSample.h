// A picture of the speed scale in the colour of the scale labels. It cannot be operated. Main thread only.
#pragma once

#include <QLabel>
#include <QWidget>
#include <vector>

namespace qm {

class ScaleView;

class ScaleSample : public QWidget {
    Q_OBJECT

public:
    explicit ScaleSample(QWidget* parent = nullptr);
    void setTextColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;

private:
    ScaleView* m_scale = nullptr;
    std::vector<QLabel*> m_labels;  // the title first
};

}  // namespace qm
