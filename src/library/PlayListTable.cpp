#include "library/PlayListTable.h"

#include "library/Alert.h"
#include "library/PlayListCells.h"
#include "player/OutletSetters.h"
#include "player/TransportImages.h"
#include "ui/ReadableForms.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/ToolTipText.h"

namespace qm {

namespace {

QString columnIdentifier(int column) {
    return QString::fromLatin1(kPlayListColumns[static_cast<std::size_t>(column)]);
}

bool isTimeColumn(const QString& column) {
    return column == u"IBduration" || column == u"IBmarkA" || column == u"IBmarkB";
}

QString spokenName(const QString& name, const QString& none) {
    return name.trimmed().isEmpty() ? none : name;
}

QString spokenTimeOf(std::int64_t value, std::int32_t scale) {
    return scale > 0 ? spokenDuration(static_cast<double>(value) / scale) : PlayListTable::tr("unknown");
}

}  // namespace

PlayListTable::PlayListTable(
    Uses<const CurrentMovie, const LoadedFile, PlayState, const SpeedState, ChosenRow, const TrackIcons> state,
    PlayListArrays& list,
    Uses<const PlayListOutlet, const TrackTotalOutlet, const MainWindowOutlet, const TransportButtons> outlets,
    TrackLoader& loader, AbLoop& loop, TrackInfo& info, UndoHistory& history)
    : m_movie(state),
      m_file(state),
      m_play(state),
      m_speedState(state),
      m_chosen(state),
      m_icons(state),
      m_list(list),
      m_listOutlet(outlets),
      m_total(outlets),
      m_window(outlets),
      m_buttons(outlets),
      m_loader(loader),
      m_loop(loop),
      m_info(info),
      m_history(history),
      m_loaded(state, list, outlets),
      m_runAlert([this](const QString& message, const QStringList& buttons) {
          return runWarningAlert(m_window.mainWindow, message, buttons);
      }) {}

int PlayListTable::numberOfRowsInTableView(const QObject* table) const {
    refreshTrackTotal();
    return table && table == m_listOutlet.playList ? m_list.count() : 0;
}

// The view asks for the count often: the label is written only when it would change.
void PlayListTable::refreshTrackTotal() const {
    if (m_total.trackTotal == m_shownLabel && m_list.count() == m_shownCount) return;
    m_shownLabel = m_total.trackTotal;
    m_shownCount = m_list.count();
    showText(m_total.trackTotal, trackTotalText(m_shownCount));
}

QVariant PlayListTable::tableViewObjectValueForTableColumnRow(const QObject* table, const QString& column,
                                                              int row) const {
    if (!table || table != m_listOutlet.playList || row < 0 || row >= m_list.count()) return {};
    return objectValue(column, row);
}

QVariant PlayListTable::objectValue(const QString& column, int row) const {
    const auto i = static_cast<std::size_t>(row);
    if (column == u"IBtrack") return m_list.displayNamesArray[i];
    if (column == u"IBicon") return icon(row);
    if (column == u"IBartist") return m_list.artistArray[i];
    if (column == u"IBalbum") return m_list.albumArray[i];
    const std::int32_t scale = m_list.timescaleArray[i];
    if (column == u"IBduration") return shortTimeString(m_list.durations[i], scale);
    if (column == u"IBmarkA") return shortTimeString(m_list.markAarray[i], scale);
    // Mark B alone is read as 32 bits, as it always was.
    if (column == u"IBmarkB") return shortTimeString(static_cast<std::int32_t>(m_list.markBarray[i]), scale);
    return {};
}

// That of the longest track; no mark lies behind its end.
QString PlayListTable::widestTime() const {
    int longest = -1;
    double seconds = -1;
    for (int row = 0; row < m_list.count(); ++row) {
        const auto i = static_cast<std::size_t>(row);
        const std::int32_t scale = m_list.timescaleArray[i];
        const double length = scale > 0 ? static_cast<double>(m_list.durations[i]) / scale : 0;
        if (length <= seconds) continue;
        seconds = length;
        longest = row;
    }
    return longest < 0 ? QString() : objectValue(QStringLiteral("IBduration"), longest).toString();
}

// The title's cell is the one that has the focus: it speaks for its row.
QString PlayListTable::spokenCell(const QString& column, int row) const {
    const auto i = static_cast<std::size_t>(row);
    const std::int32_t scale = m_list.timescaleArray[i];
    if (column == u"IBicon") return iconForTrack(m_list.trackArray[i]) == TrackIcon::Video ? tr("video") : tr("audio");
    if (column == u"IBartist") return spokenName(m_list.artistArray[i], tr("no artist"));
    if (column == u"IBalbum") return spokenName(m_list.albumArray[i], tr("no album"));
    if (column == u"IBduration") return spokenTimeOf(m_list.durations[i], scale);
    if (column == u"IBmarkA") return spokenTimeOf(m_list.markAarray[i], scale);
    if (column == u"IBmarkB") return spokenTimeOf(m_list.markBarray[i], scale);
    const QString spoken = QStringLiteral("%1, %2, %3")
                               .arg(m_list.displayNamesArray[i], spokenCell(QStringLiteral("IBartist"), row),
                                    spokenCell(QStringLiteral("IBduration"), row));
    const auto failure = m_loader.failureOf(m_list.trackArray[i]);
    if (!failure) return spoken;
    return spoken + (*failure == ErrorCategory::NotFound ? tr(", file not found") : tr(", cannot be opened"));
}

QVariant PlayListTable::icon(int row) const {
    switch (iconForTrack(m_list.trackArray[static_cast<std::size_t>(row)])) {
        case TrackIcon::Track:
            return m_icons.trackIcon;
        case TrackIcon::M4a:
            return m_icons.nonM4aIcon;
        case TrackIcon::Video:
            return m_icons.videoIcon;
        case TrackIcon::None:
            break;
    }
    return {};
}

// The same file may stand in several rows: the one that it was loaded from is the loaded track.
bool PlayListTable::isLoadedTrack(int row) const {
    const bool isSameFile = m_list.trackArray[static_cast<std::size_t>(row)] == m_file.loadedPath;
    return m_movie.qtMovie && isSameFile && row == m_loaded.row();
}

bool PlayListTable::isChangedMark(const QString& column, int row) const {
    const auto i = static_cast<std::size_t>(row);
    if (column == u"IBmarkA") return m_list.markAarray[i] != 0;
    return column == u"IBmarkB" && m_list.markBarray[i] != m_list.durations[i];
}

int PlayListTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : numberOfRowsInTableView(m_listOutlet.playList);
}

int PlayListTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(kPlayListColumns.size());
}

QVariant PlayListTable::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_list.count()) return {};
    const int row = index.row();
    const QString column = columnIdentifier(index.column());
    switch (role) {
        case Qt::DisplayRole:
            return column == u"IBicon" ? QVariant() : objectValue(column, row);
        case Qt::DecorationRole:
            return column == u"IBicon" ? icon(row) : QVariant();
        case Qt::ToolTipRole:
            return plainToolTip(m_list.trackArray[static_cast<std::size_t>(row)]);
        case Qt::AccessibleTextRole:
            return spokenCell(column, row);
        case Qt::TextAlignmentRole:
            return QVariant::fromValue((isTimeColumn(column) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
        case LoadedTrackRole:
            return isLoadedTrack(row);
        case ChangedMarkRole:
            return isChangedMark(column, row);
        case FailedTrackRole:
            return m_loader.failureOf(m_list.trackArray[static_cast<std::size_t>(row)]).has_value();
        default:
            return {};
    }
}

QVariant PlayListTable::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList titles = {QString(), "Title", "Artist", "Album", "Duration", "Mark A", "Mark B"};
    if (role == Qt::AccessibleTextRole) {
        if (orientation == Qt::Vertical) return tr("Track %1").arg(section + 1);
        return section == 0 ? tr("Kind") : headerData(section, orientation, Qt::DisplayRole);
    }
    if (orientation != Qt::Horizontal || section < 0 || section >= titles.size()) return {};
    if (role == WidestTextRole) return isTimeColumn(columnIdentifier(section)) ? widestTime() : QVariant();
    if (role == Qt::DisplayRole) return titles[section];
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue((isTimeColumn(columnIdentifier(section)) ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags PlayListTable::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren
                           : Qt::ItemFlags(Qt::NoItemFlags);
}

void PlayListTable::selectTrack() {
    const int row = selectedRow(m_listOutlet, m_list);
    if (row < 0) return;
    m_chosen.mostRecentlySelected = row;
    m_loader.loadFileAdd(m_list.trackArray[static_cast<std::size_t>(row)], false);
}

void PlayListTable::rowDoubleClicked() {
    if (selectedRow(m_listOutlet, m_list) < 0) return;
    m_play.isPlaying = true;
    m_loop.switchOffForTrack();
    selectTrack();
    showImagesForRate(m_buttons, m_speedState.rate);
    m_info.movieMetaData();
}

void PlayListTable::removeListEntry() {
    const int row = selectedRow(m_listOutlet, m_list);
    if (row < 0) return;
    const PlayListEntry entry = m_list.entry(row);
    const int rowsBelow = m_list.count() - 1 - row;
    const bool wasLoaded = row == m_list.loadedRow;
    m_list.removeEntry(row);
    reloadTable(m_listOutlet.playList);
    const auto undo = [this, entry, rowsBelow, wasLoaded] { putBackEntry(entry, rowsBelow, wasLoaded); };
    m_history.add({tr("Remove Track"), undo, tr("Removed %1").arg(entry.displayName),
                   tr("Brought back %1").arg(entry.displayName)});
}

void PlayListTable::clearList() {
    const int pressed = m_runAlert(QStringLiteral("Your Quillmere play list will be cleared."),
                                   {QStringLiteral("Clear list"), QStringLiteral("Cancel")});
    if (pressed != kAlertFirstButtonReturn) return;
    const PlayListArrays rows = m_list;
    m_list.removeAllEntries();
    reloadTable(m_listOutlet.playList);
    if (rows.count() == 0) return;
    m_history.add({tr("Clear List"), [this, rows] { putBackRows(m_list.count(), rows); }, tr("Cleared the play list"),
                   tr("Brought back the play list")});
}

void PlayListTable::bringBackList(const PlayListArrays& rows) {
    const PlayListArrays before = m_list;
    const int count = rows.count();
    putBackRows(0, rows);
    m_history.add({tr("Bring Back List"), [this, before, count] { putBackRows(m_list.count() - count, before); },
                   tr("Brought back the last list"), tr("The list is as it was")});
}

// The row chosen last is chosen by its index alone, so it is moved on where its track has been.
void PlayListTable::putBackEntry(const PlayListEntry& entry, int rowsBelow, bool wasLoaded) {
    const int row = m_list.count() - rowsBelow;
    m_list.insertEntry(row, entry);
    if (wasLoaded && m_list.loadedRow < 0) m_list.loadedRow = row;
    std::int32_t& chosen = m_chosen.mostRecentlySelected;
    if (chosen >= row && !holdsLoadedFile(chosen) && holdsLoadedFile(chosen + 1)) ++chosen;
    reloadTable(m_listOutlet.playList);
    if (m_listOutlet.playList) m_listOutlet.playList->selectRowIndex(row);
}

// These rows in place of the one at the index and all below it. The row chosen last is where the loaded file is now.
void PlayListTable::putBackRows(int index, const PlayListArrays& rows) {
    m_list.replaceFrom(index, rows);
    std::int32_t& chosen = m_chosen.mostRecentlySelected;
    if (chosen >= 0 && !holdsLoadedFile(chosen)) {
        chosen = m_list.count() - 1;
        while (chosen >= 0 && !holdsLoadedFile(chosen)) --chosen;
    }
    reloadTable(m_listOutlet.playList);
    if (m_listOutlet.playList && chosen >= 0) m_listOutlet.playList->selectRowIndex(chosen);
}

bool PlayListTable::holdsLoadedFile(int row) const {
    return row < m_list.count() && m_list.trackArray[static_cast<std::size_t>(row)] == m_file.loadedPath;
}

}  // namespace qm
