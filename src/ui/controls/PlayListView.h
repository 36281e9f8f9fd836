// The play list's table: read-only, one row selected or none, the loaded track in bold, changed marks in amber, a drop
// marker above the first row. Its model serves the columns and roles below. Main thread only.
#pragma once

#include <QList>
#include <QTableView>
#include <QUrl>
#include <array>
#include <functional>

namespace qm {

enum PlayListRole {
    LoadedTrackRole = Qt::UserRole + 1,  // bool: this row is the loaded track
    ChangedMarkRole,                     // bool: this mark differs from the track's start or end
    WidestTextRole,                      // text, of a column of times: the longest that is in it
};

// Column identifiers in the order of the columns. The icon column serves a QImage or QPixmap as Qt::DecorationRole.
inline constexpr std::array<const char*, 7> kPlayListColumns = {"IBicon",     "IBtrack", "IBartist", "IBalbum",
                                                                "IBduration", "IBmarkA", "IBmarkB"};

class PlayListView : public QTableView {
    Q_OBJECT

public:
    explicit PlayListView(QWidget* parent = nullptr);

    int selectedRow() const;       // -1 none
    void selectRowIndex(int row);  // -1 or an absent row: none
    void reloadData();             // re-reads the model; the same index stays selected, none if it is gone
    int hoveredRow() const { return m_hoveredRow; }
    bool showsDropMarker() const { return m_dropMarker; }
    bool showsFocusInRow() const { return m_focusInRow; }  // the keyboard came here by Tab
    static int columnIndex(const char* identifier);        // -1 if there is none

    // Offered the files of a drop; answers whether it took them.
    std::function<bool(const QList<QUrl>&)> acceptDrop;
    bool takeFiles(const QList<QUrl>& files);  // as if they were dropped

    void setModel(QAbstractItemModel* model) override;
    void keyboardSearch(const QString&) override {}  // single keys belong to the player

    // Shown instead of rows while the list is empty; the view owns it and keeps it in place.
    void setEmptyState(QWidget* widget);

signals:
    void rowActivated();  // Return on a selected row, or a double-click on any row
    void filesTaken();

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseDoubleClickEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    bool viewportEvent(QEvent*) override;
    void focusInEvent(QFocusEvent*) override;
    void focusOutEvent(QFocusEvent*) override;
    void dragEnterEvent(QDragEnterEvent*) override;
    void dragMoveEvent(QDragMoveEvent*) override;
    void dragLeaveEvent(QDragLeaveEvent*) override;
    void dropEvent(QDropEvent*) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    void layOutColumns();
    void keepSelectedIndex();
    void updateEmptyState();
    void offerDrag(QDragMoveEvent* event);
    void setDropMarker(bool shown);
    void setHoveredRow(int row);

    QWidget* m_emptyState = nullptr;
    int m_selectedIndex = -1;  // as the user left it, through resets and insertions of the model
    int m_hoveredRow = -1;
    bool m_modelChanging = false;
    bool m_dropMarker = false;
    bool m_focusInRow = false;
};

}  // namespace qm
