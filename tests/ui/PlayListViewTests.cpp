#include <doctest/doctest.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QStringListModel>
#include <QUrl>

#include "support/widgets/Gestures.h"
#include "ui/controls/PlayListView.h"

using namespace qm;

namespace {

class Rows : public QAbstractTableModel {
public:
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count; }
    int columnCount(const QModelIndex& = {}) const override { return static_cast<int>(kPlayListColumns.size()); }
    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? QVariant(QString::number(index.row())) : QVariant();
    }
    void insertAbove() {
        beginInsertRows({}, 0, 0);
        ++count;
        endInsertRows();
    }
    void reset(int rows) {
        beginResetModel();
        count = rows;
        endResetModel();
    }
    int count = 5;
};

struct ShownList {
    ShownList() {
        view.setModel(&rows);
        view.resize(630, 226);
        view.show();
        QObject::connect(&view, &PlayListView::rowActivated, &view, [this] { ++activations; });
    }
    QPointF row(int index) { return {100.0, view.rowViewportPosition(index) + 12.0}; }

    Rows rows;
    PlayListView view;
    int activations = 0;
};

template <typename Event>
bool sendDrag(PlayListView& view, const QMimeData& data) {
    Event event(QPoint(50, 60), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(false);
    QApplication::sendEvent(view.viewport(), &event);
    if (event.isAccepted()) CHECK(event.dropAction() == Qt::CopyAction);
    return event.isAccepted();
}

bool sendDrop(PlayListView& view, const QMimeData& data) {
    QDropEvent event(QPointF(50, 60), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &event);
    return event.isAccepted();
}

}  // namespace

TEST_CASE("a click below the rows takes nothing out of the selection") {
    ShownList list;
    list.rows.reset(2);
    list.view.reloadData();
    clickMouse(*list.view.viewport(), list.row(1));
    REQUIRE(list.view.selectedRow() == 1);
    clickMouse(*list.view.viewport(), list.row(1) + QPointF(0, 60));
    CHECK(list.view.selectedRow() == 1);
    CHECK(list.view.currentIndex().row() == 1);
    clickMouse(*list.view.viewport(), list.row(0));
    CHECK(list.view.selectedRow() == 0);
}

TEST_CASE("the selected row is none until one is chosen, and none again for a row that does not exist") {
    ShownList list;
    CHECK(list.view.selectedRow() == -1);
    list.view.selectRowIndex(3);
    CHECK(list.view.selectedRow() == 3);
    list.view.selectRowIndex(5);
    CHECK(list.view.selectedRow() == -1);
    list.view.selectRowIndex(2);
    list.view.selectRowIndex(-1);
    CHECK(list.view.selectedRow() == -1);
}

TEST_CASE("reloading keeps the selected index, and none if it is gone") {
    ShownList list;
    list.view.selectRowIndex(3);
    list.rows.count = 6;
    list.view.reloadData();
    CHECK(list.view.selectedRow() == 3);
    CHECK(list.view.verticalHeader()->count() == 6);
    list.rows.count = 3;
    list.view.reloadData();
    CHECK(list.view.selectedRow() == -1);
    list.rows.count = 6;
    list.view.reloadData();
    CHECK(list.view.selectedRow() == -1);
}

TEST_CASE("a row inserted above or a reset of the model leaves the selected index where it is") {
    ShownList list;
    list.view.selectRowIndex(3);
    list.rows.insertAbove();
    CHECK(list.view.selectedRow() == 3);
    list.rows.reset(10);
    CHECK(list.view.selectedRow() == 3);
    list.rows.reset(2);
    CHECK(list.view.selectedRow() == -1);
}

TEST_CASE("a click selects, a double-click and return start the row, and an empty place does neither") {
    ShownList list;
    clickMouse(*list.view.viewport(), list.row(1));
    CHECK(list.view.selectedRow() == 1);
    CHECK(list.activations == 0);
    doubleClickMouse(*list.view.viewport(), list.row(1));
    CHECK(list.activations == 1);
    CHECK(pressKey(list.view, Qt::Key_Return));
    CHECK(list.activations == 2);
    doubleClickMouse(*list.view.viewport(), {100, 190});
    CHECK(list.activations == 2);
    list.view.selectRowIndex(-1);
    pressKey(list.view, Qt::Key_Return);
    CHECK(list.activations == 2);
}

TEST_CASE("the list owns up and down and leaves letters, space and left and right to the player") {
    ShownList list;
    list.view.selectRowIndex(1);
    pressKey(list.view, Qt::Key_Down);
    CHECK(list.view.selectedRow() == 2);
    pressKey(list.view, Qt::Key_Up);
    CHECK(list.view.selectedRow() == 1);
    for (const int key :
         {Qt::Key_Space, Qt::Key_Left, Qt::Key_Right, Qt::Key_A, Qt::Key_L, Qt::Key_Home, Qt::Key_Delete})
        CHECK_FALSE(pressKey(list.view, key));
    CHECK(list.view.selectedRow() == 1);
}

TEST_CASE("columns fill the view, times at fixed widths") {
    ShownList list;
    int whole = 0;
    for (int column = 0; column < 7; ++column) whole += list.view.columnWidth(column);
    CHECK(whole == list.view.viewport()->width());
    CHECK(list.view.columnWidth(PlayListView::columnIndex("IBicon")) == 34);
    CHECK(list.view.columnWidth(PlayListView::columnIndex("IBduration")) == 64);
    CHECK(list.view.columnWidth(PlayListView::columnIndex("IBmarkA")) == 64);
    CHECK(list.view.columnWidth(PlayListView::columnIndex("IBmarkB")) == 70);
    CHECK(list.view.columnWidth(PlayListView::columnIndex("IBtrack")) == 174);
    CHECK(list.view.rowHeight(0) == 25);
}

TEST_CASE("the columns have their identifiers in order and no other") {
    CHECK(PlayListView::columnIndex("IBicon") == 0);
    CHECK(PlayListView::columnIndex("IBtrack") == 1);
    CHECK(PlayListView::columnIndex("IBmarkB") == 6);
    CHECK(PlayListView::columnIndex("track") == -1);
}

TEST_CASE("any drag of files is answered with copy and marked above the first row, whatever the files are") {
    ShownList list;
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/notes.txt"))});
    CHECK(sendDrag<QDragEnterEvent>(list.view, files));
    CHECK(list.view.showsDropMarker());
    CHECK(sendDrag<QDragMoveEvent>(list.view, files));
    QDragLeaveEvent leave;
    QApplication::sendEvent(list.view.viewport(), &leave);
    CHECK_FALSE(list.view.showsDropMarker());
    QMimeData text;
    text.setText(QStringLiteral("words"));
    CHECK_FALSE(sendDrag<QDragEnterEvent>(list.view, text));
    CHECK_FALSE(list.view.showsDropMarker());
}

TEST_CASE("a drop hands over its files and is taken or refused as the owner says") {
    ShownList list;
    QList<QUrl> offered;
    bool takes = true;
    list.view.acceptDrop = [&](const QList<QUrl>& urls) {
        offered = urls;
        return takes;
    };
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.mp3")), QUrl::fromLocalFile(QStringLiteral("/b.mp3"))});
    sendDrag<QDragEnterEvent>(list.view, files);
    CHECK(sendDrop(list.view, files));
    CHECK(offered == files.urls());
    CHECK_FALSE(list.view.showsDropMarker());
    takes = false;
    sendDrag<QDragEnterEvent>(list.view, files);
    CHECK_FALSE(sendDrop(list.view, files));
    offered.clear();
    QMimeData text;
    text.setText(QStringLiteral("words"));
    CHECK_FALSE(sendDrop(list.view, text));
    CHECK(offered.isEmpty());
}

TEST_CASE("the empty state is shown exactly while there are no rows") {
    ShownList list;
    auto* empty = new QWidget;
    list.view.setEmptyState(empty);
    CHECK(empty->isHidden());
    list.rows.count = 0;
    list.view.reloadData();
    CHECK_FALSE(empty->isHidden());
    CHECK(empty->size() == list.view.viewport()->size());
    list.rows.reset(1);
    CHECK(empty->isHidden());
}
