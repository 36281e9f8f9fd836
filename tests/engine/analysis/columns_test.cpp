#include "engine/analysis/Columns.h"

#include <doctest/doctest.h>

#include <chrono>
#include <cmath>

#include "engine/media/MediaFiles.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

// Louder and louder, and no two frames alike.
StereoFrame growing(std::int64_t n) {
    const double size = 0.1 + 0.8 * static_cast<double>(n % 100000) / 100000;
    return {static_cast<float>(size * std::sin(double(n) * 0.37)),
            static_cast<float>(size * std::sin(double(n) * 0.11))};
}

std::vector<float> soundOf(std::int64_t frames) {
    std::vector<float> stereo(static_cast<std::size_t>(2 * frames));
    ComputedSound(frames, growing).read(0, stereo.data(), static_cast<std::size_t>(frames));
    return stereo;
}

// Its own sum over exactly these frames.
Column summed(const std::vector<float>& stereo, std::int64_t begin, std::int64_t end) {
    Column column{2, -2, 0, true};
    double squares = 0;
    for (std::int64_t i = 2 * begin; i < 2 * end; ++i) {
        const float s = stereo[static_cast<std::size_t>(i)];
        column.least = std::min(column.least, s);
        column.most = std::max(column.most, s);
        squares += double(s) * double(s);
    }
    column.loudness = static_cast<float>(std::sqrt(squares / double(2 * (end - begin))));
    return column;
}

int countOther(const std::vector<Column>& columns, const std::vector<float>& stereo, std::int64_t begin,
               std::int64_t end, float tolerance) {
    int other = 0;
    const auto count = static_cast<std::int64_t>(columns.size());
    for (std::int64_t i = 0; i < count; ++i) {
        const Column wanted =
            summed(stereo, begin + (end - begin) * i / count, begin + (end - begin) * (i + 1) / count);
        const Column& column = columns[static_cast<std::size_t>(i)];
        const bool same = column.isKnown && std::abs(column.least - wanted.least) <= tolerance &&
                          std::abs(column.most - wanted.most) <= tolerance &&
                          std::abs(column.loudness - wanted.loudness) <= tolerance;
        other += same ? 0 : 1;
    }
    return other;
}

std::vector<Column> awaited(Columns& columns, std::int64_t begin, std::int64_t end, std::int64_t count,
                            const std::vector<float>& stereo) {
    std::vector<Column> found;
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        found = columns.columns(begin, end, count);
    } while (countOther(found, stereo, begin, end, 1e-6f) > 0);
    return found;
}

}  // namespace

TEST_CASE("A column is the least, the largest and the loudness of exactly its frames") {
    const auto stereo = soundOf(50021);
    ComputedSound sound(50021, growing);
    CHECK(countOther(exactColumns(sound, 17, 50021, 613), stereo, 17, 50021, 1e-6f) == 0);
    CHECK(countOther(exactColumns(sound, 20000, 20200, 200), stereo, 20000, 20200, 1e-6f) == 0);
    CHECK_FALSE(exactColumns(sound, 5, 6, 2)[0].isKnown);  // no frame falls into it
}

TEST_CASE("Columns of a file are those of what is heard of it") {
    const TemporaryFolder folder;
    std::vector<std::string> paths = {folder.write("a.wav", waveFile(2, 44100, 60000, SampleFormat::Int16))};
    for (const std::string name : {"a.mp3", "a.m4a", "a.wma"}) {
        REQUIRE(encode("-f lavfi -i aevalsrc='sin(2*PI*330*t)*mod(t\\,0.3)|0.2*random(0)':d=2:s=44100 ",
                       folder.file(name)));
        paths.push_back(folder.file(name));
    }
    for (const std::string& path : paths) {
        CAPTURE(path);
        const auto sound = openSound(path);
        const auto heard = readLinearly(*sound);
        CHECK(countOther(exactColumns(*sound, 1001, 40003, 321), heard, 1001, 40003, 1e-6f) == 0);
    }
}

TEST_CASE("What is known of a whole track is right to the steps of one byte") {
    constexpr std::int64_t kFrames = 512 * 1000 + 100;
    const auto stereo = soundOf(kFrames);
    SoundLevels levels(kFrames);
    for (std::int64_t at = 0; at < kFrames; at += 777)
        levels.add(stereo.data() + 2 * at, std::min<std::int64_t>(777, kFrames - at));
    CHECK(countOther(levels.columns(0, 512 * 1000, 100), stereo, 0, 512 * 1000, 0.009f) == 0);
    CHECK(countOther(levels.columns(512 * 3, 512 * 994, 7), stereo, 512 * 3, 512 * 994, 0.012f) == 0);
    CHECK(countOther(levels.columns(512 * 999, kFrames, 1), stereo, 512 * 999, kFrames, 0.009f) == 0);
    for (const Column& column : levels.columns(100, 512 * 900, 333)) CHECK(column.isKnown);
}

TEST_CASE("What has not been looked at is not known, and neither is what lies outside the track") {
    const auto stereo = soundOf(512 * 100);
    SoundLevels levels(512 * 100);
    levels.add(stereo.data(), 512 * 40 + 100);
    const auto columns = levels.columns(0, 512 * 100, 10);
    for (std::size_t i = 0; i < 10; ++i) CHECK(columns[i].isKnown == (i < 4));
    const auto around = levels.columns(-512 * 10, 512 * 10, 4);
    CHECK_FALSE(around[0].isKnown);
    CHECK_FALSE(around[1].isKnown);
    CHECK(around[2].isKnown);
    CHECK(SoundLevels(0).columns(0, 100, 3).size() == 3);
}

TEST_CASE("A track takes 4 MB at most, however long it is") {
    const std::int64_t threeHours = 3ll * 3600 * 44100;
    CHECK(SoundLevels(threeHours).partFrames() == 512);
    for (const std::int64_t length : {threeHours, 5 * threeHours, 300 * threeHours}) {
        const SoundLevels levels(length);
        CHECK(levels.bytes() <= SoundLevels::kMostBytes);
        CHECK(levels.bytes() >= SoundLevels::kMostBytes / 4);
    }
}

TEST_CASE("Samples that are no numbers are left out, and those beyond full scale stay in one byte") {
    const std::vector<float> stereo = {std::nanf(""), 0.25f, -7, 3};
    SoundLevels levels(2);
    levels.add(stereo.data(), 2);
    const Column column = levels.columns(0, 2, 1)[0];
    CHECK(column.least == -1);
    CHECK(column.most == 1);
    CHECK(column.loudness == 1);
}

TEST_CASE("A close view comes in by itself, exact to the frame, and so does the next one") {
    constexpr std::int64_t kFrames = 2000000;
    const auto stereo = soundOf(kFrames);
    const auto levels = std::make_shared<SoundLevels>(kFrames);
    Columns columns(
        levels, [=] { return std::make_unique<ComputedSound>(kFrames, growing); }, kFrames);
    CHECK_FALSE(columns.columns(100000, 100200, 100)[0].isKnown);  // asking does not wait
    awaited(columns, 100000, 100200, 100, stereo);
    awaited(columns, 1500003, 1600007, 600, stereo);
    awaited(columns, 0, 5000, 600, stereo);
    awaited(columns, kFrames - 5000, kFrames, 600, stereo);
}

TEST_CASE("A track that cannot be opened again has no close views") {
    Columns columns(
        std::make_shared<SoundLevels>(1000), [] { return nullptr; }, 1000);
    CHECK_FALSE(columns.columns(0, 1000, 10)[0].isKnown);
}
