// Some of the rows of a list, in their order, as a model for its view. It holds their numbers only; the list itself is
// untouched. Main thread only.
#pragma once

#include <QAbstractProxyModel>
#include <QList>

namespace qm {

class NarrowedRows : public QAbstractProxyModel {
    Q_OBJECT

public:
    using QAbstractProxyModel::QAbstractProxyModel;

    void setRows(QList<int> rows);  // of the list, ascending
    const QList<int>& rows() const { return m_rows; }
    int listRow(int shown) const { return m_rows.value(shown, -1); }
    int shownRow(int listRow) const;  // -1: it is not shown

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex&) const override { return {}; }
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QModelIndex mapToSource(const QModelIndex& shown) const override;
    QModelIndex mapFromSource(const QModelIndex& inList) const override;

private:
    QList<int> m_rows;
};

}  // namespace qm
