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

bool isSkip(ActionId id) {
    switch (id) {
        case ActionId::skip1:
        case ActionId::skip10:
        case ActionId::skip30:
        case ActionId::skip60:
        case ActionId::skip300:
        case ActionId::skipBack:
        case ActionId::skip_10:
        case ActionId::skip_60:
            return true;
        default:
            return false;
    }
}

}  // namespace

SpokenDeeds::SpokenDeeds(ActionTable& actions, const PlayerState& state, const AbLoop& loop, const Outlets& outlets,
                         Notices& notices)
    : QObject(&actions), m_state(state), m_loop(loop), m_outlets(outlets), m_notices(notices) {
    connect(&actions, &ActionTable::sent, this, &SpokenDeeds::tell);
}

void SpokenDeeds::tell(ActionId id) {
    const QString words = wordsOf(id);
    if (!words.isEmpty()) m_notices.tell({words, {}, {}, QStringLiteral("deed")});
}

// The sliders need no words here: they say their value themselves.
QString SpokenDeeds::wordsOf(ActionId id) const {
    switch (id) {
        case ActionId::speedDown:
        case ActionId::speedUp:
        case ActionId::speed05:
        case ActionId::speed075:
        case ActionId::speed150:
        case ActionId::speed20:
        case ActionId::speedReset:
            return tr("Speed %1").arg(spokenSpeed(m_state.rate));
        case ActionId::semiToneDown:
        case ActionId::semiToneUp:
        case ActionId::pitchReset:
            return tr("Pitch %1").arg(spokenPitch(m_state.pitch));
        case ActionId::loopSwitch:
        case ActionId::markAUpdate:
        case ActionId::markBUpdate:
        case ActionId::resetMarks:
            return wordsOfLoop(id);
        case ActionId::selectTrack:
            return wordsOfTrack();
        case ActionId::displayTrackFormat:
            return m_outlets.format->isHidden() ? tr("The track's format is hidden")
                                                : tr("The track's format is shown");
        default:
            break;
    }
    const QString position = wordsOfPosition(id);
    return position.isEmpty() ? wordsOfSound(id) : position;
}

QString SpokenDeeds::wordsOfTrack() const {
    if (!m_state.qtMovie || m_outlets.playList->selectedRow() < 0) return {};
    const auto name = m_state.qtMovie->displayNameAttribute();
    return tr("%1 is loaded").arg(name ? QString::fromStdString(*name) : QFileInfo(m_state.loadedPath).fileName());
}

QString SpokenDeeds::wordsOfSound(ActionId id) const {
    const double gain = m_outlets.gainSlider->value();
    switch (id) {
        case ActionId::silence:
        case ActionId::resetGain:
        case ActionId::volumeMin:
        case ActionId::volumeMax:
        case ActionId::gainReset:
            return tr("Gain %1").arg(spokenGain(gain));
        case ActionId::updateDefaultAudioPref:
            return tr("Quillmere starts with a gain of %1").arg(spokenGain(gain > 0 ? gain : kGainForNone));
        case ActionId::balanceLeftMax:
        case ActionId::balanceReset:
        case ActionId::balanceRightMax:
            return tr("Balance %1").arg(spokenBalance(m_state.balance));
        case ActionId::bassMin:
        case ActionId::bassReset:
        case ActionId::bassMax:
            return tr("Bass %1").arg(spokenTone(m_state.bass));
        case ActionId::trebleMin:
        case ActionId::trebleReset:
        case ActionId::trebleMax:
            return tr("Treble %1").arg(spokenTone(m_state.treble));
        case ActionId::resetSound:
        case ActionId::resetAudio:
            return tr("Speed, pitch and all sound controls are at rest");
        default:
            return {};
    }
}

// Of those that lead to an end of the track, where the position may have stood already.
QString SpokenDeeds::wordsOfPosition(ActionId id) const {
    const bool isStart = id == ActionId::goToStart;
    if (!m_state.qtMovie || !(isStart || isSkip(id))) return {};
    const std::int64_t time = m_state.qtMovie->currentTime().timeValue;
    if (isStart && m_state.isLooping) return tr("At A");
    if (isStart || time <= 0) return tr("At the start");
    return time >= m_state.qtMovie->duration().timeValue ? tr("At the end") : QString();
}

QString SpokenDeeds::wordsOfLoop(ActionId id) const {
    if (!m_state.qtMovie) return tr("No track is loaded");
    if (id == ActionId::loopSwitch && !m_state.isLooping) return tr("Loop off");
    if (m_outlets.playList->selectedRow() < 0) return tr("No track is selected");
    if (id == ActionId::loopSwitch) return wordsOfPassage();
    if (id == ActionId::resetMarks) return tr("A at the start, B at the end");
    const auto& marks = m_loop.shownMarks();
    if (!marks) return {};
    return id == ActionId::markAUpdate ? tr("A at %1").arg(spokenMark(marks->a))
                                       : tr("B at %1").arg(spokenMark(marks->b));
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
