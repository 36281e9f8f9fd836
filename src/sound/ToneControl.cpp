#include "sound/ToneControl.h"

#include "player/Numbers.h"
#include "player/OutletSetters.h"

namespace qm {

namespace {

constexpr std::int16_t kMost = 256;
constexpr std::int16_t kNeutral = 128;
constexpr std::int16_t kLeast = 0;

}  // namespace

// One of the two settings with everything that belongs to it.
struct ToneControl::Tone {
    std::int16_t& field;
    Slider* slider;
    TitleButton* title;
    std::vector<std::int16_t>& perRow;
};

ToneControl::ToneControl(Uses<const CurrentMovie, const MovieHandle, ToneState, const TitleAttributes> state,
                         PlayListArrays& list, Uses<const ToneOutlets, const PlayListOutlet> outlets,
                         MovieToolbox& toolbox)
    : m_movie(state),
      m_handle(state),
      m_toneState(state),
      m_titles(state),
      m_list(list),
      m_outlets(outlets),
      m_listOutlet(outlets),
      m_toolbox(toolbox) {}

ToneControl::Tone ToneControl::bass() {
    return {m_toneState.bass, m_outlets.bassSlider, m_outlets.bassResetButton, m_list.bassArray};
}

ToneControl::Tone ToneControl::treble() {
    return {m_toneState.treble, m_outlets.trebleSlider, m_outlets.trebleResetButton, m_list.trebleArray};
}

void ToneControl::bassMax() {
    preset(bass(), kMost);
}
void ToneControl::bassMin() {
    preset(bass(), kLeast);
}
void ToneControl::bassReset() {
    preset(bass(), kNeutral);
}
void ToneControl::bassUpdate(double value) {
    update(bass(), value);
}
void ToneControl::trebleMax() {
    preset(treble(), kMost);
}
void ToneControl::trebleMin() {
    preset(treble(), kLeast);
}
void ToneControl::trebleReset() {
    preset(treble(), kNeutral);
}
void ToneControl::trebleUpdate(double value) {
    update(treble(), value);
}

void ToneControl::preset(Tone tone, std::int16_t value) {
    tone.field = value;
    showValue(tone.slider, value);
    showPlainTitle(tone.title, QString::number(value));
    keepAndApply(tone);
}

void ToneControl::update(Tone tone, double value) {
    const std::int32_t whole = truncToInt32(static_cast<float>(value));
    tone.field = static_cast<std::int16_t>(static_cast<std::uint16_t>(whole));
    showAttributedTitle(tone.title, QString::number(tone.field), m_titles.controlColorAttributes);
    keepAndApply(tone);
}

void ToneControl::restore(int row) {
    restore(bass(), row);
    restore(treble(), row);
    bassAndTrebleUpdate();
}

void ToneControl::restore(Tone tone, int row) {
    tone.field = tone.perRow[row];
    showValue(tone.slider, tone.field);
    showAttributedTitle(tone.title, QString::number(tone.field), m_titles.controlColorAttributes);
}

void ToneControl::repaintTitles() {
    for (TitleButton* title : {m_outlets.bassResetButton, m_outlets.trebleResetButton})
        if (title) title->repaint();
}

void ToneControl::keepAndApply(Tone tone) {
    if (!m_movie.qtMovie) return;
    const int row = selectedRow(m_listOutlet, m_list);
    if (row > -1) tone.perRow[row] = tone.field;
    bassAndTrebleUpdate();
}

// Both go together, to a movie that has sound.
void ToneControl::bassAndTrebleUpdate() {
    if (!m_movie.qtMovie) return;
    if (m_toolbox.soundTrackCount(m_handle.quickTimeMovie) < 1) return;
    m_toolbox.MediaSetSoundBassAndTreble(m_handle.quickTimeMovie, 0, m_toneState.bass, m_toneState.treble);
}

}  // namespace qm
