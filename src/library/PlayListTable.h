// The play list's table: the model of its view, and the user's operations on rows. Holds no data of its own: every cell
// is read from the arrays when it is shown, so that 100 000 rows cost no more than the visible ones. Main thread only.
// Without a selected row an operation does nothing. What was removed can be undone.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>
#include <functional>

#include "app/PlayerState.h"
#include "library/LoadedTrack.h"
#include "library/PlayListArrays.h"
#include "library/TrackInfo.h"
#include "library/TrackLoader.h"
#include "player/AbLoop.h"
#include "player/UndoHistory.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PlayListTable : public QAbstractTableModel {
    Q_OBJECT

public:
    // Shows a warning with these buttons; answers 1000 for the first of them, 1001 for the second.
    using RunAlert = std::function<int(const QString& message, const QStringList& buttons)>;

    PlayListTable(
        Uses<const CurrentMovie, const LoadedFile, PlayState, const SpeedState, ChosenRow, const TrackIcons> state,
        PlayListArrays& list,
        Uses<const PlayListOutlet, const TrackTotalOutlet, const MainWindowOutlet, const TransportButtons> outlets,
        TrackLoader& loader, AbLoop& loop, TrackInfo& info, UndoHistory& history);

    // The data source, for the table `playList` only. The row count also refreshes trackTotal.
    int numberOfRowsInTableView(const QObject* table) const;
    QVariant tableViewObjectValueForTableColumnRow(const QObject* table, const QString& column, int row) const;
    void tableViewSelectionDidChange() {}  // a single click only selects

    void selectTrack();
    void rowDoubleClicked();
    void removeListEntry();
    void clearList();

    void bringBackList(const PlayListArrays& rows);  // in place of the list as it is

    void setRunAlert(RunAlert run) { m_runAlert = std::move(run); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QVariant objectValue(const QString& column, int row) const;
    QVariant icon(int row) const;
    QString spokenCell(const QString& column, int row) const;  // to assistive tools
    QString widestTime() const;
    bool isLoadedTrack(int row) const;
    bool isChangedMark(const QString& column, int row) const;
    void refreshTrackTotal() const;
    void putBackEntry(const PlayListEntry& entry, int rowsBelow, bool wasLoaded);
    void putBackRows(int index, const PlayListArrays& rows);
    bool holdsLoadedFile(int row) const;

    const CurrentMovie& m_movie;
    const LoadedFile& m_file;
    PlayState& m_play;
    const SpeedState& m_speedState;
    ChosenRow& m_chosen;
    const TrackIcons& m_icons;
    PlayListArrays& m_list;
    const PlayListOutlet& m_listOutlet;
    const TrackTotalOutlet& m_total;
    const MainWindowOutlet& m_window;
    const TransportButtons& m_buttons;
    TrackLoader& m_loader;
    AbLoop& m_loop;
    TrackInfo& m_info;
    UndoHistory& m_history;
    LoadedTrack m_loaded;
    RunAlert m_runAlert;
    mutable const QLabel* m_shownLabel = nullptr;  // what trackTotal shows now, and where
    mutable int m_shownCount = -1;
};

}  // namespace qm
