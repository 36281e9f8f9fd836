// The play list's table: read-only, one row selected or none, the loaded track in bold, changed marks in amber, a drop
// marker above the first row. Its model serves the columns and roles below. It may show some of the rows only; rows are
// always told by their number in the whole list. Main thread only.
#pragma once

#include <QList>
#include <QTableView>
#include <QUrl>
#include <array>
#include <functional>

#include "ui/controls/TypeAhead.h"

class QDragMoveEvent;
class QDropEvent;

namespace qm {

class DropMarker;
class NarrowedRows;

enum PlayListRole {
    LoadedTrackRole = Qt::UserRole + 1,  // bool: this row is the loaded track
    ChangedMarkRole,                     // bool: this mark differs from the track's start or end
    FailedTrackRole,                     // bool: this row's file gave no track when it was last to be loaded
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
    bool showsDropMarker() const;
    DropMarker& dropMarker() { return *m_marker; }
    int listRowAt(const QPoint& place) const;  // of the viewport; -1 none

    // Shows the rows that `keeps` keeps, empty: all of them. The selected row stays selected, shown or not. A list that
    // grows is shown whole again, for what was added is to be seen.
    using RowFilter = std::function<bool(int row)>;
    void showOnly(RowFilter keeps);
    void showFewer(RowFilter keeps);  // the same, where none comes back that is not shown now
    bool isNarrowed() const { return m_narrowed != nullptr; }
    bool isShown(int row) const { return shownRow(row) >= 0; }
    int shownCount() const;
    int shownBeside(int row, int step) const;  // the next one that is shown above (-1) or below (1); -1 none

    // While it takes letters they lead to titles, and Home to the first row; otherwise they are the player's keys.
    void takeLetters();
    bool takesLetters() const { return m_takesLetters; }

    bool showsFocusInRow() const { return m_focusInRow; }  // the keyboard came here by Tab
    static int columnIndex(const char* identifier);        // -1 if there is none

    // Offered the files of a drop; answers whether it took them.
    std::function<bool(const QList<QUrl>&)> acceptDrop;
    bool takeFiles(const QList<QUrl>& files);  // as if they were dropped

    // A drag over the list or over what stands around it. Any drag that carries files is answered with copy.
    void offerDrag(QDragMoveEvent* event);
    void endDrag();
    void dropFiles(QDropEvent* event);

    void setModel(QAbstractItemModel* model) override;
    void keyboardSearch(const QString&) override {}  // single keys belong to the player

    // Shown instead of rows while the list is empty; the view owns it and keeps it in place.
    void setEmptyState(QWidget* widget);

signals:
    void rowActivated();  // Return on a selected row, or a double-click on any row
    void filesTaken();
    void filesHover(const QList<QUrl>& files);  // once for each drag that comes in
    void hoverEnded();
    void shownWhole();                        // it was narrowed, and is not any more
    void lettersEnded();                      // they are the player's keys again
    void noTitleBegins(const QString& with);  // what was typed leads nowhere

protected:
    bool event(QEvent* event) override;
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
    int rowCount() const { return m_list ? m_list->rowCount() : 0; }
    int shownRow(int listRow) const;  // -1: out of sight
    int listRow(int shownRow) const;
    int rowSelectedInView() const;
    void useModel(QAbstractItemModel* rows);
    void applyFilter();
    bool isLetterOfTitle(const QKeyEvent& event) const;
    void findTitle();
    void endLetters();
    bool moveByKey(const QKeyEvent& event);
    void layOutColumns();
    void keepSelectedIndex();
    void updateEmptyState();
    void setHoveredRow(int row);

    QAbstractItemModel* m_list = nullptr;
    NarrowedRows* m_narrowed = nullptr;  // while not all rows are shown
    RowFilter m_keeps;
    int m_countWhenNarrowed = 0;
    TypeAhead m_typeAhead;
    bool m_takesLetters = false;
    QWidget* m_emptyState = nullptr;
    DropMarker* m_marker;
    int m_selectedIndex = -1;  // as the user left it, through resets and insertions of the model
    int m_hoveredRow = -1;
    bool m_modelChanging = false;
    bool m_focusInRow = false;
};

}  // namespace qm
