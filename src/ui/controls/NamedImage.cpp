#include "ui/controls/NamedImage.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QPixmapCache>
#include <algorithm>

#include "engine/api/Log.h"

static void loadResourceFile() {
    Q_INIT_RESOURCE(quillmere);
}

namespace qm {

namespace {

constexpr int kDoubledPixels = 48;  // of a line icon for doubled screens

QString scaledName(const QString& name, int scale) {
    const QString mark = QStringLiteral("@%1x").arg(scale);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? name + mark : name.left(dot) + mark + name.mid(dot);
}

QByteArray resourceBytes(const QString& name) {
    static const bool loaded = (loadResourceFile(), true);
    Q_UNUSED(loaded)
    QFile file(QStringLiteral(":/images/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Decoded by content, because one of the names has no extension and one has another format's.
QImage resourceImage(const QString& name) {
    return QImage::fromData(resourceBytes(name));
}

}  // namespace

QImage namedImage(const QString& name, double deviceScale) {
    QImage image;
    if (deviceScale > 2.0) {
        image = resourceImage(scaledName(name, 4));
        image.setDevicePixelRatio(4.0);
    }
    if (image.isNull() && deviceScale > 1.0) {
        image = resourceImage(scaledName(name, 2));
        image.setDevicePixelRatio(2.0);
    }
    if (image.isNull()) image = resourceImage(name);
    if (image.isNull()) qmLog("no image named " + name.toStdString());
    return image;
}

QPixmap namedPixmap(const QString& name, double deviceScale) {
    const QString key = QStringLiteral("qm:%1:%2").arg(name, deviceScale > 1.0 ? "2" : "1");
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap::fromImage(namedImage(name, std::min(deviceScale, 2.0)));
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

QPixmap lineIcon(const QString& name, double size, const QColor& color, double deviceScale) {
    const QString key = QStringLiteral("qm:%1:%2:%3:%4").arg(name).arg(size).arg(color.rgba()).arg(deviceScale);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    const int pixels = qRound(size * deviceScale);
    QImage image = namedImage(name, pixels > kDoubledPixels ? 4.0 : 2.0)
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied)
                       .scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(1.0);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    image.setDevicePixelRatio(deviceScale);
    pixmap = QPixmap::fromImage(image);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

}  // namespace qm
