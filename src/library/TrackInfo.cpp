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
    const int row = selectedRow(m_outlets, m_list);
    if (row >= 0) showText(m_outlets.movieName, m_list.trackArray[row]);
    if (const auto time = QTStringFromTime(m_state.qtMovie->duration()))
        showText(m_outlets.duration, QString::fromStdString(*time).left(kDurationCharacters));
}

void TrackInfo::blankFields() {
    for (QLabel* field : {m_outlets.copyright, m_outlets.format, m_outlets.formatInInfo, m_outlets.duration,
                          m_outlets.movieName, m_outlets.movieSize})
        showText(field, QStringLiteral(" "));
}

}  // namespace qm
