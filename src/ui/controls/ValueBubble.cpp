#include "ui/controls/ValueBubble.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kHeight = 24;
constexpr int kSidePadding = 8;
constexpr int kGap = 5;
}  // namespace

ValueBubble::ValueBubble(QWidget* window) : QWidget(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFont(uiFont(12, 500));
    hide();
}

void ValueBubble::showAt(const QPoint& tip, const QString& text) {
    m_text = text;
    const int width = static_cast<int>(std::ceil(textWidth(font(), text))) + 2 * kSidePadding;
    const int x = std::clamp(tip.x() - width / 2, 2, std::max(2, parentWidget()->width() - width - 2));
    setGeometry(x, tip.y() - kHeight - kGap, width, kHeight);
    raise();
    show();
    update();
}

void ValueBubble::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), tokens::kChipRadius, Qt::black);
    strokeRounded(painter, rect(), tokens::kChipRadius, tokens::kLineStrong);
    painter.setPen(tokens::kText);
    painter.setFont(font());
    drawLine(painter, rect(), Qt::AlignHCenter, m_text);
}

}  // namespace qm
