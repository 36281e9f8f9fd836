#include <doctest/doctest.h>

#include "engine/api/MovieToolbox.h"
#include "engine/media/MediaFiles.h"
#include "engine/movie/FileEngine.h"

using namespace qm;
using namespace qm::test;

namespace {

struct MeteredMovie {
    TemporaryFolder folder;
    MovieRegistry movies;
    MovieToolbox toolbox{movies};
    FileEngine engine{movies, [](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
                          return std::unique_ptr<AudioOutput>(std::make_unique<SteppedOutput>(source));
                      }};
    std::unique_ptr<QTMovie> movie = open();
    Movie handle = movie->quickTimeMovie();
    QTAudioVolumeLevels average, peak;
    QTAudioFrequencyLevels bands;

    std::unique_ptr<QTMovie> open() {
        auto opened = engine.movieWithFile(folder.write("a.wav", waveFile(1, 44100, 44100, SampleFormat::Int16)));
        REQUIRE(opened);
        return std::move(opened.value());
    }
};

}  // namespace

TEST_CASE_FIXTURE(MeteredMovie, "levels cannot be read before their metering is switched on") {
    CHECK(toolbox.GetMovieAudioVolumeLevels(handle, kDeviceMix, average, peak) != kNoErr);
    CHECK(toolbox.GetMovieAudioFrequencyLevels(handle, kStereoMix, bands) != kNoErr);
    CHECK(toolbox.SetMovieAudioVolumeMeteringEnabled(handle, kDeviceMix, true) == kNoErr);
    CHECK(toolbox.GetMovieAudioVolumeLevels(handle, kDeviceMix, average, peak) == kNoErr);
    CHECK(toolbox.GetMovieAudioFrequencyLevels(handle, kStereoMix, bands) != kNoErr);
    CHECK(average.level[0] == -96.0f);
    CHECK(peak.level[1] == -96.0f);
    CHECK(toolbox.SetMovieAudioVolumeMeteringEnabled(handle, kDeviceMix, false) == kNoErr);
    CHECK(toolbox.GetMovieAudioVolumeLevels(handle, kDeviceMix, average, peak) != kNoErr);
}

TEST_CASE_FIXTURE(MeteredMovie, "four bands are delivered whatever count is asked for, and none for a count of zero") {
    std::uint32_t count = 7;
    CHECK(toolbox.SetMovieAudioFrequencyMeteringNumBands(handle, kStereoMix, count) == kNoErr);
    CHECK(count == 4);
    bands.numChannels = bands.numFrequencyBands = 0;
    bands.level[7] = 5;
    CHECK(toolbox.GetMovieAudioFrequencyLevels(handle, kStereoMix, bands) == kNoErr);
    CHECK(bands.numChannels == 2);
    CHECK(bands.numFrequencyBands == 4);
    CHECK(bands.level[7] == 0.0f);
    count = 0;
    CHECK(toolbox.SetMovieAudioFrequencyMeteringNumBands(handle, kStereoMix, count) == kNoErr);
    CHECK(toolbox.GetMovieAudioFrequencyLevels(handle, kStereoMix, bands) != kNoErr);
}

TEST_CASE_FIXTURE(MeteredMovie, "metering belongs to one movie and ends with it") {
    std::uint32_t count = 4;
    CHECK(toolbox.SetMovieAudioVolumeMeteringEnabled(handle, kDeviceMix, true) == kNoErr);
    CHECK(toolbox.SetMovieAudioFrequencyMeteringNumBands(handle, kStereoMix, count) == kNoErr);
    const auto other = open();
    CHECK(toolbox.GetMovieAudioVolumeLevels(other->quickTimeMovie(), kDeviceMix, average, peak) != kNoErr);
    movie.reset();
    CHECK(toolbox.GetMovieAudioVolumeLevels(handle, kDeviceMix, average, peak) == kInvalidMovie);
    CHECK(toolbox.GetMovieAudioFrequencyLevels(handle, kStereoMix, bands) == kInvalidMovie);
    CHECK(toolbox.SetMovieAudioVolumeMeteringEnabled(handle, kDeviceMix, true) == kInvalidMovie);
    CHECK(toolbox.SetMovieAudioFrequencyMeteringNumBands(handle, kStereoMix, count) == kInvalidMovie);
}
