#include "ui/controls/ChipButton.h"

#include <QLinearGradient>
#include <QPainter>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kChipHeight = 28;
constexpr int kChipPadding = 8;
constexpr double kChipIcon = 16;
constexpr double kChipGap = 6;
constexpr int kToolHeight = 30;
constexpr int kToolPadding = 10;
constexpr double kToolIcon = 18;
constexpr double kToolGap = 7;
constexpr int kPushHeight = 32;
constexpr int kPushPadding = 16;

int wholePixels(double width) {
    return static_cast<int>(std::ceil(width));
}

void drawText(QPainter& painter, double x, double height, double drop, const QString& text) {
    drawLine(painter, QRectF(x, drop, textWidth(painter.font(), text), height), Qt::AlignLeft, text);
}

void fillRounded(QPainter& painter, const QRectF& rect, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, tokens::kChipRadius, tokens::kChipRadius);
}

void strokeRounded(QPainter& painter, const QRectF& rect, const QColor& color, double width) {
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    const double radius = tokens::kChipRadius - width / 2;
    painter.drawRoundedRect(rect.adjusted(width / 2, width / 2, -width / 2, -width / 2), radius, radius);
}

}  // namespace

ChipButton::ChipButton(const QString& text, const QString& iconName, QWidget* parent)
    : FaceButton(parent), m_iconName(iconName), m_ink(tokens::kChipText) {
    setFont(uiFont(13, 500));
    setText(text);
}

void ChipButton::setLit(bool lit) {
    if (m_lit == lit) return;
    m_lit = lit;
    onStateChanged();
}

void ChipButton::setQuiet(bool quiet) {
    m_quiet = quiet;
    update();
}

void ChipButton::setTextSize(double pixels) {
    setFont(uiFont(pixels, 500));
    updateGeometry();
}

void ChipButton::setInk(const QColor& color, int weight) {
    m_ink = color;
    QFont weighted = font();
    weighted.setWeight(static_cast<QFont::Weight>(weight));
    setFont(weighted);
}

double ChipButton::contentWidth() const {
    const double icon = m_iconName.isEmpty() ? 0 : kChipIcon;
    const double gap = icon > 0 && !text().isEmpty() ? kChipGap : 0;
    return icon + gap + textWidth(font(), text());
}

QSize ChipButton::sizeHint() const {
    return {wholePixels(contentWidth()) + 2 * kChipPadding, kChipHeight};
}

void ChipButton::paintGround(QPainter& painter, const QRectF& face) const {
    if (m_quiet && !isHovered() && !isDown()) return;
    if (isLit()) {
        fillRounded(painter, face, QColor(63, 210, 226, isDown() ? 30 : isHovered() ? 70 : 51));
        strokeRounded(painter, face, tokens::kAqua, 1.5);
        return;
    }
    fillRounded(painter, face, isDown() ? tokens::kChipPressed : isHovered() ? tokens::kChipHover : tokens::kChip);
    strokeRounded(painter, face, QColor(255, 255, 255, 15), 1);
    // A light upper edge, as if lit from above.
    painter.setPen(Qt::NoPen);
    painter.fillRect(
        QRectF(face.left() + tokens::kChipRadius - 1, face.top(), face.width() - 2 * tokens::kChipRadius + 2, 1),
        QColor(255, 255, 255, 13));
}

void ChipButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(drawingOpacity());
    const double drop = isDown() ? 1 : 0;
    paintGround(painter, QRectF(rect()).adjusted(0, drop, 0, 0));
    double x = (width() - contentWidth()) / 2;
    const QColor ink = isLit() || (m_quiet && isHovered()) ? tokens::kWhite : m_ink;
    if (!m_iconName.isEmpty()) {
        if (text().isEmpty()) x = std::round(x);
        const QPixmap icon = lineIcon(m_iconName, kChipIcon, ink, devicePixelRatioF());
        painter.drawPixmap(QPointF(std::round(x), std::round((height() - kChipIcon) / 2) + drop), icon);
        x += kChipIcon + kChipGap;
    }
    painter.setFont(font());
    painter.setPen(ink);
    drawText(painter, x, height(), drop, text());
}

ToolButton::ToolButton(const QString& text, const QString& iconName, QWidget* parent)
    : FaceButton(parent), m_iconName(iconName) {
    setFont(uiFont(12.5));
    setText(text);
}

void ToolButton::setOn(bool on) {
    if (m_on == on) return;
    m_on = on;
    onStateChanged();
}

QSize ToolButton::sizeHint() const {
    return {wholePixels(2 * kToolPadding + kToolIcon + kToolGap + textWidth(font(), text())), kToolHeight};
}

void ToolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(drawingOpacity());
    const double drop = isDown() ? 1 : 0;
    if (isDown())
        fillRounded(painter, rect(), tokens::kChipPressed);
    else if (isOn())
        fillRounded(painter, rect(), QColor(63, 210, 226, 38));
    else if (isHovered())
        fillRounded(painter, rect(), tokens::kChipHover);
    const QPixmap icon = lineIcon(m_iconName, kToolIcon, isOn() ? tokens::kAqua : tokens::kIcon, devicePixelRatioF());
    painter.drawPixmap(QPointF(kToolPadding, (height() - kToolIcon) / 2 + drop), icon);
    painter.setFont(font());
    painter.setPen(isOn() ? tokens::kWhite : tokens::kMenuText);
    drawText(painter, kToolPadding + kToolIcon + kToolGap, height(), drop, text());
}

PushButton::PushButton(const QString& text, bool primary, QWidget* parent) : FaceButton(parent), m_primary(primary) {
    setFont(uiFont(13, primary ? 600 : 500));
    setText(text);
}

QSize PushButton::sizeHint() const {
    return {wholePixels(textWidth(font(), text())) + 2 * kPushPadding, kPushHeight};
}

void PushButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double drop = isDown() ? 1 : 0;
    const QRectF face = QRectF(rect()).adjusted(0, drop, 0, 0);
    const bool off = isDimmed() || !isEnabled();
    if (m_primary && !off) {
        QLinearGradient aqua(face.topLeft(), face.bottomLeft());
        aqua.setColorAt(0, isHovered() ? QColor(0xA6, 0xF2, 0xF9) : tokens::kAquaHigh);
        aqua.setColorAt(1, isHovered() ? QColor(0x66, 0xDE, 0xEA) : tokens::kAqua);
        fillRounded(painter, face, aqua);
        if (isDown()) fillRounded(painter, face, QColor(0, 0, 0, 46));
        painter.fillRect(QRectF(face.left() + 4, face.top(), face.width() - 8, 1), QColor(255, 255, 255, 128));
    } else {
        const QColor ground = isDown() ? tokens::kChipPressed : tokens::kChipHover;
        fillRounded(painter, face, off ? QColor(255, 255, 255, 15) : ground);
        if (isHovered() && !isDown() && !off) fillRounded(painter, face, QColor(255, 255, 255, 15));
        strokeRounded(painter, face, QColor(255, 255, 255, off ? 18 : 26), 1);
    }
    painter.setFont(font());
    painter.setPen(off ? QColor(255, 255, 255, 97) : m_primary ? tokens::kAquaInk : tokens::kText);
    drawText(painter, (width() - textWidth(font(), text())) / 2, height(), drop, text());
}

}  // namespace qm
