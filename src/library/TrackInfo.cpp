#include "library/TrackInfo.h"

#include "player/OutletSetters.h"

namespace qm {

namespace {

constexpr qsizetype kDurationCharacters = 10;  // days:hours:minutes:seconds

}  // namespace

TrackInfo::TrackInfo(const CurrentMovie& state, const PlayListArrays& list,
                     Uses<const InfoOutlets, const InfoWindowOutlet, const PlayListOutlet> outlets)
    : m_movie(state), m_list(list), m_outlets(outlets), m_infoWindow(outlets), m_listOutlet(outlets) {}

void TrackInfo::movieMetaData() {
    if (!m_movie.qtMovie) {
        blankFields();
        return;
    }
    showCopyright();
    const int row = selectedRow(m_listOutlet, m_list);
    if (row >= 0) showText(m_outlets.movieName, m_list.trackArray[row]);
    showFormat();
    if (const auto time = QTStringFromTime(m_movie.qtMovie->duration()))
        showText(m_outlets.duration, QString::fromStdString(*time).left(kDurationCharacters));
    if (const auto bytes = m_movie.qtMovie->dataSizeAttribute()) showText(m_outlets.movieSize, QString::number(*bytes));
}

void TrackInfo::showCopyright() {
    const auto copyright = m_movie.qtMovie->copyrightAttribute();
    const bool isKnown = copyright && *copyright != "<null>";
    showText(m_outlets.copyright, isKnown ? QString::fromStdString(*copyright) : QStringLiteral(" "));
}

void TrackInfo::showFormat() {
    const auto summaries = m_movie.qtMovie->trackFormatSummaries();
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
    if (selectedRow(m_listOutlet, m_list) < 0 || !m_infoWindow.trackInfoWindow) return;
    if (m_infoWindow.trackInfoWindow->isVisible()) {
        m_infoWindow.trackInfoWindow->hide();
        return;
    }
    m_infoWindow.trackInfoWindow->show();
    m_infoWindow.trackInfoWindow->raise();
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
