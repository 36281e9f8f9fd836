#include "ui/controls/MovieView.h"

#include <QImage>
#include <QPaintEvent>
#include <QPainter>

namespace qm {

MovieView::MovieView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

MovieView::~MovieView() {
    watch(false);
}

void MovieView::setMovie(QTMovie* movie) {
    if (movie == m_movie) return;
    watch(false);
    m_movie = movie;
    m_picture.reset();
    watch(isVisible());
    update();
}

void MovieView::watch(bool watch) {
    if (!m_movie) return;
    if (!watch) return m_movie->setPictureViewer(std::nullopt);
    const QSize place = size() * devicePixelRatio();
    const auto showSoon = [this] { QMetaObject::invokeMethod(this, &MovieView::showPicture, Qt::QueuedConnection); };
    m_movie->setPictureViewer(PictureViewer{place.width(), place.height(), showSoon});
    showPicture();
}

void MovieView::showPicture() {
    auto picture = m_movie ? m_movie->currentPicture() : nullptr;
    if (!picture || picture == m_picture) return;
    m_picture = std::move(picture);
    update();
}

QRectF MovieView::pictureRect() const {
    if (!m_picture || m_picture->aspect <= 0) return {};
    QSizeF size(m_picture->aspect, 1);
    size.scale(this->size(), Qt::KeepAspectRatio);
    return {(width() - size.width()) / 2, (height() - size.height()) / 2, size.width(), size.height()};
}

void MovieView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), Qt::black);
    if (!m_picture) return;
    QImage image(reinterpret_cast<const uchar*>(m_picture->pixels.data()), m_picture->width, m_picture->height,
                 4 * m_picture->width, QImage::Format_RGB32);
    const QRectF rect = pictureRect();
    const double ratio = devicePixelRatio();
    const QSize pixels(qRound(rect.width() * ratio), qRound(rect.height() * ratio));
    if (image.size() == pixels) {  // already in the size of the view
        image.setDevicePixelRatio(ratio);
        painter.drawImage(QPointF(qRound(rect.x() * ratio) / ratio, qRound(rect.y() * ratio) / ratio), image);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(rect, image);
}

void MovieView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    watch(true);
}

void MovieView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    watch(false);
}

void MovieView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isVisible()) watch(true);
}

}  // namespace qm
