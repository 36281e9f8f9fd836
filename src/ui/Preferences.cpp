#include "ui/Preferences.h"

#include "player/OutletSetters.h"
#include "ui/TextColor.h"
#include "ui/controls/CheckBox.h"
#include "ui/controls/RadioTiles.h"
#include "ui/controls/WindowOrder.h"

namespace qm {

namespace {

constexpr float kGainWithoutDefault = 0.5f;
constexpr int kGreen = 3;  // what every choice without a colour of its own means

void showState(CheckBox* box, bool on) {
    if (box) box->setState(on);
}

}  // namespace

Preferences::Preferences(PlayerState& state, const Outlets& outlets, Prefs& store, VolumeControl& volume,
                         LevelMeters& levels)
    : m_state(state), m_outlets(outlets), prefs(store), m_volume(volume), m_levels(levels) {}

void Preferences::storeMissingAudioLevels() {
    if (!prefs.contains(prefkeys::kAudioLevels)) prefs.setBool(prefkeys::kAudioLevels, true);
}

void Preferences::applyStoredTextColor() {
    applyTextColor(m_outlets, textColorForChoice(prefs.integerForKey(prefkeys::kTextColor)));
}

// A stored 0 means the same as none. The gain reaches a movie with the first load.
void Preferences::applyDefaultGain() {
    const float level = prefs.floatForKey(prefkeys::kDefaultAudioLevel);
    m_state.gain = level == 0.0f ? kGainWithoutDefault : level;
    showValue(m_outlets.gainSlider, m_state.gain);
    if (level != 0.0f) m_volume.showGainTitle();
}

void Preferences::orderLevelsPanel() {
    if (!m_outlets.audioLevelsPanel) return;
    const bool shown = prefs.boolForKey(prefkeys::kAudioLevels);
    m_outlets.audioLevelsPanel->setVisible(shown);
    if (shown) m_outlets.audioLevelsPanel->raise();
}

void Preferences::openPrefsWindow() {
    QWidget* window = m_outlets.prefsWindow;
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
    if (!on || m_state.qtMovie) m_levels.switchAudioLevels(on);
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
    for (TitleButton* button : {m_outlets.bassResetButton, m_outlets.trebleResetButton, m_outlets.balanceResetButton,
                                m_outlets.gainResetButton})
        if (button) button->repaint();
    applyTextColor(m_outlets, textColorForChoice(choice));
}

void Preferences::updateDefaultAudioPref() {
    if (!m_outlets.gainSlider) return;
    prefs.setFloat(prefkeys::kDefaultAudioLevel, static_cast<float>(m_outlets.gainSlider->value()));
}

}  // namespace qm
