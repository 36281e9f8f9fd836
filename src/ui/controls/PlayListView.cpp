#include "ui/controls/PlayListView.h"

#include <QDragEnterEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "ui/controls/Fonts.h"
#include "ui/controls/PlayListDelegate.h"
#include "ui/controls/PlayListHeader.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kRowHeight = 25;
constexpr int kIconWidth = 34;
constexpr int kTimeWidth = 64;  // and more for times of an hour and longer
constexpr int kLastWidth = 70;
constexpr double kTitleParts = 1.55, kAllParts = 3.55;

// Of a column of times.
int timeWidth(const QAbstractItemModel& model, const char* identifier, int least) {
    const int column = PlayListView::columnIndex(identifier);
    const PlayListCell cell = playListCell(column);
    const QString widest = model.headerData(column, Qt::Horizontal, WidestTextRole).toString();
    return std::max(least, static_cast<int>(std::ceil(textWidth(playListTimeFont(), widest))) + cell.left + cell.right);
}

}  // namespace

PlayListView::PlayListView(QWidget* parent) : QTableView(parent) {
    setHorizontalHeader(new PlayListHeader(this));
    addScrollBarWidget(new PlayListHeaderEnd, Qt::AlignTop);
    setItemDelegate(new PlayListDelegate(this));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(kRowHeight);
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setMouseTracking(true);
    setAcceptDrops(true);
    setDragDropMode(DropOnly);
    setDropIndicatorShown(false);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    horizontalHeader()->viewport()->setAutoFillBackground(false);
    // The delegate draws the selection.
    QPalette clear = palette();
    clear.setColor(QPalette::Highlight, Qt::transparent);
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
}

int PlayListView::columnIndex(const char* identifier) {
    const auto found = std::find_if(kPlayListColumns.begin(), kPlayListColumns.end(),
                                    [&](const char* name) { return std::strcmp(name, identifier) == 0; });
    return found == kPlayListColumns.end() ? -1 : static_cast<int>(found - kPlayListColumns.begin());
}

// --- model and selection ---------------------------------------------------------------------------------------------

void PlayListView::setModel(QAbstractItemModel* newModel) {
    if (model()) disconnect(model(), nullptr, this, nullptr);
    QTableView::setModel(newModel);
    m_selectedIndex = -1;
    if (newModel) {
        // The selected index outlives every change of the rows: row 3 stays row 3.
        const auto begins = [this] { m_modelChanging = true; };
        connect(newModel, &QAbstractItemModel::modelAboutToBeReset, this, begins);
        connect(newModel, &QAbstractItemModel::rowsAboutToBeInserted, this, begins);
        connect(newModel, &QAbstractItemModel::rowsAboutToBeRemoved, this, begins);
        connect(newModel, &QAbstractItemModel::modelReset, this, &PlayListView::keepSelectedIndex);
        connect(newModel, &QAbstractItemModel::rowsInserted, this, &PlayListView::keepSelectedIndex);
        connect(newModel, &QAbstractItemModel::rowsRemoved, this, &PlayListView::keepSelectedIndex);
    }
    layOutColumns();
    updateEmptyState();
}

int PlayListView::selectedRow() const {
    if (!selectionModel()) return -1;
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void PlayListView::selectRowIndex(int row) {
    if (!model() || !selectionModel()) return;
    if (row < 0 || row >= model()->rowCount()) {
        clearSelection();
        selectionModel()->clearCurrentIndex();
        return;
    }
    const QModelIndex index = model()->index(row, columnIndex("IBtrack"));
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void PlayListView::reloadData() {
    if (!model()) return;
    // The same number of rows needs no more than a fresh look. A reset would tell assistive tools of a list that is new
    // and of a cell that has got the focus.
    if (model()->rowCount() == verticalHeader()->count()) {
        layOutColumns();
        return viewport()->update();
    }
    m_modelChanging = true;
    const int scrolled = verticalScrollBar()->value();
    verticalHeader()->reset();
    reset();
    keepSelectedIndex();
    layOutColumns();
    updateGeometries();
    verticalScrollBar()->setValue(scrolled);
    viewport()->update();
}

void PlayListView::keepSelectedIndex() {
    const int wanted = m_selectedIndex < model()->rowCount() ? m_selectedIndex : -1;
    selectRowIndex(wanted);
    m_selectedIndex = wanted;
    m_modelChanging = false;
    updateEmptyState();
}

void PlayListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (!m_modelChanging) m_selectedIndex = selectedRow();
    viewport()->update();
}

// The focus is told of where the user went, not of a row that is kept through a change of the rows.
void PlayListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    if (hasFocus() && !m_modelChanging)
        QTableView::currentChanged(current, previous);
    else
        QAbstractItemView::currentChanged(current, previous);
}

// --- layout ----------------------------------------------------------------------------------------------------------

void PlayListView::layOutColumns() {
    if (!model() || horizontalHeader()->count() != static_cast<int>(kPlayListColumns.size())) return;
    const int duration = timeWidth(*model(), "IBduration", kTimeWidth);
    const int markA = timeWidth(*model(), "IBmarkA", kTimeWidth);
    const int markB = timeWidth(*model(), "IBmarkB", kLastWidth);
    const int fixed = kIconWidth + duration + markA + markB;
    const double part = std::max(0, viewport()->width() - fixed) / kAllParts;
    // Edges are rounded, not widths, so that the columns always fill the view.
    const std::array<double, 7> widths = {kIconWidth,       kTitleParts * part, part,         part,
                                          double(duration), double(markA),      double(markB)};
    double edge = 0;
    for (size_t column = 0; column < widths.size(); ++column) {
        const double next = edge + widths[column];
        horizontalHeader()->resizeSection(static_cast<int>(column),
                                          static_cast<int>(std::lround(next) - std::lround(edge)));
        edge = next;
    }
}

void PlayListView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    layOutColumns();
    if (m_emptyState) m_emptyState->setGeometry(viewport()->rect());
}

void PlayListView::setEmptyState(QWidget* widget) {
    m_emptyState = widget;
    m_emptyState->setParent(viewport());
    m_emptyState->setGeometry(viewport()->rect());
    updateEmptyState();
}

void PlayListView::updateEmptyState() {
    if (m_emptyState) m_emptyState->setVisible(!model() || model()->rowCount() == 0);
}

// --- drawing ---------------------------------------------------------------------------------------------------------

void PlayListView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    if (m_focusInRow && hasFocus()) {
        QRectF ringed = viewport()->rect();  // the whole list, as long as no row stands for it
        if (selectedRow() >= 0) ringed = QRectF(0, rowViewportPosition(selectedRow()), ringed.width(), kRowHeight);
        painter.setPen(QPen(tokens::kFocus, 2));
        painter.drawRect(ringed.adjusted(1, 1, -1, -1));
    }
    if (!m_dropMarker) return;
    painter.setPen(QPen(tokens::kAqua, 2));
    painter.drawRect(QRectF(viewport()->rect()).adjusted(1, 1, -1, -1));
    painter.fillRect(QRect(0, 0, viewport()->width(), 2), tokens::kAqua);
}

void PlayListView::setHoveredRow(int row) {
    if (m_hoveredRow == row) return;
    m_hoveredRow = row;
    viewport()->update();
}

// --- the user's hand -------------------------------------------------------------------------------------------------

void PlayListView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            if (selectedRow() < 0) return selectRowIndex(0);
            QTableView::keyPressEvent(event);
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (event->modifiers() & ~Qt::KeypadModifier) break;
            if (selectedRow() >= 0) emit rowActivated();
            return;
        default:
            break;
    }
    event->ignore();
}

void PlayListView::mousePressEvent(QMouseEvent* event) {
    m_focusInRow = false;
    QTableView::mousePressEvent(event);
}

void PlayListView::mouseDoubleClickEvent(QMouseEvent* event) {
    QTableView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid()) emit rowActivated();
}

void PlayListView::mouseMoveEvent(QMouseEvent* event) {
    setHoveredRow(rowAt(event->position().toPoint().y()));
    QTableView::mouseMoveEvent(event);
}

bool PlayListView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) setHoveredRow(-1);
    return QTableView::viewportEvent(event);
}

void PlayListView::focusInEvent(QFocusEvent* event) {
    m_focusInRow = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    const int row = selectedRow();
    QTableView::focusInEvent(event);
    // Coming here selects nothing, and without a selected row there is no current one.
    if (selectedRow() != row || row < 0) selectRowIndex(row);
    viewport()->update();
}

void PlayListView::focusOutEvent(QFocusEvent* event) {
    QTableView::focusOutEvent(event);
    viewport()->update();
}

// --- drops: any drag that carries files is answered with copy and shown above row 0
// -----------------------------------

void PlayListView::offerDrag(QDragMoveEvent* event) {
    if (!event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    setDropMarker(true);
}

void PlayListView::dragEnterEvent(QDragEnterEvent* event) {
    offerDrag(event);
}

void PlayListView::dragMoveEvent(QDragMoveEvent* event) {
    offerDrag(event);
}

void PlayListView::dragLeaveEvent(QDragLeaveEvent*) {
    setDropMarker(false);
}

bool PlayListView::takeFiles(const QList<QUrl>& files) {
    if (!acceptDrop || !acceptDrop(files)) return false;
    emit filesTaken();
    return true;
}

void PlayListView::dropEvent(QDropEvent* event) {
    setDropMarker(false);
    if (!event->mimeData()->hasUrls() || !takeFiles(event->mimeData()->urls())) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void PlayListView::setDropMarker(bool shown) {
    if (m_dropMarker == shown) return;
    m_dropMarker = shown;
    viewport()->update();
}

}  // namespace qm
