#include "ui/controls/ImageView.h"

#include <QPainter>

#include "ui/controls/NamedImage.h"

namespace qm {

ImageView::ImageView(const QString& imageName, QWidget* parent) : QWidget(parent), m_imageName(imageName) {
    setFixedSize(namedPixmap(imageName, 1.0).size());
}

void ImageView::setImageName(const QString& name) {
    if (m_imageName == name) return;
    m_imageName = name;
    update();
}

void ImageView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect(), namedPixmap(m_imageName, devicePixelRatioF()));
}

}  // namespace qm
