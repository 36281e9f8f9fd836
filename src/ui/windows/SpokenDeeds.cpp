#include "ui/windows/SpokenDeeds.h"

#include <QFileInfo>
#include <QLabel>
#include <algorithm>

#include "ui/ReadableForms.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Slider.h"

namespace qm {

namespace {

constexpr double kGainForNone = 0.5;  // at the start, where 0 has been kept

QString spokenMark(QTTime mark) {
    return spokenDuration(mark.timeScale > 0 ? static_cast<double>(mark.timeValue) / mark.timeScale : 0);
}

}  // namespace

SpokenDeeds::SpokenDeeds(ActionTable& actions, const PlayerState& state, const AbLoop& loop, const Outlets& outlets,
                         Notices& notices)
    : QObject(&actions), m_state(state), m_loop(loop), m_outlets(outlets), m_notices(notices) {
    connect(&actions, &ActionTable::sent, this, &SpokenDeeds::tell);
}

void SpokenDeeds::tell(const QString& slot) {
    const QString words = wordsOf(slot);
    if (!words.isEmpty()) m_notices.tell({words, {}, {}, QStringLiteral("deed")});
}

// The sliders need no words here: they say their value themselves.
QString SpokenDeeds::wordsOf(const QString& slot) const {
    static const QStringList speeds = {"speedDown", "speedUp", "speed05",   "speed075",
                                       "speed150",  "speed20", "speedReset"};
    static const QStringList pitches = {"semiToneDown", "semiToneUp", "pitchReset"};
    static const QStringList loops = {"loopSwitch", "markAUpdate", "markBUpdate", "resetMarks"};
    if (speeds.contains(slot)) return tr("Speed %1").arg(spokenSpeed(m_state.rate));
    if (pitches.contains(slot)) return tr("Pitch %1").arg(spokenPitch(m_state.pitch));
    if (loops.contains(slot)) return wordsOfLoop(slot);
    if (slot == u"selectTrack") return wordsOfTrack();
    if (slot == u"updateDefaultAudioPref") {
        const double gain = m_outlets.gainSlider->value();
        return tr("Quillmere starts with a gain of %1").arg(spokenGain(gain > 0 ? gain : kGainForNone));
    }
    if (slot == u"displayTrackFormat")
        return m_outlets.format->isHidden() ? tr("The track's format is hidden") : tr("The track's format is shown");
    const QString position = wordsOfPosition(slot);
    return position.isEmpty() ? wordsOfSound(slot) : position;
}

QString SpokenDeeds::wordsOfTrack() const {
    if (!m_state.qtMovie || m_outlets.playList->selectedRow() < 0) return {};
    const auto name = m_state.qtMovie->displayNameAttribute();
    return tr("%1 is loaded").arg(name ? QString::fromStdString(*name) : QFileInfo(m_state.loadedPath).fileName());
}

QString SpokenDeeds::wordsOfSound(const QString& slot) const {
    static const QStringList gains = {"silence", "resetGain", "volumeMin", "volumeMax", "gainReset"};
    if (gains.contains(slot)) return tr("Gain %1").arg(spokenGain(m_outlets.gainSlider->value()));
    if (slot.startsWith(u"balance") && slot != u"balanceUpdate")
        return tr("Balance %1").arg(spokenBalance(m_state.balance));
    if (slot.startsWith(u"bass") && slot != u"bassUpdate") return tr("Bass %1").arg(spokenTone(m_state.bass));
    if (slot.startsWith(u"treble") && slot != u"trebleUpdate") return tr("Treble %1").arg(spokenTone(m_state.treble));
    if (slot == u"resetSound" || slot == u"resetAudio") return tr("Speed, pitch and all sound controls are at rest");
    return {};
}

// Of those that lead to an end of the track, where the position may have stood already.
QString SpokenDeeds::wordsOfPosition(const QString& slot) const {
    const bool isStart = slot == u"goToStart";
    if (!m_state.qtMovie || !(isStart || slot.startsWith(u"skip"))) return {};
    const std::int64_t time = m_state.qtMovie->currentTime().timeValue;
    if (isStart && m_state.isLooping) return tr("At A");
    if (isStart || time <= 0) return tr("At the start");
    return time >= m_state.qtMovie->duration().timeValue ? tr("At the end") : QString();
}

QString SpokenDeeds::wordsOfLoop(const QString& slot) const {
    if (!m_state.qtMovie) return tr("No track is loaded");
    if (slot == u"loopSwitch" && !m_state.isLooping) return tr("Loop off");
    if (m_outlets.playList->selectedRow() < 0) return tr("No track is selected");
    if (slot == u"loopSwitch") return wordsOfPassage();
    if (slot == u"resetMarks") return tr("A at the start, B at the end");
    const auto& marks = m_loop.shownMarks();
    if (!marks) return {};
    return slot == u"markAUpdate" ? tr("A at %1").arg(spokenMark(marks->a)) : tr("B at %1").arg(spokenMark(marks->b));
}

QString SpokenDeeds::wordsOfPassage() const {
    const auto passage = m_loop.repeatedPassage();
    const QTTime whole = m_state.qtMovie->duration();
    if (!passage || whole.timeScale <= 0) return {};
    const auto [begin, end] = std::minmax(passage->first, passage->second);
    if (begin == 0 && end == static_cast<double>(whole.timeValue)) return tr("Loop over the whole track");
    return tr("Loop from %1 to %2").arg(spokenDuration(begin / whole.timeScale), spokenDuration(end / whole.timeScale));
}

}  // namespace qm
