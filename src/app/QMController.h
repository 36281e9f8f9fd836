// The player's controller: its state, its play list and its outlets by inheritance, one member for each subject, and
// the user's actions, each handed to the subject it belongs to. This header is the program's table of contents.
// Main thread only. Nothing here reports an error: an action that cannot be done does nothing.
#pragma once

#include <QObject>
#include <functional>

#include "app/state/Notices.h"
#include "app/state/Outlets.h"
#include "app/state/PlayListArrays.h"
#include "app/state/PlayerState.h"
#include "app/state/Prefs.h"
#include "app/state/UndoHistory.h"
#include "library/PlayListCopy.h"
#include "library/PlayListFile.h"
#include "library/PlayListTable.h"
#include "library/TrackExport.h"
#include "library/TrackInfo.h"
#include "library/TrackLoader.h"
#include "library/TrackMetadata.h"
#include "player/AbLoop.h"
#include "player/PositionClock.h"
#include "player/transport/PlayerAlert.h"
#include "player/transport/Transport.h"
#include "record/MainRecorder.h"
#include "sound/LevelMeters.h"
#include "sound/PitchControl.h"
#include "sound/SpeedControl.h"
#include "sound/ToneControl.h"
#include "sound/VolumeControl.h"
#include "ui/chrome/PreferencePanes.h"
#include "ui/chrome/Preferences.h"
#include "ui/chrome/WindowChrome.h"

namespace qm {

class QMController : public QObject,
                     public PlayerState,
                     public PlayListArrays,
                     public Outlets,
                     public LevelMeterState,
                     public MainRecorderState {
    Q_OBJECT

public:
    // Sets the fields to their start values and reads the play list; no outlet exists yet and no track is loaded.
    QMController(MediaEngine& engine, const MovieRegistry& movies, CaptureEngine& capture, Prefs& store,
                 const ImageProvider& images);

    // Gives windows and controls their first state. Call once, when the windows are built and have filled the outlets.
    void awakeFromNib();

    // The window stands: offers the list of an end that was no quit, and keeps this one against such an end.
    void lookAfterPlayList() { m_copy.start(); }

    // The program quits: keeps what must survive.
    void applicationWillTerminate();

    // What the user has made and would lose, without asking anything of the screen, which may have gone. As often as
    // one likes.
    void keepWhatMustSurvive();

    // A window is about to close. The main window takes the program with it, and this does not return.
    void windowWillClose(const QWidget* window);

    // How the program ends when the main window closes, with the exit status; at first the process ends at once.
    void setExit(std::function<void(int)> exit) { m_exit = std::move(exit); }

    // Makes an updater for a check that the user asks for.
    void setUpdaterMaker(std::function<void()> make) { m_makeManualUpdater = std::move(make); }

    void loadFileAdd(const QString& path, bool add) { m_loader.loadFileAdd(path, add); }
    void audioLevelFireMethod() { m_levels.audioLevelFireMethod(); }
    void switchAudioLevels(bool on) { m_levels.switchAudioLevels(on); }
    void displayAlertInfoButtonText(const QString& message, const QString& information, const QString& button) {
        m_alert.displayAlertInfoButtonText(message, information, button);
    }
    MovieToolbox& movieToolbox() { return m_toolbox; }
    PositionClock& positionClock() { return m_clock; }
    TrackInfo& trackInfo() { return m_info; }
    TrackLoader& trackLoader() { return m_loader; }
    PlayListTable& playListTable() { return m_table; }
    PlayerAlert& playerAlert() { return m_alert; }
    TrackExport& trackExport() { return m_export; }
    MainRecorder& mainRecorder() { return m_recorder; }
    Notices& notices() { return m_notices; }
    Takes& takes() { return m_takes; }
    UndoHistory& undoHistory() { return m_history; }
    const AbLoop& abLoop() const { return m_loop; }
    void captureOutputDidFinishRecordingToOutputFileAtURLForConnectionsDueToError(const QUrl& file) {
        m_recorder.captureOutputDidFinishRecording(file);
    }
    PreferencePanes& preferencePanes() { return m_panes; }

public slots:
    void playForward() { m_transport.playForward(); }
    void playBackward() { m_transport.playBackward(); }
    void toggleStartStop() { m_transport.toggleStartStop(); }
    void pause() { m_transport.pause(); }
    void goToStart() { m_transport.goToStart(); }
    void skip1() { m_transport.skip(1); }
    void skip10() { m_transport.skip(10); }
    void skip30() { m_transport.skip(30); }
    void skip60() { m_transport.skip(60); }
    void skip300() { m_transport.skip(300); }
    void skipBack() { m_transport.skip(-1); }
    void skip_10() { m_transport.skip(-10); }
    void skip_60() { m_transport.skip(-60); }
    void cueUpdate(double value) { m_clock.cueUpdate(value); }

    void speedUpdate(double value) { m_speed.speedUpdate(value); }
    void speed05() { m_speed.speedX(0.5f); }
    void speed075() { m_speed.speedX(0.75f); }
    void speed150() { m_speed.speedX(1.5f); }
    void speed20() { m_speed.speedX(2.0f); }
    void speedDown() { m_speed.speedDown(); }
    void speedUp() { m_speed.speedUp(); }
    void speedReset() { m_speed.speedReset(); }

    void pitchUpdate(double value) { m_pitch.pitchUpdate(value); }
    void semiToneDown() { m_pitch.semiToneDown(); }
    void semiToneUp() { m_pitch.semiToneUp(); }
    void pitchReset() { m_pitch.pitchReset(); }

    void gainUpdate(double value) { m_volume.gainUpdate(value); }
    void gainReset() { m_volume.gainReset(); }
    void volumeMax() { m_volume.volumeMax(); }
    void volumeMin() { m_volume.volumeMin(); }
    void balanceUpdate(double value) { m_volume.balanceUpdate(value); }
    void balanceReset() { m_volume.balanceReset(); }
    void balanceLeftMax() { m_volume.balanceLeftMax(); }
    void balanceRightMax() { m_volume.balanceRightMax(); }
    void resetAudio() { m_volume.resetAudio(); }

    void bassUpdate(double value) { m_tone.bassUpdate(value); }
    void bassReset() { m_tone.bassReset(); }
    void bassMax() { m_tone.bassMax(); }
    void bassMin() { m_tone.bassMin(); }
    void trebleUpdate(double value) { m_tone.trebleUpdate(value); }
    void trebleReset() { m_tone.trebleReset(); }
    void trebleMax() { m_tone.trebleMax(); }
    void trebleMin() { m_tone.trebleMin(); }

    void displayLevels() { m_levels.displayLevels(); }
    void displayInfo() { m_info.displayInfo(); }
    void displayTrackFormat() { m_info.displayTrackFormat(); }

    void loopSwitch() { m_loop.loopSwitch(); }
    void markAUpdate() { m_loop.markAUpdate(); }
    void markBUpdate() { m_loop.markBUpdate(); }
    void resetMarks() { m_loop.resetMarks(); }

    void audioRecordOpen() { m_recorder.audioRecordOpen(); }
    void audioStartRecord() { m_recorder.audioStartRecord(); }
    void audioStopRecord() { m_recorder.audioStopRecord(); }
    void audioRecordClose() { m_recorder.audioRecordClose(); }

    void openFile() { m_loader.openFile(); }
    void openAnySound() { m_loader.openAnySound(); }
    void rowDoubleClicked() { m_table.rowDoubleClicked(); }
    void selectTrack() { m_table.selectTrack(); }
    void removeListEntry() { m_table.removeListEntry(); }
    void clearList() { m_table.clearList(); }
    void undo() { m_history.undo(); }

    void exportMovie() { m_export.exportMovie(); }
    void cancelExport() { m_export.cancelExport(); }

    void checkSoftwareUpdate();

    void displayAboutPanel() { m_chrome.displayAboutPanel(); }
    void openPrefsWindow() { m_preferences.openPrefsWindow(); }
    void toggleGeneralPreferenceView() { m_panes.toggleGeneralPreferenceView(); }
    void toggleUpdatePreferenceView() { m_panes.toggleUpdatePreferenceView(); }
    void toggleAudioDefaultPreferenceView() { m_panes.toggleAudioDefaultPreferenceView(); }
    void toggleAudioLevelsPref() { m_preferences.toggleAudioLevelsPref(); }
    void toggleSoftwareUpdateCheck() { m_preferences.toggleSoftwareUpdateCheck(); }
    void toggleTextColor() { m_preferences.toggleTextColor(); }
    void updateDefaultAudioPref() { m_preferences.updateDefaultAudioPref(); }

private:
    LevelMeterHooks meterHooks();
    void setUpFields();
    void setUpPlayList();
    void nudgeSecondColumn();
    void savePlayList() { m_copy.finish(m_file.savePlayList()); }
    void cleanupWhenClosing();

    Prefs& prefs;
    std::function<void(int)> m_exit;
    std::function<void()> m_makeManualUpdater;

    // In the order in which they build on one another.
    Notices m_notices;
    UndoHistory m_history{m_notices};
    MovieToolbox m_toolbox;
    MetaDataToolbox m_metaDataToolbox;
    WindowChrome m_chrome;
    PositionClock m_clock;
    TrackInfo m_info;
    AbLoop m_loop;
    SpeedControl m_speed;
    PitchControl m_pitch;
    ToneControl m_tone;
    VolumeControl m_volume;
    LevelMeters m_levels;
    Preferences m_preferences;
    PreferencePanes m_panes;
    TrackMetadata m_metadata;
    TrackLoader m_loader;
    PlayListTable m_table;
    PlayListFile m_file;
    PlayListCopy m_copy;
    Transport m_transport;
    PlayerAlert m_alert;
    TrackExport m_export;
    Takes m_takes;
    MainRecorder m_recorder;
};

}  // namespace qm
