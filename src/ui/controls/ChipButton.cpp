#include "ui/controls/ChipButton.h"

#include <QPainter>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/PixelGrid.h"
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

int wholePixels(double width) {
    return static_cast<int>(std::lround(width));
}

void drawText(QPainter& painter, double x, double height, double drop, const QString& text) {
    drawLine(painter, QRectF(x, drop, textWidth(painter.font(), text), height), Qt::AlignLeft, text);
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
        fillRounded(painter, face, tokens::kChipRadius, QColor(63, 210, 226, isDown() ? 30 : isHovered() ? 70 : 51));
        strokeRounded(painter, face, tokens::kChipRadius, tokens::kAqua, 1.5);
        return;
    }
    fillRounded(painter, face, tokens::kChipRadius,
                isDown()      ? tokens::kChipPressed
                : isHovered() ? tokens::kChipHover
                              : tokens::kChip);
    strokeRounded(painter, face, tokens::kChipRadius, QColor(255, 255, 255, 15));
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

void ToolButton::setOn(std::optional<bool> on) {
    if (m_on == on) return;
    m_on = on;
    onStateChanged();
}

double ToolButton::exactWidth() const {
    return 2 * kToolPadding + kToolIcon + kToolGap + textWidth(font(), text());
}

QSize ToolButton::sizeHint() const {
    return {wholePixels(exactWidth()), kToolHeight};
}

void ToolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(drawingOpacity());
    const double drop = isDown() ? 1 : 0;
    if (isDown())
        fillRounded(painter, rect(), tokens::kChipRadius, tokens::kChipPressed);
    else if (isOn())
        fillRounded(painter, rect(), tokens::kChipRadius, QColor(63, 210, 226, 38));
    else if (isHovered())
        fillRounded(painter, rect(), tokens::kChipRadius, tokens::kChipHover);
    const QPixmap icon = lineIcon(m_iconName, kToolIcon, isOn() ? tokens::kAqua : tokens::kIcon, devicePixelRatioF());
    painter.drawPixmap(QPointF(kToolPadding, (height() - kToolIcon) / 2 + drop), icon);
    painter.setFont(font());
    painter.setPen(isOn() ? tokens::kWhite : tokens::kMenuText);
    drawText(painter, kToolPadding + kToolIcon + kToolGap, height(), drop, text());
}

PushButton::PushButton(const QString& text, bool primary, QWidget* parent)
    : FaceButton(parent), m_kind(primary ? PushFace::Kind::Primary : PushFace::Kind::Plain) {
    setText(text);
}

QSize PushButton::sizeHint() const {
    return pushFaceSize(m_kind, text());
}

void PushButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintPushFace(painter, rect(), {m_kind, isHovered(), isDown(), isDimmed() || !isEnabled()}, text());
}

}  // namespace qm
