// The calls that are still without effect in this engine: they answer that there is nothing to do.
#include "engine/movie/FileEngine.h"

namespace qm {

std::vector<MetaDataItem> FileEngine::QTCopyMovieMetaData(Movie) {
    return {};
}

}  // namespace qm
