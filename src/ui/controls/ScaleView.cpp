#include "ui/controls/ScaleView.h"

#include <QFontMetricsF>
#include <cmath>

#include "ui/controls/Card.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kHeight = 51;
constexpr int kSliderHeight = 27;
constexpr double kTextSize = 11;
constexpr double kDotSize = 15;
}  // namespace

ScaleView::ScaleView(Slider* slider, const std::vector<ScaleLabel>& labels, QWidget* parent)
    : QWidget(parent), m_slider(slider) {
    setFixedHeight(kHeight);
    slider->setParent(this);
    for (const ScaleLabel& place : labels) {
        const QString text = QString::fromUtf8(place.text);
        const double size = text == u"•" ? kDotSize : kTextSize;
        QLabel* label = makeLabel(text, uiFont(size, 500), tokens::kScaleCyan, this);
        label->setObjectName(QString::fromLatin1(place.name));
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
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
        const QFontMetricsF metrics(placed.label->font());
        const double textWidth = metrics.horizontalAdvance(placed.label->text());
        double left = m_slider->xOfValue(placed.place.value) + placed.place.shift;
        if (placed.place.anchor & Qt::AlignHCenter) left -= textWidth / 2;
        if (placed.place.anchor & Qt::AlignRight) left -= textWidth;
        const int ascent = static_cast<int>(std::lround(metrics.ascent()));
        placed.label->setGeometry(static_cast<int>(std::lround(left)), placed.place.baseline - ascent,
                                  static_cast<int>(std::ceil(textWidth)) + 2,
                                  static_cast<int>(std::ceil(metrics.height())) + 1);
    }
}

}  // namespace qm
