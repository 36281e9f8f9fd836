#include "library/PlayListCells.h"

#include "support/widgets/TestText.h"

using namespace qm;

TEST_CASE("a cell's time is ten characters of the long form from the third, with runs of zeros shortened") {
    CHECK(shortTimeString(20550, 100) == "03:25.5");      // 0:00:03:25.50
    CHECK(shortTimeString(2550, 100) == "00:25.5");       // 0:00:00:25.50
    CHECK(shortTimeString(0, 100) == "00:0.00");          // 0:00:00:0.00
    CHECK(shortTimeString(373500, 100) == "01:02:15.0");  // 0:01:02:15.00
}

TEST_CASE("the zero minutes of an hour vanish") {
    CHECK(shortTimeString(361500, 100) == "01:15.0");  // 0:01:00:15.00
}

TEST_CASE("exactly one minute is not longer than a minute") {
    CHECK(shortTimeString(36000, 600) == "00:01:0.00");
    CHECK(shortTimeString(36001, 600) == "01:0.00");
}

TEST_CASE("from ten days on a cell begins with the colon behind the days") {
    CHECK(shortTimeString(std::int64_t(600) * 864000, 600).startsWith(u':'));
}

TEST_CASE("a negative time loses its sign and its day with the first two characters") {
    CHECK(shortTimeString(-2550, 100) == ":00:25.");  // -0:00:00:25.50
}

TEST_CASE("a time without a positive scale has no text") {
    CHECK(shortTimeString(100, 0).isEmpty());
    CHECK(shortTimeString(100, -600).isEmpty());
}

TEST_CASE("songs of the phone's store have the icon of other files") {
    CHECK(iconForTrack("/m/song.m4a") == TrackIcon::M4a);
    CHECK(iconForTrack("/m/SONG.M4A") == TrackIcon::M4a);
    CHECK(iconForTrack("/m/song.m4p") == TrackIcon::M4a);
}

TEST_CASE("films have the video icon whatever the case of their extension") {
    for (const char* name : {"a.mov", "a.mp4", "a.m4v", "a.avi", "a.wmv", "clip.DV"})
        CHECK(iconForTrack(name) == TrackIcon::Video);
}

TEST_CASE("every other extension has the track icon") {
    for (const char* name : {"song.mp3", "a.aiff", "a.aif", "a.aifc", "a.wav", "a.caf", "a.xyz"})
        CHECK(iconForTrack(name) == TrackIcon::Track);
}

TEST_CASE("a file without an extension has no icon") {
    for (const char* name : {"/m.d/song", "/m/.mp3", "/m/song."}) CHECK(iconForTrack(name) == TrackIcon::None);
}

TEST_CASE("one track is a track, every other number is items") {
    CHECK(trackTotalText(0) == "0 items");
    CHECK(trackTotalText(1) == "1 Track");
    CHECK(trackTotalText(2) == "2 items");
    CHECK(trackTotalText(100000) == "100000 items");
}
