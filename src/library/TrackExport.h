// Keeps the current track as a movie of its own, at the speed it is practised at, while the track goes on playing. Main
// thread only. A protected file is refused with a warning; how the writing ends is told.
#pragma once

#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/PlayerState.h"
#include "player/Notices.h"
#include "player/Uses.h"
#include "ui/PlayerAlert.h"
#include "ui/controls/Outlets.h"

namespace qm {

// The name that an export of this file is offered under: an avi file's own, otherwise with the extension "mov".
QString exportName(const QString& path);

class TrackExport {
public:
    enum class End { Written, Failed, Cancelled };

    using RunPanel = std::function<std::optional<QString>(const QString& folder, const QString& name)>;

    TrackExport(Uses<const CurrentMovie, const LoadedFile, const SpeedState> state,
                Uses<const ExportOutlets, const MainWindowOutlet> outlets, PlayerAlert& alert, Notices& notices);

    // Returns when the writing has begun. One at a time: while a track is being written, its panel comes to the front.
    void exportMovie();

    // Nothing is left of the file that is being written. Does nothing otherwise.
    void cancelExport();

    bool isExporting() const { return m_export != nullptr; }
    void showPanel();  // of the export that is being written

    // Hears once how the export that is being written ends. Replaces who was to hear it; null to hear nothing.
    void setAtEnd(std::function<void(End)> atEnd) { m_atEnd = std::move(atEnd); }

    // How the save panel is run: the chosen path, or none if it was cancelled.
    void setRunPanel(RunPanel run) { m_runPanel = std::move(run); }

    QTimer& timer() { return m_timer; }  // looks after the export while there is one

private:
    void begin(const QString& path);
    void look();
    void finished(const std::string& failure);
    void ended(End end);
    void tell(const QString& text, bool lasts);

    const CurrentMovie& m_movie;
    const LoadedFile& m_file;
    const SpeedState& m_speedState;
    const ExportOutlets& m_outlets;
    const MainWindowOutlet& m_window;
    PlayerAlert& m_alert;
    Notices& m_notices;
    RunPanel m_runPanel;
    QTimer m_timer;
    int m_looks = 0;
    std::function<void(End)> m_atEnd;
    QString m_target;                                       // its path
    std::unique_ptr<MovieExport> m_export;                  // the one that is being written
    std::vector<std::unique_ptr<MovieExport>> m_cancelled;  // whose threads have not noticed yet
};

}  // namespace qm
