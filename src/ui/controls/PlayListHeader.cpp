#include "ui/controls/PlayListHeader.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kHeight = 26;
constexpr double kLineTop = 3.5, kLineHeight = 18;
const QColor kGround(255, 255, 255, 8);

void paintLine(QPainter& painter, const QRect& header) {
    const double line = hairline(painter);
    painter.fillRect(onPixels(painter, QRectF(0, header.height() - line, header.width(), line)), tokens::kLine);
}

}  // namespace

PlayListCell playListCell(int column) {
    const bool numeric = column >= PlayListView::columnIndex("IBduration");
    const bool last = column == static_cast<int>(kPlayListColumns.size()) - 1;
    return {6, last ? 14 : 6, numeric};
}

QFont playListTimeFont() {
    return uiFont(12.5);
}

PlayListHeader::PlayListHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionResizeMode(QHeaderView::Fixed);
    setSectionsClickable(false);
    setHighlightSections(false);
    setMinimumSectionSize(1);
    setFixedHeight(kHeight);
    setFocusPolicy(Qt::NoFocus);
}

QSize PlayListHeader::sizeHint() const {
    return {100, kHeight};
}

PlayListHeaderEnd::PlayListHeaderEnd(QWidget* parent) : QWidget(parent) {
    setFixedHeight(kHeight);
}

void PlayListHeaderEnd::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kGround);
    paintLine(painter, rect());
}

void PlayListHeader::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    // The upper corners follow the card's own.
    const double radius = tokens::kCardRadius - 1;
    QPainterPath ground;
    ground.addRoundedRect(QRectF(0, 0, width(), height() + radius), radius, radius);
    painter.setClipRect(viewport()->rect());
    painter.fillPath(ground, kGround);
    paintLine(painter, rect());

    painter.setPen(tokens::kText2);
    for (int column = 0; model() && column < count(); ++column) {
        const PlayListCell cell = playListCell(column);
        const QRectF text(sectionViewportPosition(column) + cell.left, kLineTop,
                          sectionSize(column) - cell.left - cell.right, kLineHeight);
        painter.setFont(uiFont(cell.numeric ? 12.5 : 11.5, 500));
        const QString title = model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        drawLine(painter, text, cell.numeric ? Qt::AlignRight : Qt::AlignLeft, title);
    }
}

}  // namespace qm
