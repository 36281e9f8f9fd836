#include "ui/windows/PanelPlace.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace qm {

namespace {

// Compared member by member: the covered area first, then the distance from the wished place.
using Cost = std::tuple<qint64, qint64, qsizetype, qint64>;

struct Choice {
    QRect place;
    Cost cost;
};

qint64 covered(const QRect& place, const QList<QRect>& parts) {
    qint64 pixels = 0;
    for (const QRect& part : parts) {
        const QRect both = place.intersected(part);
        if (!both.isEmpty()) pixels += qint64(both.width()) * both.height();
    }
    return pixels;
}

// Panels keep a distance from each other.
QList<QRect> withGap(const QList<QRect>& panels) {
    QList<QRect> wider;
    for (const QRect& panel : panels) wider.append(panel.adjusted(-kWindowGap, -kWindowGap, kWindowGap, kWindowGap));
    return wider;
}

// The offsets at which a panel of that length begins or ends where something else does, as far as the screen allows.
std::vector<int> offsets(int wish, int length, int from, int to, const std::vector<std::pair<int, int>>& edges) {
    std::vector<int> all{wish, from, to - length};
    for (const auto& [begin, end] : edges)
        for (const int offset :
             {begin - length, begin - length - kWindowGap, end, end + kWindowGap, begin, end - length})
            all.push_back(offset);
    const int last = std::max(from, to - length);
    for (int& offset : all) offset = std::clamp(offset, from, last);
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

qint64 squaredDistance(QPoint a, QPoint b) {
    const qint64 x = a.x() - b.x(), y = a.y() - b.y();
    return x * x + y * y;
}

Choice bestOnScreens(QSize size, QPoint wish, const Surroundings& around) {
    const QList<QRect> panels = withGap(around.panels);
    std::vector<std::pair<int, int>> across, down;
    for (const QRect& rect : QList<QRect>{around.window} + around.vital + around.useful + panels) {
        across.emplace_back(rect.x(), rect.x() + rect.width());
        down.emplace_back(rect.y(), rect.y() + rect.height());
    }
    std::optional<Choice> best;
    for (qsizetype number = 0; number < around.screens.size(); ++number) {
        const QRect& screen = around.screens[number];
        const QSize fitting = size.boundedTo(screen.size());
        const auto xs = offsets(wish.x(), fitting.width(), screen.x(), screen.x() + screen.width(), across);
        const auto ys = offsets(wish.y(), fitting.height(), screen.y(), screen.y() + screen.height(), down);
        for (const int x : xs) {
            for (const int y : ys) {
                const QRect place(QPoint(x, y), fitting);
                const Cost cost{covered(place, around.vital) + covered(place, panels), covered(place, around.useful),
                                number, squaredDistance(place.topLeft(), wish)};
                if (!best || cost < best->cost) best = Choice{place, cost};
            }
        }
    }
    return best.value_or(Choice{QRect(wish, size), {}});
}

}  // namespace

QRect panelPlace(const QList<QSize>& sizes, QPoint wish, const Surroundings& around) {
    std::optional<Choice> first;
    for (const QSize& size : sizes) {
        const Choice choice = bestOnScreens(size, wish, around);
        if (std::get<0>(choice.cost) == 0) return choice.place;
        if (!first) first = choice;
    }
    return first ? first->place : QRect();
}

QPoint placeBeside(const QRect& window) {
    return {window.x() + window.width() + kWindowGap, window.y()};
}

QPoint placeInFront(const QRect& window, QSize panel) {
    return {window.x() + (window.width() - panel.width()) / 2, window.y() + (window.height() - panel.height()) / 3};
}

std::optional<QPoint> placeWithRoomBeside(QSize window, QSize panel, const QRect& screen) {
    const int both = window.width() + kWindowGap + panel.width();
    if (both > screen.width() || window.height() > screen.height()) return std::nullopt;
    return QPoint(screen.x() + (screen.width() - both) / 2, screen.y() + (screen.height() - window.height()) / 2);
}

}  // namespace qm
