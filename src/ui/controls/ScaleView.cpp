#include "ui/controls/ScaleView.h"

#include <cmath>

#include "ui/controls/Card.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kHeight = 51;
constexpr int kSliderHeight = 27;
constexpr double kTextSize = 11;
}  // namespace

ScaleView::ScaleView(Slider* slider, const std::vector<ScaleLabel>& labels, QWidget* parent)
    : QWidget(parent), m_slider(slider) {
    setFixedHeight(kHeight);
    slider->setParent(this);
    for (const ScaleLabel& place : labels) {
        const QString text = QString::fromUtf8(place.text);
        auto* label = new TextLabel(text, uiFont(kTextSize, 400), tokens::kScaleCyan, this);
        label->setObjectName(QString::fromLatin1(place.name));
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        *place.outlet = label;
        m_labels.push_back({label, place});
    }
    slider->raise();
}

QSize ScaleView::sizeHint() const {
    return {160, kHeight};
}

void ScaleView::resizeEvent(QResizeEvent*) {
    m_slider->setGeometry(0, 0, width(), kSliderHeight);
    for (const Placed& placed : m_labels) {
        const double width = textWidth(placed.label->font(), placed.label->text());
        double left = m_slider->xOfValue(placed.place.value) + placed.place.shift;
        if (placed.place.anchor & Qt::AlignHCenter) left -= width / 2;
        if (placed.place.anchor & Qt::AlignRight) left -= width;
        const int ascent = static_cast<int>(std::lround(fontAscent(placed.label->font())));
        const int whole = static_cast<int>(std::floor(left));
        placed.label->setLeftShift(left - whole);
        placed.label->setGeometry(whole, placed.place.baseline - ascent, static_cast<int>(std::ceil(width)) + 2,
                                  placed.label->sizeHint().height());
    }
}

}  // namespace qm
