// The stored settings as the user and the program meet them: the start-up steps that read them, and the actions of the
// preferences window, which write each change at once. Decisions are made on what is stored, never on what a control
// shows. Main thread only; nothing here reports an error.
#pragma once

#include "app/PlayerState.h"
#include "app/Prefs.h"
#include "player/Uses.h"
#include "sound/LevelMeters.h"
#include "sound/ToneControl.h"
#include "sound/VolumeControl.h"
#include "ui/TextColor.h"
#include "ui/controls/Outlets.h"

namespace qm {

class Preferences {
public:
    Preferences(
        const CurrentMovie& movie,
        Uses<const PreferencesWindowOutlet, const PreferenceOutlets, const ScaleOutlets, const LevelReadOuts> outlets,
        Prefs& prefs, ToneControl& tone, VolumeControl& volume, LevelMeters& levels);

    // The steps of start-up.
    void storeMissingAudioLevels();
    void applyStoredTextColor();
    void applyDefaultGain();
    void orderLevelsPanel();

    void openPrefsWindow();  // closes it when it is open
    void toggleAudioLevelsPref();
    void toggleSoftwareUpdateCheck();
    void toggleTextColor();
    void updateDefaultAudioPref();

private:
    void showStored(CheckBox* box, const QString& key) const;

    const CurrentMovie& m_movie;
    const PreferencesWindowOutlet& m_prefsWindow;
    const PreferenceOutlets& m_outlets;
    ColouredOutlets m_coloured;
    Prefs& prefs;
    ToneControl& m_tone;
    VolumeControl& m_volume;
    LevelMeters& m_levels;
};

}  // namespace qm
