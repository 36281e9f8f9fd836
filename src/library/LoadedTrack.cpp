#include "library/LoadedTrack.h"

#include <QFileInfo>
#include <algorithm>

#include "player/OutletSetters.h"

namespace qm {

LoadedTrack::LoadedTrack(Uses<const CurrentMovie, const LoadedFile> state, const PlayListArrays& list,
                         const PlayListOutlet& outlets)
    : m_movie(state), m_file(state), m_list(list), m_outlets(outlets) {}

int LoadedTrack::row() const {
    if (!m_movie.qtMovie) return -1;
    const auto& tracks = m_list.trackArray;
    const auto fits = [&](int row) {
        return row >= 0 && row < m_list.count() && tracks[static_cast<std::size_t>(row)] == m_file.loadedPath;
    };
    if (fits(m_list.loadedRow)) return m_list.loadedRow;
    const int selected = selectedRow(m_outlets, m_list);
    if (fits(selected)) return selected;
    if (fits(m_rowHint)) return m_rowHint;
    const auto found = std::find(tracks.begin(), tracks.end(), m_file.loadedPath);
    m_rowHint = found == tracks.end() ? -1 : static_cast<int>(found - tracks.begin());
    return m_rowHint;
}

QString LoadedTrack::title() const {
    if (!m_movie.qtMovie) return {};
    if (row() >= 0) return m_list.displayNamesArray[static_cast<std::size_t>(row())];
    if (const auto name = m_movie.qtMovie->displayNameAttribute()) return QString::fromStdString(*name);
    return QFileInfo(m_file.loadedPath).fileName();
}

QString LoadedTrack::artist() const {
    return nameIn(m_list.artistArray);
}

QString LoadedTrack::album() const {
    return nameIn(m_list.albumArray);
}

QString LoadedTrack::nameIn(const std::vector<QString>& names) const {
    const int row = this->row();
    return row < 0 ? QString() : names[static_cast<std::size_t>(row)].trimmed();
}

}  // namespace qm
