#include "ui/controls/PushFace.h"

#include <QLinearGradient>
#include <QPainter>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

using Kind = PushFace::Kind;

constexpr int kHeight = 32, kPadding = 16;
constexpr double kRadius = tokens::kChipRadius, kEdge = 1.5;
const QColor kPressedWash(0, 0, 0, 46), kHoverWash(255, 255, 255, 15);
const QColor kOffGround(255, 255, 255, 15), kOffLine(255, 255, 255, 18), kOffInk(255, 255, 255, 97);
const QColor kLine(255, 255, 255, 26), kUpperEdge(255, 255, 255, 128);
const QColor kHoveredHigh(0xA6, 0xF2, 0xF9), kHoveredLow(0x66, 0xDE, 0xEA);
const QColor kDarkRedHigh(0x5A, 0x2B, 0x29), kDarkRedLow(0x43, 0x20, 0x1E);

QFont font(Kind kind) {
    return uiFont(13, kind == Kind::Plain ? 500 : 600);
}

QLinearGradient downward(const QRectF& rect, const QColor& high, const QColor& low) {
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, high);
    gradient.setColorAt(1, low);
    return gradient;
}

void paintPrimary(QPainter& painter, const QRectF& rect, const PushFace& face) {
    const bool hovered = face.hovered && !face.down;
    fillRounded(painter, rect, kRadius,
                downward(rect, hovered ? kHoveredHigh : tokens::kAquaHigh, hovered ? kHoveredLow : tokens::kAqua));
    painter.fillRect(QRectF(rect.left() + 4, rect.top(), rect.width() - 8, 1), kUpperEdge);
    if (face.down) fillRounded(painter, rect, kRadius, kPressedWash);
}

void paintDestroying(QPainter& painter, const QRectF& rect, const PushFace& face) {
    fillRounded(painter, rect, kRadius, downward(rect, kDarkRedHigh, kDarkRedLow));
    if (face.down || face.hovered) fillRounded(painter, rect, kRadius, face.down ? kPressedWash : kHoverWash);
    strokeRounded(painter, rect, kRadius, tokens::kRed, kEdge);
}

void paintPlain(QPainter& painter, const QRectF& rect, const PushFace& face) {
    const QColor ground = face.down ? tokens::kChipPressed : tokens::kChipHover;
    fillRounded(painter, rect, kRadius, face.off ? kOffGround : ground);
    if (face.hovered && !face.down && !face.off) fillRounded(painter, rect, kRadius, kHoverWash);
    strokeRounded(painter, rect, kRadius, face.off ? kOffLine : kLine);
}

QColor ink(const PushFace& face) {
    if (face.off) return kOffInk;
    if (face.kind == Kind::Primary) return tokens::kAquaInk;
    return face.kind == Kind::Destroying ? tokens::kWhite : tokens::kText;
}

}  // namespace

QSize pushFaceSize(Kind kind, const QString& text) {
    return {static_cast<int>(std::lround(textWidth(font(kind), text))) + 2 * kPadding, kHeight};
}

void paintPushFace(QPainter& painter, const QRect& rect, const PushFace& face, const QString& text) {
    painter.setRenderHint(QPainter::Antialiasing);
    const int drop = face.down ? 1 : 0;
    const QRectF ground = QRectF(rect).adjusted(0, drop, 0, 0);
    if (face.kind == Kind::Plain || face.off)
        paintPlain(painter, ground, face);
    else
        face.kind == Kind::Primary ? paintPrimary(painter, ground, face) : paintDestroying(painter, ground, face);
    painter.setFont(font(face.kind));
    painter.setPen(ink(face));
    drawLine(painter, rect.translated(0, drop), Qt::AlignHCenter, text);
}

}  // namespace qm
