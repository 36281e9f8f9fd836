// Draws the rows of the play list: alternate grounds, the selection's wash and bar, the loaded track in bold, changed
// marks in amber, tracks that could not be loaded faint, steady digits. Main thread only.
#pragma once

#include <QStyledItemDelegate>

namespace qm {

class PlayListView;

class PlayListDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit PlayListDelegate(PlayListView* view);
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override;

private:
    void paintGround(QPainter& painter, const QRect& cell, const QModelIndex& index, bool selected) const;
    void paintIcon(QPainter& painter, const QRect& cell, const QModelIndex& index) const;
    void paintText(QPainter& painter, const QRect& cell, const QModelIndex& index, bool selected) const;

    PlayListView* m_view;
};

}  // namespace qm
