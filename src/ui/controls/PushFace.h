// The face of a full-size push button, of the program's own and of the toolkit's in its dialogs alike. Main thread
// only.
#pragma once

#include <QRect>
#include <QSize>
#include <QString>

class QPainter;

namespace qm {

struct PushFace {
    enum class Kind { Plain, Primary, Destroying };  // primary: filled with aqua, at most one in a window

    Kind kind = Kind::Plain;
    bool hovered = false;
    bool down = false;
    bool off = false;  // disabled or dimmed
};

QSize pushFaceSize(PushFace::Kind kind, const QString& text);

void paintPushFace(QPainter& painter, const QRect& rect, const PushFace& face, const QString& text);

}  // namespace qm
