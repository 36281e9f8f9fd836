// Where windows stand when they are first shown: wholly on one screen, and covering as little as can be of what the
// user needs. Pure; all rectangles are those of whole windows with their frames, or parts of them, in the desktop's
// logical pixels.
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>

namespace qm {

inline constexpr int kWindowGap = 12;  // between the main window and a panel beside it

// What there is around a panel.
struct Surroundings {
    QRect window;          // the main window
    QList<QRect> vital;    // its parts that nothing is to cover
    QList<QRect> useful;   // its parts that are covered rather than those
    QList<QRect> panels;   // the panels that are shown
    QList<QRect> screens;  // what windows may cover; first the main window's
};

// A main window that knows which of its parts are needed, where they are on the desktop.
class PanelHost {
public:
    virtual ~PanelHost() = default;
    virtual QList<QRect> vitalParts() const = 0;
    virtual QList<QRect> usefulParts() const = 0;
};

// Of the sizes the first one that covers nothing vital somewhere, else the first one of all; of its places the one that
// covers least, and of those the nearest to `wish`. Another screen is taken rather than cover anything.
QRect panelPlace(const QList<QSize>& sizes, QPoint wish, const Surroundings& around);

// Beside the main window, to its right.
QPoint placeBeside(const QRect& window);

// In the middle of the main window, somewhat above it.
QPoint placeInFront(const QRect& window, QSize panel);

// The main window so that a panel fits beside it and both stand in the middle; none where there is no room for both.
std::optional<QPoint> placeWithRoomBeside(QSize window, QSize panel, const QRect& screen);

}  // namespace qm
