#include "ui/controls/PlayListView.h"

#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "ui/controls/DropMarker.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/NarrowedRows.h"
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

PlayListView::PlayListView(QWidget* parent) : QTableView(parent), m_marker(new DropMarker(viewport())) {
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
    m_keeps = nullptr;
    m_selectedIndex = -1;
    m_list = newModel;
    useModel(newModel);
}

void PlayListView::useModel(QAbstractItemModel* rows) {
    if (model()) disconnect(model(), nullptr, this, nullptr);
    const auto* former = selectionModel();
    NarrowedRows* narrowed = m_narrowed;
    m_narrowed = qobject_cast<NarrowedRows*>(rows);
    m_modelChanging = true;
    QTableView::setModel(rows);
    if (former != selectionModel()) delete former;
    if (narrowed != m_narrowed) delete narrowed;
    m_modelChanging = false;
    if (rows) {
        // The selected index outlives every change of the rows: row 3 stays row 3.
        const auto begins = [this] { m_modelChanging = true; };
        connect(rows, &QAbstractItemModel::modelAboutToBeReset, this, begins);
        connect(rows, &QAbstractItemModel::rowsAboutToBeInserted, this, begins);
        connect(rows, &QAbstractItemModel::rowsAboutToBeRemoved, this, begins);
        connect(rows, &QAbstractItemModel::modelReset, this, &PlayListView::keepSelectedIndex);
        connect(rows, &QAbstractItemModel::rowsInserted, this, &PlayListView::keepSelectedIndex);
        connect(rows, &QAbstractItemModel::rowsRemoved, this, &PlayListView::keepSelectedIndex);
        keepSelectedIndex();
    }
    layOutColumns();
    updateEmptyState();
}

int PlayListView::rowSelectedInView() const {
    if (!selectionModel()) return -1;
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : listRow(rows.first().row());
}

int PlayListView::selectedRow() const {
    if (!isNarrowed()) return rowSelectedInView();
    return m_selectedIndex < rowCount() ? m_selectedIndex : -1;
}

void PlayListView::selectRowIndex(int row) {
    if (!model() || !selectionModel()) return;
    const bool isThere = row >= 0 && row < rowCount();
    const int shown = isThere ? shownRow(row) : -1;
    if (shown < 0) {
        const QScopedValueRollback keepsIndex(m_modelChanging, true);
        clearSelection();
        selectionModel()->clearCurrentIndex();
        m_selectedIndex = isThere ? row : -1;
        return;
    }
    const QModelIndex index = model()->index(shown, columnIndex("IBtrack"));
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_selectedIndex = row;
}

void PlayListView::reloadData() {
    if (!m_list) return;
    if (isNarrowed()) return applyFilter();
    // The same number of rows needs no more than a fresh look. A reset would tell assistive tools of a list that is new
    // and of a cell that has got the focus.
    if (rowCount() == verticalHeader()->count()) {
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
    const int wanted = m_selectedIndex < rowCount() ? m_selectedIndex : -1;
    m_modelChanging = true;
    selectRowIndex(wanted);
    m_selectedIndex = wanted;
    m_modelChanging = false;
    updateEmptyState();
}

void PlayListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (!m_modelChanging) m_selectedIndex = rowSelectedInView();
    viewport()->update();
}

// The focus is told of where the user went, not of a row that is kept through a change of the rows.
void PlayListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    if (hasFocus() && !m_modelChanging)
        QTableView::currentChanged(current, previous);
    else
        QAbstractItemView::currentChanged(current, previous);
}

// --- some of the rows ------------------------------------------------------------------------------------------------

int PlayListView::shownRow(int listRow) const {
    return m_narrowed ? m_narrowed->shownRow(listRow) : listRow;
}

int PlayListView::listRow(int shownRow) const {
    return m_narrowed ? m_narrowed->listRow(shownRow) : shownRow;
}

int PlayListView::listRowAt(const QPoint& place) const {
    const int shown = rowAt(place.y());
    return shown < 0 ? -1 : listRow(shown);
}

int PlayListView::shownCount() const {
    return m_narrowed ? m_narrowed->rowCount() : rowCount();
}

int PlayListView::shownBeside(int row, int step) const {
    if (!m_narrowed) {
        const int beside = row + step;
        return beside >= 0 && beside < rowCount() ? beside : -1;
    }
    const QList<int>& rows = m_narrowed->rows();
    const auto at =
        step > 0 ? std::upper_bound(rows.begin(), rows.end(), row) : std::lower_bound(rows.begin(), rows.end(), row);
    if (step > 0) return at == rows.end() ? -1 : *at;
    return at == rows.begin() ? -1 : *std::prev(at);
}

void PlayListView::showOnly(RowFilter keeps) {
    m_keeps = std::move(keeps);
    if (!m_list || (!m_keeps && !m_narrowed)) return;
    if (!m_keeps) {
        useModel(m_list);
        if (selectedRow() >= 0) scrollTo(currentIndex());
        emit shownWhole();
        return;
    }
    m_countWhenNarrowed = rowCount();
    if (!m_narrowed) {
        auto* rows = new NarrowedRows(this);
        rows->setSourceModel(m_list);
        useModel(rows);
    }
    applyFilter();
}

void PlayListView::showFewer(RowFilter keeps) {
    if (!m_narrowed) return showOnly(std::move(keeps));
    m_keeps = std::move(keeps);
    QList<int> kept;
    for (const int row : m_narrowed->rows())
        if (row < rowCount() && m_keeps(row)) kept << row;
    if (kept != m_narrowed->rows()) m_narrowed->setRows(kept);
    layOutColumns();
}

void PlayListView::applyFilter() {
    if (rowCount() == 0 || rowCount() > m_countWhenNarrowed) return showOnly(nullptr);
    m_countWhenNarrowed = rowCount();
    QList<int> kept;
    for (int row = 0; row < rowCount(); ++row)
        if (m_keeps(row)) kept << row;
    if (kept != m_narrowed->rows()) m_narrowed->setRows(kept);
    keepSelectedIndex();
    layOutColumns();
    viewport()->update();
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
    m_marker->setGeometry(viewport()->rect());
}

void PlayListView::setEmptyState(QWidget* widget) {
    m_emptyState = widget;
    m_emptyState->setParent(viewport());
    m_emptyState->setGeometry(viewport()->rect());
    updateEmptyState();
}

void PlayListView::updateEmptyState() {
    if (m_emptyState) m_emptyState->setVisible(rowCount() == 0);
}

// --- drawing ---------------------------------------------------------------------------------------------------------

void PlayListView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    if (m_focusInRow && hasFocus()) {
        QRectF ringed = viewport()->rect();  // the whole list, as long as no row stands for it
        const int shown = selectedRow() >= 0 ? shownRow(selectedRow()) : -1;
        if (shown >= 0) ringed = QRectF(0, rowViewportPosition(shown), ringed.width(), kRowHeight);
        painter.setPen(QPen(tokens::kFocus, 2));
        painter.drawRect(ringed.adjusted(1, 1, -1, -1));
    }
}

void PlayListView::setHoveredRow(int row) {
    if (m_hoveredRow == row) return;
    m_hoveredRow = row;
    viewport()->update();
}

// --- the user's hand -------------------------------------------------------------------------------------------------

// Below the rows there is nothing to choose, and what is chosen stays.
void PlayListView::mousePressEvent(QMouseEvent* event) {
    m_focusInRow = false;
    endLetters();
    if (!indexAt(event->position().toPoint()).isValid()) return;
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
    m_focusInRow = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                   event->reason() == Qt::ShortcutFocusReason;
    const int row = selectedRow();
    QTableView::focusInEvent(event);
    // Coming here selects nothing, and without a selected row there is no current one.
    if (selectedRow() != row || row < 0 || !isShown(row)) selectRowIndex(row);
    viewport()->update();
}

void PlayListView::focusOutEvent(QFocusEvent* event) {
    QTableView::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) endLetters();
    viewport()->update();
}

// --- drops -----------------------------------------------------------------------------------------------------------

void PlayListView::offerDrag(QDragMoveEvent* event) {
    if (!event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (showsDropMarker()) return;
    m_marker->begin();
    emit filesHover(event->mimeData()->urls());
}

void PlayListView::endDrag() {
    m_marker->hide();
    emit hoverEnded();
}

void PlayListView::dragEnterEvent(QDragEnterEvent* event) {
    offerDrag(event);
}

void PlayListView::dragMoveEvent(QDragMoveEvent* event) {
    offerDrag(event);
}

void PlayListView::dragLeaveEvent(QDragLeaveEvent*) {
    endDrag();
}

bool PlayListView::takeFiles(const QList<QUrl>& files) {
    if (!acceptDrop || !acceptDrop(files)) return false;
    emit filesTaken();
    return true;
}

void PlayListView::dropEvent(QDropEvent* event) {
    dropFiles(event);
}

void PlayListView::dropFiles(QDropEvent* event) {
    endDrag();
    if (!event->mimeData()->hasUrls() || !takeFiles(event->mimeData()->urls())) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

bool PlayListView::showsDropMarker() const {
    return !m_marker->isHidden();
}

}  // namespace qm
