// The movies that live, by their handles: a handle whose movie is gone finds nothing, and is never given out again.
// Outlives the movies. Main thread only.
#pragma once

#include <cstdint>
#include <unordered_map>

namespace qm {

class QTMovie;

using Movie = std::uint32_t;  // handle of a movie; 0 is none

class MovieRegistry {
public:
    MovieRegistry() = default;
    MovieRegistry(const MovieRegistry&) = delete;
    MovieRegistry& operator=(const MovieRegistry&) = delete;

    Movie add(QTMovie& movie);
    void remove(Movie movie);
    QTMovie* find(Movie movie) const;  // null if it does not live

private:
    std::unordered_map<Movie, QTMovie*> m_movies;
    Movie m_last = 0;
};

}  // namespace qm
