#include "ui/controls/ScaleSample.h"

#include <QPainter>
#include <array>

#include "ui/controls/Card.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/ScaleView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kSide = 12, kTop = 10, kTitleLine = 18, kScaleHeight = 42, kBottom = 6;
constexpr int kBaseline = 37;
const QColor kGround{0x0D, 0x0E, 0x0F};

Slider* makeSlider() {
    auto* slider = new Slider;
    slider->setRange(-2.5, 2.5);
    slider->setResetValue(1);
    slider->setValue(1);
    slider->setFocusPolicy(Qt::NoFocus);
    SliderLook look;
    look.knobRadius = 8;
    look.grooveHeight = 4;
    for (const double mark : {-2.0, -1.0, 0.0, 1.0, 2.0}) look.ticks.push_back({mark, 5});
    slider->setLook(look);
    return slider;
}

}  // namespace

ScaleSample::ScaleSample(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(tr("Sample of the speed scale"));
    setFixedHeight(kTop + kTitleLine + kScaleHeight + kBottom);
    m_labels.push_back(new TextLabel(tr("Speed"), uiFont(13, 600), tokens::kScaleCyan, this));
    std::array<QLabel*, 7> marks{};
    m_scale = new ScaleView(makeSlider(),
                            {{&marks[0], "", "−2", -2, kBaseline},
                             {&marks[1], "", "−1", -1, kBaseline},
                             {&marks[2], "", "•", -0.35, kBaseline},
                             {&marks[3], "", "0", 0, kBaseline},
                             {&marks[4], "", "•", 0.35, kBaseline},
                             {&marks[5], "", "1", 1, kBaseline},
                             {&marks[6], "", "2", 2, kBaseline}},
                            this);
    m_scale->setFixedHeight(kScaleHeight);
    m_labels.insert(m_labels.end(), marks.begin(), marks.end());
}

void ScaleSample::setTextColor(const QColor& color) {
    for (QLabel* label : m_labels) setLabelColor(*label, color);
}

void ScaleSample::resizeEvent(QResizeEvent*) {
    m_labels.front()->setGeometry(kSide, kTop, width() - 2 * kSide, kTitleLine);
    m_scale->setGeometry(kSide, kTop + kTitleLine, width() - 2 * kSide, kScaleHeight);
}

void ScaleSample::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), tokens::kChipRadius, kGround);
    strokeRounded(painter, rect(), tokens::kChipRadius, tokens::kLine);
}

}  // namespace qm
