// Movies with more units than the low-level calls can count.
#include <doctest/doctest.h>

#include "engine/api/MovieToolbox.h"
#include "engine/media/MediaFiles.h"
#include "engine/movie/FileEngine.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

// Eight-bit samples, all but the first few of which are a hole in the file.
std::string longWave(const TemporaryFolder& folder, int rate, std::int64_t frames) {
    auto bytes = waveFile(1, rate, 1000, SampleFormat::Int8);
    bytes.resize(40);
    const std::string path = folder.write("long.wav", Bytes().add(bytes).little(std::uint64_t(frames), 4).get());
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(44 + frames));
    return path;
}

}  // namespace

TEST_CASE("a movie of as many frames as can be counted plays") {
    const TemporaryFolder folder;
    MovieRegistry movies;
    FileEngine engine(movies, openNullOutput);
    const auto movie = engine.movieWithFile(longWave(folder, 44100, kMost));
    REQUIRE(movie);
    MovieToolbox toolbox(movies);
    CHECK(toolbox.GetMovieDuration(movie.value()->quickTimeMovie()) == kMost);
    toolbox.SetMovieTimeValue(movie.value()->quickTimeMovie(), kMost - 1);
    CHECK(toolbox.GetMovieTime(movie.value()->quickTimeMovie()) == kMost - 1);
}

TEST_CASE("a movie of more frames than can be counted is refused, and the reason says how long it may be") {
    const TemporaryFolder folder;
    MovieRegistry movies;
    FileEngine engine(movies, openNullOutput);
    const std::pair<int, const char*> refusals[] = {
        {44100, "is too long to be played: 13 hours and 31 minutes is the most at 44.1 kHz"},
        {192000, "is too long to be played: 3 hours and 6 minutes is the most at 192 kHz"},
        {8000, "is too long to be played: 74 hours and 33 minutes is the most at 8 kHz"},
        {768000, "is too long to be played: 46 minutes is the most at 768 kHz"},
    };
    for (const auto& [rate, reason] : refusals) {
        const auto movie = engine.movieWithFile(longWave(folder, rate, kMost + 1));
        REQUIRE_FALSE(movie);
        CHECK(movie.error().category == ErrorCategory::TooLong);
        CHECK(movie.error().message == reason);
    }
}
