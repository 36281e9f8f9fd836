// A slider with its scale: labels stand under it at the places of their values, by the slider's own mapping. The labels
// are plain text fields, so that their colour can be chosen. Main thread only.
#pragma once

#include <QLabel>
#include <QWidget>
#include <vector>

#include "ui/controls/Card.h"
#include "ui/controls/Slider.h"

namespace qm {

struct ScaleLabel {
    QLabel** outlet;
    const char* name;  // object name of the label
    const char* text;
    double value;
    int baseline;                             // pixels from the top
    Qt::Alignment anchor = Qt::AlignHCenter;  // which part of the text stands at the value
    double shift = 0;                         // pixels to the right
};

class ScaleView : public QWidget {
    Q_OBJECT

public:
    ScaleView(Slider* slider, const std::vector<ScaleLabel>& labels, QWidget* parent = nullptr);
    Slider* slider() const { return m_slider; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void resizeEvent(QResizeEvent*) override;

private:
    struct Placed {
        TextLabel* label;
        ScaleLabel place;
    };

    Slider* m_slider;
    std::vector<Placed> m_labels;
};

}  // namespace qm
