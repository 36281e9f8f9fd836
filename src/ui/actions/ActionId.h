// Everything that the user can do. Windows, menus and keys name an action by its id; its name, which is that of the
// function that does it, is the object name of its controls and what logs and other programs call it. Any thread.
#pragma once

#include <QObject>
#include <QString>
#include <optional>

namespace qm {

class ActionIds {
    Q_GADGET

public:
    enum class ActionId {
        openFile,
        openAnySound,
        exportMovie,
        cancelExport,
        audioStartRecord,
        quit,

        undo,
        removeListEntry,
        clearList,
        findTrack,
        openPrefsWindow,

        toggleStartStop,
        playForward,
        playBackward,
        pause,
        rowDoubleClicked,
        selectTrack,
        previousTrack,
        nextTrack,
        goToStart,

        skip1,
        skip10,
        skip30,
        skip60,
        skip300,
        skipBack,
        skip_10,
        skip_60,

        speedDown,
        speedUp,
        speed05,
        speed075,
        speedReset,
        speed150,
        speed20,
        semiToneDown,
        semiToneUp,
        pitchReset,

        silence,
        resetGain,
        volumeMin,
        gainReset,
        volumeMax,
        balanceLeftMax,
        balanceReset,
        balanceRightMax,
        bassMin,
        bassReset,
        bassMax,
        trebleMin,
        trebleReset,
        trebleMax,
        resetSound,
        resetAudio,

        loopSwitch,
        markAUpdate,
        markBUpdate,
        resetMarks,

        displayLevels,
        displayInfo,
        displayVideo,
        fillScreenWithVideo,
        audioRecordOpen,
        displayAudioRecordWindow,
        displayTrackFormat,
        goToPlayList,
        toggleToolbar,
        useMessageButton,

        displayShortcuts,
        displayGuide,
        checkSoftwareUpdate,
        displayAboutPanel,

        audioRecordClose,
        toggleRecordSession,

        cueUpdate,
        speedUpdate,
        pitchUpdate,
        gainUpdate,
        balanceUpdate,
        bassUpdate,
        trebleUpdate,

        toggleGeneralPreferenceView,
        toggleUpdatePreferenceView,
        toggleAudioDefaultPreferenceView,
        toggleAudioLevelsPref,
        toggleTextColor,
        toggleSoftwareUpdateCheck,
        updateDefaultAudioPref,
    };
    Q_ENUM(ActionId)
};

using ActionId = ActionIds::ActionId;

QString actionName(ActionId id);
std::optional<ActionId> actionNamed(const QString& name);  // none if there is none

}  // namespace qm
