#include "ui/controls/TitleButton.h"

#include <QPainter>

#include "ui/controls/Fonts.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kHeight = 26;
}

TitleButton::TitleButton(const QString& title, QWidget* parent) : FaceButton(parent) {
    setFont(uiFont(13, 500));
    setText(title);
}

void TitleButton::setPlainTitle(const QString& title) {
    m_attributes.reset();
    setText(title);
    update();
}

void TitleButton::setAttributedTitle(const QString& title, const TextAttributes& attributes) {
    m_attributes = attributes;
    setText(title);
    update();
}

void TitleButton::setTight(bool tight) {
    m_tight = tight;
    update();
}

QSize TitleButton::sizeHint() const {
    return {m_tight ? 66 : 126, kHeight};
}

void TitleButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(drawingOpacity());
    const double drop = isDown() ? 1 : 0;
    const QRectF face = QRectF(rect()).adjusted(0, drop, 0, 0);
    fillRounded(painter, face, tokens::kChipRadius, QColor(0, 0, 0, 97));
    strokeRounded(painter, face, tokens::kChipRadius, isHovered() ? QColor(255, 255, 255, 62) : tokens::kLineStrong);

    const double margin = m_tight ? 7 : 8;
    const double arrow = m_tight ? 12 : 13;
    const QPixmap icon = lineIcon(QStringLiteral("qm_reset.png"), arrow, isHovered() ? tokens::kWhite : tokens::kText3,
                                  devicePixelRatioF());
    painter.drawPixmap(QPointF(margin, face.top() + (kHeight - arrow) / 2), icon);
    painter.setPen(m_attributes ? m_attributes->color : tokens::kWhite);
    painter.setFont(font());
    drawLine(painter, QRectF(margin, drop, width() - 2 * margin, height()), Qt::AlignRight, text());
    if (isDown()) fillRounded(painter, face, tokens::kChipRadius, QColor(0, 0, 0, 46));
}

}  // namespace qm
