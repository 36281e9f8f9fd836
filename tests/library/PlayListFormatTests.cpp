#include "library/PlayListFormat.h"

#include <QBuffer>
#include <tuple>

#include "app/state/FilePath.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

PlayListEntry entry(const QString& track) {
    return {track, "Artist", "Album", "Title", 600000, 600, 100, 200, 5, 7};
}

QByteArray documentOf(const PlayListArrays& list) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CHECK(writePlayList(buffer, list));
    return buffer.data();
}

// One track's dictionary with some keys replaced or, by an empty value, left out.
QByteArray track(const QByteArray& name, const std::vector<std::pair<QByteArray, QByteArray>>& changes = {}) {
    std::vector<std::pair<QByteArray, QByteArray>> values = {{"track", "<string>/music/" + name + "</string>"},
                                                             {"artist", "<string>Artist</string>"},
                                                             {"album", "<string>Album</string>"},
                                                             {"displayName", "<string>" + name + "</string>"},
                                                             {"duration", "<integer>600</integer>"},
                                                             {"timescale", "<integer>600</integer>"},
                                                             {"bass", "<integer>128</integer>"},
                                                             {"treble", "<integer>128</integer>"}};
    for (const auto& [key, value] : changes) {
        const auto same = [k = key](const auto& v) { return v.first == k; };
        const auto found = std::find_if(values.begin(), values.end(), same);
        if (found == values.end()) {
            values.push_back({key, value});
        } else {
            found->second = value;
        }
    }
    QByteArray text = "<dict>";
    for (const auto& [key, value] : values) {
        if (!value.isEmpty()) text += "<key>" + key + "</key>" + value;
    }
    return text + "</dict>";
}

QByteArray document(const QByteArray& tracks) {
    return "<?xml version=\"1.0\"?><plist version=\"1.0\"><array>" + tracks + "</array></plist>";
}

void checkEqualLengths(const PlayListArrays& list) {
    const auto count = list.trackArray.size();
    CHECK(list.artistArray.size() == count);
    CHECK(list.albumArray.size() == count);
    CHECK(list.displayNamesArray.size() == count);
    CHECK(list.durations.size() == count);
    CHECK(list.timescaleArray.size() == count);
    CHECK(list.bassArray.size() == count);
    CHECK(list.trebleArray.size() == count);
    CHECK(list.markAarray.size() == count);
    CHECK(list.markBarray.size() == count);
}

// Reads a document of good, bad, good: only the first row may come out of it, and the damage is named.
void checkStopsAt(const QByteArray& bad) {
    CAPTURE(bad.toStdString());
    PlayListArrays list;
    CHECK(readPlayList(document(track("one") + bad + track("three")), list).has_value());
    REQUIRE(list.count() == 1);
    CHECK(list.trackArray[0] == "/music/one");
    checkEqualLengths(list);
}

}  // namespace

TEST_CASE("a play list is written as an array of dictionaries with eight sorted keys") {
    PlayListArrays list;
    list.insertEntry(
        0, {"/music/a & b.mp3", " ", QStringLiteral("\u00c4lbum"), "A <Title>", 5000000000, 44100, -3, 256, 11, 22});
    CHECK(documentOf(list).toStdString() ==
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
          "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
          "<plist version=\"1.0\">\n<array>\n\t<dict>\n"
          "\t\t<key>album</key>\n\t\t<string>\xc3\x84lbum</string>\n"
          "\t\t<key>artist</key>\n\t\t<string> </string>\n"
          "\t\t<key>bass</key>\n\t\t<integer>-3</integer>\n"
          "\t\t<key>displayName</key>\n\t\t<string>A &lt;Title&gt;</string>\n"
          "\t\t<key>duration</key>\n\t\t<integer>5000000000</integer>\n"
          "\t\t<key>timescale</key>\n\t\t<integer>44100</integer>\n"
          "\t\t<key>track</key>\n\t\t<string>/music/a &amp; b.mp3</string>\n"
          "\t\t<key>treble</key>\n\t\t<integer>256</integer>\n"
          "\t</dict>\n</array>\n</plist>\n");
}

TEST_CASE("the first element is the top row") {
    PlayListArrays list;
    list.insertEntry(0, entry("/music/below"));
    list.insertEntry(0, entry("/music/top"));
    const QByteArray text = documentOf(list);
    CHECK(text.indexOf("/music/top") < text.indexOf("/music/below"));
}

TEST_CASE("a list read back has the same eight columns in the same order, and its marks at the ends") {
    PlayListArrays list;
    list.insertEntry(0, {"/music/one", " ", QString(), "One", 5000000000, 44100, 0, 256, 11, 22});
    list.insertEntry(1, {"/music/two", "A", "B", " Two ", -7, 600, -32768, 32767, 33, 44});
    PlayListArrays back;
    CHECK_FALSE(readPlayList(documentOf(list), back).has_value());
    CHECK(back.trackArray == list.trackArray);
    CHECK(back.artistArray == list.artistArray);
    CHECK(back.albumArray == list.albumArray);
    CHECK(back.displayNamesArray == list.displayNamesArray);
    CHECK(back.durations == list.durations);
    CHECK(back.timescaleArray == list.timescaleArray);
    CHECK(back.bassArray == list.bassArray);
    CHECK(back.trebleArray == list.trebleArray);
    CHECK(back.markAarray == std::vector<std::int64_t>{0, 0});
    CHECK(back.markBarray == list.durations);
}

TEST_CASE("an empty list is an empty array and reads back as one") {
    PlayListArrays list;
    CHECK(documentOf(list).contains("<array/>"));
    CHECK_FALSE(readPlayList(documentOf(list), list).has_value());
    CHECK(list.count() == 0);
}

TEST_CASE("keys may come in any order, and keys that nobody knows are passed over") {
    PlayListArrays list;
    const QByteArray shuffled =
        "<dict><key>treble</key><integer>1</integer><key>rating</key><dict><key>track</key><integer>9</integer></dict>"
        "<key>track</key><string>/t</string><key>bass</key><integer>2</integer><key>extra</key><array><true/></array>"
        "<key>timescale</key><integer>3</integer><key>duration</key><integer>4</integer>"
        "<key>displayName</key><string>N</string><key>album</key><string>L</string><key>artist</key><string>R</string>"
        "</dict>";
    CHECK_FALSE(readPlayList(document(shuffled), list).has_value());
    REQUIRE(list.count() == 1);
    CHECK(list.trackArray[0] == "/t");
    CHECK(list.trebleArray[0] == 1);
    CHECK(list.bassArray[0] == 2);
    CHECK(list.timescaleArray[0] == 3);
    CHECK(list.durations[0] == 4);
    CHECK(list.displayNamesArray[0] == "N");
    CHECK(list.albumArray[0] == "L");
    CHECK(list.artistArray[0] == "R");
}

TEST_CASE("an absent artist or album is one space, an empty one stays empty") {
    PlayListArrays list;
    CHECK_FALSE(readPlayList(document(track("one", {{"artist", ""}, {"album", ""}}) +
                                      track("two", {{"artist", "<string/>"}, {"album", "<string></string>"}})),
                             list)
                    .has_value());
    CHECK(list.artistArray == std::vector<QString>{" ", ""});
    CHECK(list.albumArray == std::vector<QString>{" ", ""});
}

TEST_CASE("a duration is read as 64 bits, a time scale as 32, bass and treble as 16") {
    PlayListArrays list;
    CHECK_FALSE(readPlayList(document(track("one", {{"duration", "<integer>5000000000</integer>"},
                                                    {"timescale", "<integer>4294967896</integer>"},
                                                    {"bass", "<integer>65664</integer>"},
                                                    {"treble", "<integer>40000</integer>"}})),
                             list)
                    .has_value());
    CHECK(list.durations[0] == 5000000000);
    CHECK(list.markBarray[0] == 5000000000);
    CHECK(list.timescaleArray[0] == 600);
    CHECK(list.bassArray[0] == 128);
    CHECK(list.trebleArray[0] == -25536);
}

TEST_CASE("numbers may be written as reals, which are truncated, or as text") {
    PlayListArrays list;
    CHECK_FALSE(readPlayList(document(track("one", {{"duration", "<real>600.9</real>"},
                                                    {"timescale", "<string>44100</string>"},
                                                    {"bass", "<real>-1.5</real>"}})),
                             list)
                    .has_value());
    CHECK(list.durations[0] == 600);
    CHECK(list.timescaleArray[0] == 44100);
    CHECK(list.bassArray[0] == -1);
}

TEST_CASE("a track without one of the six required keys ends the reading, the rows before it stay") {
    for (const char* key : {"track", "displayName", "duration", "timescale", "bass", "treble"})
        checkStopsAt(track("two", {{key, ""}}));
}

TEST_CASE("a value of a wrong kind ends the reading, also for artist and album") {
    for (const char* key : {"track", "displayName", "artist", "album"})
        checkStopsAt(track("two", {{key, "<integer>5</integer>"}}));
    for (const char* key : {"duration", "timescale", "bass", "treble"}) {
        checkStopsAt(track("two", {{key, "<string>many</string>"}}));
        checkStopsAt(track("two", {{key, "<true/>"}}));
        checkStopsAt(track("two", {{key, "<array/>"}}));
    }
}

TEST_CASE("something that is no dictionary ends the reading") {
    for (const char* other : {"<string>x</string>", "<array/>", "<integer>1</integer>", "<true/>"}) checkStopsAt(other);
}

TEST_CASE("damage inside the document ends the reading, the rows before it stay") {
    checkStopsAt("<dict><key>track</key><string>&broken</string></dict>");
    checkStopsAt("<dict><key>track</key></dict>");
    checkStopsAt("</dict>");
    checkStopsAt(QByteArray(100, '\0'));
}

TEST_CASE("a document cut in its second row keeps the first") {
    const QByteArray whole = document(track("one") + track("two"));
    const qsizetype second = whole.indexOf("/music/two");
    PlayListArrays list;
    CHECK(readPlayList(whole.first(second + 4), list).has_value());
    CHECK(list.count() == 1);
    checkEqualLengths(list);
}

TEST_CASE("what is no array of tracks gives no rows and is named damaged") {
    for (const char* text : {"", "hello", "<plist><dict/></plist>", "<plist><string>a</string></plist>", "<html/>"}) {
        CAPTURE(text);
        PlayListArrays list;
        CHECK(readPlayList(text, list).has_value());
        CHECK(list.count() == 0);
    }
}

TEST_CASE("a hundred thousand tracks come back whole") {
    PlayListArrays list;
    for (int i = 0; i < 100000; ++i) {
        PlayListEntry row = entry(QStringLiteral("/music/%1 & more.mp3").arg(i));
        row.duration = i;
        list.insertEntry(i, row);
    }
    PlayListArrays back;
    CHECK_FALSE(readPlayList(documentOf(list), back).has_value());
    CHECK(back.trackArray == list.trackArray);
    CHECK(back.durations == list.durations);
}

TEST_CASE("paths that XML cannot hold come back as they were, and all others are written as they are") {
    const auto text = [](const char* bytes) { return pathFromBytes(bytes); };
    const std::vector<QString> paths = {text("/m/plain.wav"),
                                        text("/m/\xc3\xbc & \xf0\x9f\x8e\xb8 100%.wav"),
                                        text("/m/tab\tline\nreturn\r.wav"),
                                        text("/m/bell\x07 \x1b.wav"),
                                        text("/m/caf\xe9 100%.wav"),
                                        text("/m/\xef\xbf\xbe.wav")};
    PlayListArrays list;
    for (const QString& path : paths) list.insertEntry(list.count(), entry(path));
    const QByteArray document = documentOf(list);
    CHECK(document.contains("<string>/m/plain.wav</string>"));
    CHECK(document.contains("<string>/m/\xc3\xbc &amp; \xf0\x9f\x8e\xb8 100%.wav</string>"));
    CHECK(document.contains("<string>/m/tab\tline\nreturn&#13;.wav</string>"));
    CHECK(document.contains("<string>file:///m/bell%07%20%1B.wav</string>"));
    CHECK(document.contains("<string>file:///m/caf%E9%20100%25.wav</string>"));
    PlayListArrays read;
    CHECK_FALSE(readPlayList(document, read));
    CHECK(read.trackArray == paths);
    CHECK(documentOf(read) == document);
}
