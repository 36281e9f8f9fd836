// How often a widget on the screen is painted, where, and whether what is painted in part fits what stands beside it.
#pragma once

#include <QApplication>
#include <QEvent>
#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>
#include <functional>

namespace qm {

class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& widget) : m_widget(widget) {
        widget.window()->show();
        settle();
        widget.installEventFilter(this);
    }

    // What a change paints: how many times, and where.
    int paintsAfter(const std::function<void()>& change) {
        m_paints = 0;
        m_region = {};
        change();
        settle();
        return m_paints;
    }
    const QRegion& region() const { return m_region; }

    // Whether the widget painted where the change asked for it, over the picture before, is the widget painted anew.
    bool looksWholeAfter(const std::function<void()>& change) {
        QImage pieced = picture();
        paintsAfter(change);
        const QRegion painted = m_region;  // rendering paints, too
        QPainter painter(&pieced);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        for (const QRect& each : painted) painter.fillRect(each, Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        for (const QRect& each : painted) m_widget.render(&painter, each.topLeft(), each, {});
        painter.end();
        return pieced == picture();
    }

private:
    static void settle() {
        for (int pass = 0; pass < 3; ++pass) QApplication::processEvents();
    }

    QImage picture() {
        QImage image(m_widget.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        m_widget.render(&image, {}, {}, {});
        return image;
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++m_paints;
            m_region += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }

    QWidget& m_widget;
    int m_paints = 0;
    QRegion m_region;
};

}  // namespace qm
