#include "ui/controls/ImageButton.h"

#include <QPainter>

#include "ui/controls/NamedImage.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kMargin = 8;       // round every face, room for its glow
constexpr int kSmallMargin = 4;  // of the small record toggle
constexpr int kSmallCanvas = 44;
constexpr int kMarkCanvas = 72;          // the mark faces are square but not round
const QColor kPressedWash(0, 0, 0, 46);  // 18 % less light
const QColor kHoverDodge(31, 31, 31);    // dodging divides by what is left of white: 14 % more light
}  // namespace

ImageButton::ImageButton(const QString& imageName, QWidget* parent) : FaceButton(parent) {
    setImageName(imageName);
}

void ImageButton::setImageName(const QString& name) {
    setImage(name, m_on);
}

void ImageButton::showState(const QString& imageName, bool on) {
    setImage(imageName, on);
}

void ImageButton::setImage(const QString& name, std::optional<bool> on) {
    if (m_imageName == name && m_on == on) return;
    m_imageName = name;
    m_on = on;
    const QSize canvas = name.isEmpty() ? QSize() : namedPixmap(name, 1.0).size();
    if (canvas != m_canvas) {
        m_canvas = canvas;
        updateGeometry();
    }
    onStateChanged();
}

QPainterPath ImageButton::facePath(double grow) const {
    const int margin = width() <= kSmallCanvas ? kSmallMargin : kMargin;
    const double inset = margin - grow;
    const QRectF face = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    QPainterPath path;
    if (width() != height() || width() == kMarkCanvas)
        path.addRoundedRect(face, tokens::kFaceRadius + grow, tokens::kFaceRadius + grow);
    else
        path.addEllipse(face);
    return path;
}

QPainterPath ImageButton::focusPath() const {
    return facePath(3);
}

void ImageButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setOpacity(drawingOpacity());
    if (isDown()) painter.translate(0, 1);
    painter.drawPixmap(rect(), namedPixmap(m_imageName, devicePixelRatioF()));
    if (isDown()) {
        painter.fillPath(facePath(0), kPressedWash);
    } else if (isHovered()) {
        painter.setCompositionMode(QPainter::CompositionMode_ColorDodge);
        painter.fillPath(facePath(0), kHoverDodge);
    }
}

bool ImageButton::hitButton(const QPoint& position) const {
    return facePath(0).contains(position);
}

}  // namespace qm
