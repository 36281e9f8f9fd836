#include "engine/api/MovieRegistry.h"

namespace qm {

Movie MovieRegistry::add(QTMovie& movie) {
    m_movies.emplace(++m_last, &movie);
    return m_last;
}

void MovieRegistry::remove(Movie movie) {
    m_movies.erase(movie);
}

QTMovie* MovieRegistry::find(Movie movie) const {
    const auto found = m_movies.find(movie);
    return found == m_movies.end() ? nullptr : found->second;
}

}  // namespace qm
