// Makes a file the current track, from the open panel, a drop or the play list. The player's settings are carried over
// to it and never reset; a row's bass and treble come back with it. Main thread only. A file that cannot be opened is
// no message, only a log line, and the movie before it stays stopped; the user is told of one that is too long, of one
// that does not answer, and of a drop that is not taken or not wholly.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

#include "app/state/Notices.h"
#include "app/state/Outlets.h"
#include "app/state/PlayListArrays.h"
#include "app/state/PlayerState.h"
#include "app/state/Uses.h"
#include "engine/api/MediaEngine.h"
#include "engine/api/MovieToolbox.h"
#include "engine/api/Patience.h"
#include "library/DropNotices.h"
#include "library/FileQueue.h"
#include "library/PanelFolder.h"
#include "library/TrackMetadata.h"
#include "player/PositionClock.h"
#include "sound/ToneControl.h"

class QUrl;
class QWidget;

namespace qm {

class FilePanel;

// What the level meters lend to a load; without them the step is left out.
struct LevelMeterHooks {
    std::function<bool()> audioLevelsPreference;  // the user wants the meters
    std::function<void(bool)> switchAudioLevels;  // starts or stops them
};

class TrackLoader {
public:
    using RunPanel = std::function<std::optional<QStringList>(FilePanel&)>;

    TrackLoader(Uses<CurrentMovie, MovieHandle, LoadedFile, const PlayState, const SpeedState, const PitchState,
                     const VolumeState, const ToneState, const MeteringState>
                    state,
                PlayListArrays& list,
                Uses<const VideoOutlets, const MainWindowOutlet, const PositionOutlet, const PlayListOutlet> outlets,
                MediaEngine& engine, MovieToolbox& toolbox, PositionClock& clock, ToneControl& tone,
                TrackMetadata& metadata, Notices& notices, LevelMeterHooks meters = {});

    // With `add`, a new row at the top of the play list keeps the file. The window lives on while a file takes long to
    // open, without a track. What is to be loaded meanwhile follows in its turn, and takes the place of those before it
    // that were to be loaded only.
    void loadFileAdd(const QString& path, bool add);

    bool isLoading() const { return !m_requests.isEmpty(); }

    // A load that gave no track.
    struct Failure {
        QString path;
        Error error;
    };
    int failures() const { return m_failures; }  // so far
    const std::optional<Failure>& lastFailure() const { return m_lastFailure; }

    // Why the file gave no track when it was last to be loaded; none if it did, or never was.
    std::optional<ErrorCategory> failureOf(const QString& path) const;

    // Asks for files and adds each, in the panel's order: the last one ends on top and stays loaded.
    void openFile();

    // The same for any sound, whatever the list of the open panel and that of a drop say of its kind.
    void openAnySound();

    // The file of an address that the desktop opens, if there is one; otherwise that is told.
    std::optional<QString> soundFile(const QUrl& address);

    // Where the panels are to look next time.
    void lookIn(const QString& folder) { m_panelFolder.remember(folder); }

    // A drop on the play list takes one file at most. False if it takes none. What is left is told and offered.
    bool acceptDrop(const QList<QUrl>& urls);

    // Those that are added one after the other.
    FileQueue& queue() { return m_queue; }

    // How the panels are run: the chosen files, or none if it was cancelled.
    void setRunPanel(RunPanel run) { m_runPanel = std::move(run); }

    // How to wait for a file that another thread looks at; at first files are looked at directly.
    void setPatience(Patience patience) { m_patience = std::move(patience); }

private:
    struct Request {
        QString path;
        bool add;
    };

    void giveWay();
    void load(const Request& request);
    bool open(const QString& path);
    void keepFailure(const QString& path, const Error& error);
    std::optional<QStringList> askForFiles(std::unique_ptr<FilePanel> (*makePanel)(QWidget*, const QString&));
    void addAnySound(const QStringList& paths);
    std::optional<bool> addFromQueue(const QString& path);
    void tellNotOffered(const QStringList& chosen);
    void tellNoAnswer(const QString& path);
    template <typename Question>
    auto ask(Question question, const QString& path) -> std::optional<decltype(question(path))>;
    void showVideo();
    void resetPositionSlider();
    void carryOverSound();
    void addEntry();
    int rowOf(const Request& request) const;
    void restoreTone();
    void enableMetering();

    CurrentMovie& m_movie;
    MovieHandle& m_handle;
    LoadedFile& m_file;
    const PlayState& m_play;
    const SpeedState& m_speedState;
    const PitchState& m_pitchState;
    const VolumeState& m_volumeState;
    const ToneState& m_toneState;
    const MeteringState& m_metering;
    PlayListArrays& m_list;
    const VideoOutlets& m_outlets;
    const MainWindowOutlet& m_window;
    const PositionOutlet& m_position;
    const PlayListOutlet& m_listOutlet;
    MediaEngine& m_engine;
    MovieToolbox& m_toolbox;
    PositionClock& m_clock;
    ToneControl& m_tone;
    TrackMetadata& m_metadata;
    Notices& m_notices;
    LevelMeterHooks m_meters;
    Patience m_patience;
    RunPanel m_runPanel;
    PanelFolder m_panelFolder;
    QList<Request> m_requests;  // the first one is being loaded
    int m_failures = 0;
    std::optional<Failure> m_lastFailure;
    QHash<QString, ErrorCategory> m_failed;  // files by their paths, until they give a track
    FileQueue m_queue;
    DropNotices m_dropNotices;
};

}  // namespace qm
