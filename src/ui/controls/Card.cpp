#include "ui/controls/Card.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/ToolTipText.h"

namespace qm {

namespace {

constexpr int kBand = 24;           // rows
constexpr double kTagSides = 0.78;  // of a tag's height, the space at both sides of its text together

}  // namespace

// In bands: the toolkit shares the rows of a tall shape out among threads, and waiting for those takes longer.
void Card::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int top = 0; top < height(); top += kBand) {
        const QRect band(0, top, width(), kBand);
        if (!event->region().intersects(band)) continue;
        painter.setClipRect(band);
        paintGround(painter);
    }
}

void Card::paintGround(QPainter& painter) const {
    fillRounded(painter, rect(), tokens::kCardRadius, tokens::kWell);
    strokeRounded(painter, rect(), tokens::kCardRadius, tokens::kLine);
}

StateTag::StateTag(bool amber, QWidget* parent) : QWidget(parent), m_amber(amber) {
    setFont(uiFont(11.5, 600));
    hide();
}

void StateTag::setText(const QString& text) {
    if (m_text == text) return;
    m_text = text;
    setVisible(!text.isEmpty());
    updateGeometry();
    update();
}

void StateTag::setMeasures(double textSize, int height) {
    setFont(uiFont(textSize, 600));
    m_height = height;
    updateGeometry();
    update();
}

QSize StateTag::sizeHint() const {
    const int sides = static_cast<int>(std::lround(m_height * kTagSides));
    return {static_cast<int>(std::lround(textWidth(font(), m_text))) + sides, m_height};
}

void StateTag::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), height() / 2.0, m_amber ? QColor(255, 180, 84, 43) : QColor(63, 210, 226, 41));
    painter.setPen(m_amber ? tokens::kAmberHigh : tokens::kAquaHigh);
    painter.setFont(font());
    drawLine(painter, rect(), Qt::AlignHCenter, m_text);
}

KeyCap::KeyCap(const QString& key, QWidget* parent) : QWidget(parent), m_key(key) {
    setFont(uiFont(11.5, 500));
    setFixedSize(sizeHint());
}

QSize KeyCap::sizeHint() const {
    const int width = static_cast<int>(std::lround(textWidth(font(), m_key))) + 12;
    return {std::max(18, width), 19};
}

void KeyCap::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF cap(0, 0, width(), height() - 1);
    constexpr double kRadius = 4;
    fillRounded(painter, cap.translated(0, 1), kRadius, QColor(0, 0, 0, 128));
    fillRounded(painter, cap, kRadius, QColor(60, 60, 61));
    strokeRounded(painter, cap, kRadius, QColor(255, 255, 255, 36));
    painter.setPen(tokens::kWhite);
    painter.setFont(font());
    drawLine(painter, cap, Qt::AlignHCenter, m_key);
}

TextLabel::TextLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent)
    : QLabel(text, parent) {
    setFont(font);
    setLabelColor(*this, color);
    setTextFormat(Qt::PlainText);
}

void TextLabel::setLeftShift(double pixels) {
    m_leftShift = pixels;
    update();
}

QString TextLabel::oneLine() const {
    return text().trimmed().replace(u'\n', QStringLiteral(" · "));
}

QSize TextLabel::sizeHint() const {
    return {static_cast<int>(std::ceil(textWidth(font(), oneLine()))), static_cast<int>(std::ceil(fontHeight(font())))};
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    const QString whole = oneLine();
    const QString shown = elidedText(font(), whole, width());
    drawLine(painter, QRectF(rect()).translated(m_leftShift, 0), alignment(), shown);
    const QString tip = shown == whole ? QString() : plainToolTip(whole);
    if (toolTip() != tip) setToolTip(tip);
}

void setLabelColor(QLabel& label, const QColor& color) {
    QPalette palette = label.palette();
    if (palette.color(QPalette::WindowText) == color) return;
    palette.setColor(QPalette::WindowText, color);
    label.setPalette(palette);
}

}  // namespace qm
