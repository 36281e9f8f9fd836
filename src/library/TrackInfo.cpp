#include "library/TrackInfo.h"

#include "player/OutletSetters.h"

namespace qm {

namespace {

constexpr qsizetype kDurationCharacters = 10;  // days:hours:minutes:seconds

}  // namespace

TrackInfo::TrackInfo(PlayerState& state, PlayListArrays& list, const Outlets& outlets)
    : m_state(state), m_list(list), m_outlets(outlets) {}

void TrackInfo::movieMetaData() {
    if (!m_state.qtMovie) {
        blankFields();
        return;
    }
    showCopyright();
    const int row = selectedRow(m_outlets, m_list);
    if (row >= 0) showText(m_outlets.movieName, m_list.trackArray[row]);
    showFormat();
    if (const auto time = QTStringFromTime(m_state.qtMovie->duration()))
        showText(m_outlets.duration, QString::fromStdString(*time).left(kDurationCharacters));
    if (const auto bytes = m_state.qtMovie->dataSizeAttribute()) showText(m_outlets.movieSize, QString::number(*bytes));
}

void TrackInfo::showCopyright() {
    const auto copyright = m_state.qtMovie->copyrightAttribute();
    const bool isKnown = copyright && *copyright != "<null>";
    showText(m_outlets.copyright, isKnown ? QString::fromStdString(*copyright) : QStringLiteral(" "));
}

void TrackInfo::showFormat() {
    const auto summaries = m_state.qtMovie->trackFormatSummaries();
    if (summaries.empty()) return;
    QString text;
    for (const auto& summary : summaries) {
        if (summary) text += QString::fromStdString(*summary) + u'\n';
    }
    if (text.isEmpty()) text = QStringLiteral("MPEG-1 Muxed");
    showText(m_outlets.format, text);
    showText(m_outlets.formatInInfo, text);
}

void TrackInfo::displayInfo() {
    if (selectedRow(m_outlets, m_list) < 0 || !m_outlets.trackInfoWindow) return;
    if (m_outlets.trackInfoWindow->isVisible()) {
        m_outlets.trackInfoWindow->hide();
        return;
    }
    m_outlets.trackInfoWindow->show();
    m_outlets.trackInfoWindow->raise();
    movieMetaData();
}

void TrackInfo::displayTrackFormat() {
    if (m_outlets.format) m_outlets.format->setHidden(!m_outlets.format->isHidden());
}

void TrackInfo::blankFields() {
    for (QLabel* field : {m_outlets.copyright, m_outlets.format, m_outlets.formatInInfo, m_outlets.duration,
                          m_outlets.movieName, m_outlets.movieSize})
        showText(field, QStringLiteral(" "));
}

}  // namespace qm
