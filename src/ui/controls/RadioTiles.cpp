#include "ui/controls/RadioTiles.h"

#include <QBoxLayout>
#include <QPainter>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kHeight = 34, kPadding = 9, kDot = 16, kGap = 7, kSwatch = 12, kTileGap = 6;

void paintDot(QPainter& painter, const QRectF& dot, bool on, bool hovered) {
    if (on) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(tokens::kAqua);
        painter.drawEllipse(dot);
        painter.setBrush(tokens::kAquaInk);
        painter.drawEllipse(dot.center(), 3, 3);
        return;
    }
    painter.setPen(QPen(hovered ? tokens::kText2 : tokens::kNeutralBar, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(dot.adjusted(0.75, 0.75, -0.75, -0.75));
}

}  // namespace

RadioTile::RadioTile(const QString& text, const QColor& swatch, int tag, QWidget* parent)
    : ChoiceButton(parent), m_swatch(swatch), m_tag(tag) {
    setFont(uiFont(13));
    setText(text);
    setAccessibleName(text);
    setFixedHeight(kHeight);
}

QSize RadioTile::sizeHint() const {
    const int words = static_cast<int>(std::ceil(textWidth(font(), text())));
    return {2 * kPadding + kDot + kGap + words + kGap + kSwatch, kHeight};
}

void RadioTile::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(drawingOpacity());
    if (isDown()) painter.translate(0, 1);
    const QRectF face(rect());
    QColor ground = isChecked() ? QColor(63, 210, 226, 31) : QColor(255, 255, 255, 13);
    if (isHovered()) ground.setAlpha(ground.alpha() + 15);
    if (isDown()) ground = tokens::kChipPressed;
    fillRounded(painter, face, tokens::kChipRadius, ground);
    const QColor line = isChecked() ? tokens::kAqua : isHovered() ? tokens::kLineStrong : tokens::kLine;
    strokeRounded(painter, face, tokens::kChipRadius, line, isChecked() ? 1.5 : 1);

    paintDot(painter, QRectF(kPadding, (kHeight - kDot) / 2, kDot, kDot), isChecked(), isHovered());
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_swatch);
    painter.drawRoundedRect(QRectF(width() - kPadding - kSwatch, (kHeight - kSwatch) / 2, kSwatch, kSwatch), 3, 3);
    painter.setFont(font());
    painter.setPen(tokens::kText);
    drawLine(painter, QRectF(kPadding + kDot + kGap, 0, width(), kHeight), Qt::AlignLeft, text());
}

RadioTiles::RadioTiles(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kTileGap);
}

RadioTile* RadioTiles::addTile(const QString& text, const QColor& swatch, int tag) {
    auto* tile = new RadioTile(text, swatch, tag, this);
    m_tiles.push_back(tile);
    static_cast<QHBoxLayout*>(layout())->addWidget(tile, 1);
    connect(tile, &QAbstractButton::clicked, this, &RadioTiles::action);
    return tile;
}

int RadioTiles::selectedTag() const {
    for (const RadioTile* tile : m_tiles)
        if (tile->isChecked()) return tile->tag();
    return -1;
}

void RadioTiles::selectCellWithTag(int tag) {
    for (RadioTile* tile : m_tiles)
        if (tile->tag() == tag) tile->setChecked(true);
}

}  // namespace qm
