// The calls that are still without effect in this engine: they answer that there is nothing to do.
#include "engine/movie/FileEngine.h"

namespace qm {

OSErr FileEngine::SetMovieAudioVolumeMeteringEnabled(Movie, std::uint32_t, bool) {
    return kInvalidMovie;
}
OSErr FileEngine::SetMovieAudioFrequencyMeteringNumBands(Movie, std::uint32_t, std::uint32_t) {
    return kInvalidMovie;
}
OSErr FileEngine::GetMovieAudioVolumeLevels(Movie, std::uint32_t, std::span<float>, std::span<float>) {
    return kInvalidMovie;
}
OSErr FileEngine::GetMovieAudioFrequencyLevels(Movie, std::uint32_t, std::span<float>) {
    return kInvalidMovie;
}
std::vector<MetaDataItem> FileEngine::QTCopyMovieMetaData(Movie) {
    return {};
}

}  // namespace qm
