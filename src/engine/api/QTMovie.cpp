#include "engine/api/QTMovie.h"

namespace qm {

QTMovie::QTMovie(MovieRegistry& registry) : m_registry(registry), m_handle(registry.add(*this)) {}

QTMovie::~QTMovie() {
    m_registry.remove(m_handle);
}

}  // namespace qm
