#include "engine/api/MovieToolbox.h"

#include "support/widgets/FakeMediaEngine.h"

#include <doctest/doctest.h>

using namespace qm;

namespace {

struct OpenedMovie {
    EventLog log;
    FakeMediaEngine engine{log};
    MovieToolbox& toolbox = engine.toolbox;
    std::unique_ptr<QTMovie> movie = std::move(engine.movieWithFile("/music/one.wav").value());
    Movie handle = movie->quickTimeMovie();
    std::uint32_t bands = 7;
    QTAudioVolumeLevels average, peak;
    QTAudioFrequencyLevels levels;

    OpenedMovie() { log.take(); }

    void checkThatNothingIsDone(Movie none) {
        const float cents = 100;
        CHECK(toolbox.GetMovieDuration(none) == 0);
        CHECK(toolbox.GetMovieTime(none) == 0);
        CHECK_FALSE(toolbox.IsMovieDone(none));
        CHECK(toolbox.soundTrackCount(none) == 0);
        CHECK(toolbox.SetMovieAudioBalance(none, 0.5f, 0) == kInvalidMovie);
        CHECK(toolbox.QTSetMovieProperty(none, kQTPropertyClass_Audio, kQTAudioPropertyID_Pitch, sizeof cents,
                                         &cents) == kInvalidMovie);
        CHECK(toolbox.MediaSetSoundBassAndTreble(none, 0, 128, 128) == kInvalidMovie);
        CHECK(toolbox.SetMovieAudioVolumeMeteringEnabled(none, kDeviceMix, true) == kInvalidMovie);
        CHECK(toolbox.SetMovieAudioFrequencyMeteringNumBands(none, kStereoMix, bands) == kInvalidMovie);
        CHECK(toolbox.GetMovieAudioVolumeLevels(none, kDeviceMix, average, peak) == kInvalidMovie);
        CHECK(toolbox.GetMovieAudioFrequencyLevels(none, kStereoMix, levels) == kInvalidMovie);
        toolbox.SetMovieTimeValue(none, 0);
        QTMetaDataRef metaData = 1;
        CHECK(engine.metaData.QTCopyMovieMetaData(none, metaData) == kInvalidMovie);
        CHECK(metaData == 0);
        CHECK(log.events() == Events{});
    }
};

}  // namespace

TEST_CASE_FIXTURE(OpenedMovie, "a handle that was never given out, and one whose movie is gone, mean nothing") {
    checkThatNothingIsDone(0);
    checkThatNothingIsDone(handle + 1);
    movie.reset();
    checkThatNothingIsDone(handle);
}

TEST_CASE_FIXTURE(OpenedMovie, "the handle of a movie that is gone is not given to another one") {
    movie.reset();
    movie = std::move(engine.movieWithFile("/music/two.wav").value());
    CHECK(movie->quickTimeMovie() != handle);
}

TEST_CASE_FIXTURE(OpenedMovie, "each call reaches the movie that its handle means") {
    const auto other = std::move(engine.movieWithFile("/music/two.wav").value());
    log.take();
    const float cents = -150;
    toolbox.SetMovieTimeValue(handle, 1234);
    CHECK(toolbox.GetMovieTime(handle) == 1234);
    CHECK(toolbox.GetMovieTime(other->quickTimeMovie()) == 0);
    CHECK(toolbox.GetMovieDuration(handle) == 60000);
    CHECK(toolbox.QTSetMovieProperty(handle, kQTPropertyClass_Audio, kQTAudioPropertyID_Pitch, sizeof cents, &cents) ==
          kNoErr);
    CHECK(toolbox.SetMovieAudioBalance(handle, -0.5f, 0) == kNoErr);
    CHECK(toolbox.MediaSetSoundBassAndTreble(handle, 0, 10, 20) == kNoErr);
    CHECK(log.events() == Events{"seekTo 1234", "setPitch -150", "setBalance -0.5", "setTone track 0 10 20"});
}

TEST_CASE_FIXTURE(OpenedMovie, "a property of another class, kind or size is unknown, and not set") {
    const double value = 100;
    const auto set = [&](std::uint32_t propertyClass, std::uint32_t id, std::uint32_t size) {
        return toolbox.QTSetMovieProperty(handle, propertyClass, id, size, &value);
    };
    CHECK(set(kDeviceMix, kQTAudioPropertyID_Pitch, sizeof(float)) == kUnknownProperty);
    CHECK(set(kQTPropertyClass_Audio, kDeviceMix, sizeof(float)) == kUnknownProperty);
    CHECK(set(kQTPropertyClass_Audio, kQTAudioPropertyID_Pitch, sizeof value) == kUnknownProperty);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(OpenedMovie, "a sound track that the movie does not have has no tone") {
    CHECK(toolbox.soundTrackCount(handle) == 1);
    CHECK(toolbox.MediaSetSoundBassAndTreble(handle, 1, 10, 20) == kInvalidMovie);
    CHECK(toolbox.MediaSetSoundBassAndTreble(handle, -1, 10, 20) == kInvalidMovie);
    CHECK(log.events() == Events{});
}

TEST_CASE_FIXTURE(OpenedMovie, "volume is metered of the device mix, bands of the stereo mix, and of no other") {
    CHECK(toolbox.SetMovieAudioVolumeMeteringEnabled(handle, kStereoMix, true) == kUnknownProperty);
    CHECK(toolbox.SetMovieAudioFrequencyMeteringNumBands(handle, kDeviceMix, bands) == kUnknownProperty);
    CHECK(toolbox.GetMovieAudioVolumeLevels(handle, kStereoMix, average, peak) == kUnknownProperty);
    CHECK(toolbox.GetMovieAudioFrequencyLevels(handle, kDeviceMix, levels) == kUnknownProperty);
    CHECK(bands == 7);
    CHECK(toolbox.SetMovieAudioVolumeMeteringEnabled(handle, kDeviceMix, true) == kNoErr);
    CHECK(toolbox.SetMovieAudioFrequencyMeteringNumBands(handle, kStereoMix, bands) == kNoErr);
    CHECK(bands == kMeterBands);
    CHECK(toolbox.GetMovieAudioVolumeLevels(handle, kDeviceMix, average, peak) == kNoErr);
    CHECK(toolbox.GetMovieAudioFrequencyLevels(handle, kStereoMix, levels) == kNoErr);
    CHECK(log.events() == Events{"meterVolume YES", "meterBands YES"});
}
