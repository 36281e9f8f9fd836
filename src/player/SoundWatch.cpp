#include "player/SoundWatch.h"

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr int kLookMilliseconds = 250;

QString textFor(SoundOutput state) {
    switch (state) {
        case SoundOutput::DoesNotAnswer:
            return QStringLiteral("The sound output does not answer");
        case SoundOutput::Absent:
            return QStringLiteral("There is no sound output");
        case SoundOutput::Works:
            break;
    }
    return QStringLiteral("Sound is back");
}

}  // namespace

SoundWatch::SoundWatch(const PlayerState& state, Notices& notices) : m_state(state), m_notices(notices) {
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
}

void SoundWatch::start() {
    m_timer.start(kLookMilliseconds);
}

void SoundWatch::look() {
    const auto now = m_state.qtMovie ? m_state.qtMovie->soundOutput() : std::nullopt;
    if (!now || *now == m_told) return;
    m_told = *now;
    const QString text = textFor(*now);
    qmLog(text.toStdString());
    m_notices.tell(Notice{text, {}, {}, QStringLiteral("sound output"), *now != SoundOutput::Works});
}

}  // namespace qm
