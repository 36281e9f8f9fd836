#include "ui/controls/PlayListDelegate.h"

#include <QPainter>
#include <QPixmapCache>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/PlayListHeader.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kRowHeight = 25;
constexpr int kIconSize = 22;
constexpr int kBarWidth = 3;
constexpr double kLineTop = 3.5, kLineHeight = 18;
constexpr int kUnsetAlpha = 150;  // of a mark that says nothing

QColor mix(const QColor& color, int alpha) {
    QColor result = color;
    result.setAlpha(alpha);
    return result;
}

QPixmap scaledIcon(const QImage& image, int pixels) {
    const QString key = QStringLiteral("qm:row:%1:%2").arg(image.cacheKey()).arg(pixels);
    QPixmap icon;
    if (QPixmapCache::find(key, &icon)) return icon;
    icon = QPixmap::fromImage(image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    QPixmapCache::insert(key, icon);
    return icon;
}

QColor textColor(const QModelIndex& index, bool selected) {
    if (index.data(ChangedMarkRole).toBool()) return tokens::kAmberHigh;
    if (index.column() >= PlayListView::columnIndex("IBmarkA")) return mix(tokens::kText3, kUnsetAlpha);
    if (index.column() == PlayListView::columnIndex("IBtrack"))
        return index.data(LoadedTrackRole).toBool() ? tokens::kWhite : tokens::kRowText;
    return selected ? tokens::kSelectedText2 : tokens::kText2;
}

}  // namespace

PlayListDelegate::PlayListDelegate(PlayListView* view) : QStyledItemDelegate(view), m_view(view) {}

QSize PlayListDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {10, kRowHeight};
}

void PlayListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const bool selected = option.state & QStyle::State_Selected;
    painter->save();
    paintGround(*painter, option.rect, index, selected);
    if (index.column() == PlayListView::columnIndex("IBicon"))
        paintIcon(*painter, option.rect, index);
    else
        paintText(*painter, option.rect, index, selected);
    painter->restore();
}

void PlayListDelegate::paintGround(QPainter& painter, const QRect& cell, const QModelIndex& index,
                                   bool selected) const {
    const bool active = m_view->hasFocus();
    if (selected)
        painter.fillRect(cell, active ? mix(tokens::kAqua, 51) : QColor(255, 255, 255, 28));
    else if (index.row() == m_view->hoveredRow())
        painter.fillRect(cell, QColor(255, 255, 255, 15));
    else if (index.row() % 2 == 1)
        painter.fillRect(cell, QColor(255, 255, 255, 6));
    if (!selected || index.column() != 0) return;
    painter.fillRect(QRect(cell.left(), cell.top(), kBarWidth, cell.height()),
                     active ? tokens::kAqua : tokens::kNeutralBar);
}

void PlayListDelegate::paintIcon(QPainter& painter, const QRect& cell, const QModelIndex& index) const {
    const auto image = index.data(Qt::DecorationRole).value<QImage>();
    if (image.isNull()) return;
    const double scale = painter.deviceTransform().m22();
    QPixmap icon = scaledIcon(image, qRound(kIconSize * scale));
    icon.setDevicePixelRatio(scale);
    const QRectF target(cell.left() + 6, cell.top() + (kRowHeight - kIconSize) / 2.0, kIconSize, kIconSize);
    painter.drawPixmap(onPixels(painter, target).topLeft(), icon);
}

void PlayListDelegate::paintText(QPainter& painter, const QRect& cell, const QModelIndex& index, bool selected) const {
    const PlayListCell layout = playListCell(index.column());
    const QRectF area =
        QRectF(cell).adjusted(layout.left, kLineTop, -layout.right, kLineTop + kLineHeight - kRowHeight);
    const bool name = index.column() == PlayListView::columnIndex("IBtrack");
    painter.setPen(textColor(index, selected));
    const bool loaded = name && index.data(LoadedTrackRole).toBool();
    painter.setFont(layout.numeric ? playListTimeFont() : uiFont(13, loaded ? 600 : 400));
    const QString text = index.data(Qt::DisplayRole).toString();
    if (layout.numeric) {
        drawLine(painter, area, Qt::AlignRight, text);
        return;
    }
    drawLine(painter, area, Qt::AlignLeft, elidedText(painter.font(), text, area.width()));
}

}  // namespace qm
