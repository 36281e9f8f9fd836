#include "ui/controls/NarrowedRows.h"

#include <algorithm>
#include <utility>

namespace qm {

void NarrowedRows::setRows(QList<int> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int NarrowedRows::shownRow(int listRow) const {
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), listRow);
    return found != m_rows.end() && *found == listRow ? static_cast<int>(found - m_rows.begin()) : -1;
}

QModelIndex NarrowedRows::index(int row, int column, const QModelIndex& parent) const {
    const bool isThere = !parent.isValid() && row >= 0 && row < rowCount() && column >= 0 && column < columnCount();
    return isThere ? createIndex(row, column) : QModelIndex();
}

int NarrowedRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int NarrowedRows::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || !sourceModel() ? 0 : sourceModel()->columnCount();
}

QModelIndex NarrowedRows::mapToSource(const QModelIndex& shown) const {
    return shown.isValid() && sourceModel() ? sourceModel()->index(listRow(shown.row()), shown.column())
                                            : QModelIndex();
}

QModelIndex NarrowedRows::mapFromSource(const QModelIndex& inList) const {
    return inList.isValid() ? index(shownRow(inList.row()), inList.column()) : QModelIndex();
}

}  // namespace qm
