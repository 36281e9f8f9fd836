#include "app/state/PlayerState.h"

#include <type_traits>

#include "app/state/PlayListArrays.h"
#include "support/widgets/TestText.h"

using namespace qm;

static_assert(std::is_same_v<decltype(QTTime::timeValue), std::int64_t>);
static_assert(std::is_same_v<decltype(QTTime::timeScale), std::int32_t>);
static_assert(std::is_same_v<decltype(QTTime::flags), std::uint32_t>);
static_assert(std::is_same_v<decltype(PlayerState::rate), float>);
static_assert(std::is_same_v<decltype(PlayerState::pitch), float>);
static_assert(std::is_same_v<decltype(PlayerState::gain), float>);
static_assert(std::is_same_v<decltype(PlayerState::balance), float>);
static_assert(std::is_same_v<decltype(PlayerState::bass), std::int16_t>);
static_assert(std::is_same_v<decltype(PlayerState::treble), std::int16_t>);
static_assert(std::is_same_v<decltype(PlayerState::mostRecentlySelected), std::int32_t>);
static_assert(std::is_same_v<decltype(PlayerState::isPlaying), bool> && sizeof(bool) == 1);
static_assert(std::is_same_v<decltype(PlayListArrays::markAarray)::value_type, std::int64_t>);

TEST_CASE("adding and taking away times keeps their shared scale") {
    CHECK(QTTimeIncrement({100, 600, 0}, {-250, 600, 0}) == QTTime{-150, 600, 0});
    CHECK(QTTimeDecrement({100, 600, 0}, {250, 600, 0}) == QTTime{-150, 600, 0});
}

TEST_CASE("the engine's time string has days, two-digit fields, two cut decimals and the scale") {
    CHECK(QTStringFromTime({50070, 600, 0}) == "0:00:01:23.45/600");
    CHECK(QTStringFromTime({35999, 600, 0}) == "0:00:00:59.99/600");
    CHECK(QTStringFromTime({90000, 1, 0}) == "1:01:00:00.00/1");
    CHECK_FALSE(QTStringFromTime({1, 600, kQTTimeIsIndefinite}));
}

TEST_CASE("below ten days the fraction of the engine's time string has two to six characters at every scale") {
    for (const std::int32_t scale : {1, 24, 600, 44100, 90000}) {
        CAPTURE(scale);
        const std::string text = *QTStringFromTime({std::int64_t(scale) * 83 + scale / 3, scale, 0});
        const auto fraction = text.find('/') - text.find('.') - 1;
        CHECK(fraction >= 2);
        CHECK(fraction <= 6);
    }
}
