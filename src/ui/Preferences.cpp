#include "ui/Preferences.h"

#include "ui/controls/CheckBox.h"
#include "ui/controls/RadioTiles.h"
#include "ui/controls/WindowOrder.h"

namespace qm {

namespace {

constexpr int kGreen = 3;  // what every choice without a colour of its own means

void showState(CheckBox* box, bool on) {
    if (box) box->setState(on);
}

}  // namespace

Preferences::Preferences(
    const CurrentMovie& movie,
    Uses<const PreferencesWindowOutlet, const PreferenceOutlets, const ScaleOutlets, const LevelReadOuts> outlets,
    Prefs& store, ToneControl& tone, VolumeControl& volume, LevelMeters& levels)
    : m_movie(movie),
      m_prefsWindow(outlets),
      m_outlets(outlets),
      m_coloured(outlets),
      prefs(store),
      m_tone(tone),
      m_volume(volume),
      m_levels(levels) {}

void Preferences::storeMissingAudioLevels() {
    if (!prefs.contains(prefkeys::kAudioLevels)) prefs.setBool(prefkeys::kAudioLevels, true);
}

void Preferences::applyStoredTextColor() {
    applyTextColor(m_coloured, textColorForChoice(prefs.integerForKey(prefkeys::kTextColor)));
}

void Preferences::applyDefaultGain() {
    m_volume.startWith(prefs.floatForKey(prefkeys::kDefaultAudioLevel));
}

void Preferences::orderLevelsPanel() {
    m_levels.showPanel(prefs.boolForKey(prefkeys::kAudioLevels));
}

void Preferences::openPrefsWindow() {
    QWidget* window = m_prefsWindow.prefsWindow;
    if (!window) return;
    if (window->isVisible()) {
        window->hide();
        return;
    }
    makeKeyAndOrderFront(*window);
    showStored(m_outlets.autoCheckForUpdatesPref, prefkeys::kSoftwareUpdateCheck);
    showStored(m_outlets.audioLevelsPref, prefkeys::kAudioLevels);
    const int choice = prefs.integerForKey(prefkeys::kTextColor);
    if (m_outlets.colorMatrix) m_outlets.colorMatrix->selectCellWithTag(choice >= 0 && choice <= kGreen ? choice : 0);
}

void Preferences::showStored(CheckBox* box, const QString& key) const {
    showState(box, !prefs.contains(key) || prefs.boolForKey(key));
}

void Preferences::toggleAudioLevelsPref() {
    const bool on = !prefs.boolForKey(prefkeys::kAudioLevels);
    prefs.setBool(prefkeys::kAudioLevels, on);
    showState(m_outlets.audioLevelsPref, on);
    if (!on || m_movie.qtMovie) m_levels.switchAudioLevels(on);
}

// An absent key counts as on, so the first change switches the check off.
void Preferences::toggleSoftwareUpdateCheck() {
    const bool isOn = prefs.boolForKey(prefkeys::kSoftwareUpdateCheck);
    const bool on = !isOn && prefs.contains(prefkeys::kSoftwareUpdateCheck);
    prefs.setBool(prefkeys::kSoftwareUpdateCheck, on);
    showState(m_outlets.autoCheckForUpdatesPref, on);
}

void Preferences::toggleTextColor() {
    if (!m_outlets.colorMatrix) return;
    const int tag = m_outlets.colorMatrix->selectedTag();
    const int choice = tag >= 0 && tag < kGreen ? tag : kGreen;
    prefs.setInteger(prefkeys::kTextColor, choice);
    m_tone.repaintTitles();
    m_volume.repaintTitles();
    applyTextColor(m_coloured, textColorForChoice(choice));
}

void Preferences::updateDefaultAudioPref() {
    if (const auto gain = m_volume.shownGain()) prefs.setFloat(prefkeys::kDefaultAudioLevel, *gain);
}

}  // namespace qm
