// The main window's frame as a line of text in a file of its own: "x y w h sx sy sw sh " in whole pixels, the window's
// rectangle and then its screen's, both with the origin at the bottom left of the primary screen. Position and inner
// size are kept, so that a frame drawn by the desktop cannot creep. Main thread only. A missing, unreadable or
// senseless file leaves the window as it is; a failed write leaves a log line.
#pragma once

#include <QList>
#include <QRect>
#include <QSize>
#include <QString>
#include <optional>

class QWidget;

namespace qm {

// "<home>//Library/Application Support/Quillmere/windowposition", empty without a home folder; the doubled slash
// belongs to it.
QString windowPositionPath();

// Rectangles as the toolkit counts them, from the top left; `primary` is the primary screen.
QString savedFrameString(const QRect& window, const QRect& screen, const QRect& primary);

// The frame that the text asks for, moved and cut to fit into one of the screens; none when the text does not start
// with four whole numbers or asks for less than `minimum`. `screens` are the parts that windows may cover.
std::optional<QRect> frameFromSavedString(const QString& text, QSize minimum, const QRect& primary,
                                          const QList<QRect>& screens);

// Of a window that is maximised or minimised, the place where it stands otherwise.
void saveWindowPosition(const QWidget& window);

// Watches the window's frame from then on, for the place that is saved.
void restoreWindowPosition(QWidget& window);

}  // namespace qm
