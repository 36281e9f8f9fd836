#include "ui/controls/MovieView.h"

#include <QImage>
#include <QPaintEvent>
#include <QPainter>

namespace qm {

namespace {

constexpr int kLookMilliseconds = 12;

}  // namespace

MovieView::MovieView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kLookMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &MovieView::look);
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
    m_movie->setWatched(watch);
    watch ? m_timer.start() : m_timer.stop();
}

void MovieView::look() {
    auto picture = m_movie->currentPicture();
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
    const QImage image(reinterpret_cast<const uchar*>(m_picture->pixels.data()), m_picture->width, m_picture->height,
                       4 * m_picture->width, QImage::Format_RGB32);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(pictureRect(), image);
}

void MovieView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    watch(true);
}

void MovieView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    watch(false);
}

}  // namespace qm
