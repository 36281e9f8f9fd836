// The play list's column titles, drawn in the window's own look. Main thread only.
#pragma once

#include <QHeaderView>

namespace qm {

class PlayListHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit PlayListHeader(QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;
};

// The header's end above a scroll bar.
class PlayListHeaderEnd : public QWidget {
    Q_OBJECT

public:
    explicit PlayListHeaderEnd(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent*) override;
};

// Where a column's text stands: the space at its left and right inside the cell, and whether it is set to the right.
struct PlayListCell {
    int left;
    int right;
    bool numeric;
};
PlayListCell playListCell(int column);
QFont playListTimeFont();

}  // namespace qm
