// The program's images by the exact names they are asked for, with or without an extension, at the sharpness of the
// screen. Main thread only. An unknown name gives a null image and a log line.
#pragma once

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QString>
#include <functional>

namespace qm {

// Finds an image of the program by its name; null if there is none.
using ImageProvider = std::function<QImage(const QString& name)>;

// The image as drawn for plain (1x) or, with `deviceScale` above 1, for doubled screens, or, above 2, twice as large
// once more where there is such a drawing; devicePixelRatio is set.
QImage namedImage(const QString& name, double deviceScale = 1.0);

// The same, cached, for painting.
QPixmap namedPixmap(const QString& name, double deviceScale);

// A line icon at `size` logical pixels in one colour, cached.
QPixmap lineIcon(const QString& name, double size, const QColor& color, double deviceScale);

}  // namespace qm
