#include "practice/PracticeFile.h"

#include <doctest/doctest.h>

#include <QJsonArray>

#include "practice/JsonText.h"

using namespace qm;

namespace {

const QByteArray kText = R"({
  "artist": "Marlow Quartet",
  "format": 1,
  "last": {
    "a": 3175200,
    "b": 4034312,
    "bass": 148,
    "cents": -100,
    "changed": 1795000000000,
    "position": 3370563,
    "speed": 0.75,
    "treble": 128
  },
  "loops": [
    {
      "a": 3175200,
      "b": 4034312,
      "bpm": 98.56,
      "cents": -100,
      "changed": 1795000000000,
      "id": "8c1f2a",
      "name": "Bridge",
      "speed": 0.75
    },
    {
      "id": "77",
      "removed": 1795000000001
    }
  ],
  "paths": [
    "/Music/Night Ferry/02 Blue Lantern.m4a"
  ],
  "scale": 44100,
  "sound": "q1-5f0c",
  "title": "Blue Lantern"
}
)";

ReadRecord read(const QByteArray& text) {
    const auto object = objectOf(text);
    REQUIRE(object);
    return readRecord(*object);
}

QByteArray written(const PracticeRecord& record) {
    return jsonText(recordObject(record));
}

QByteArray replaced(QByteArray text, const QByteArray& part, const QByteArray& by) {
    REQUIRE(text.contains(part));
    return text.replace(part, by);
}

}  // namespace

TEST_CASE("A record is read, and written as it stood") {
    const ReadRecord all = read(kText);
    const PracticeRecord& record = all.record;
    CHECK(all.unreadLoops == 0);
    CHECK(all.unreadFields == 0);
    CHECK(all.loops == 1);
    CHECK(all.complaint().isEmpty());
    CHECK(record.scale == 44100);
    CHECK(record.paths == QStringList{"/Music/Night Ferry/02 Blue Lantern.m4a"});
    REQUIRE(record.keptLoops().size() == 1);
    const KeptLoop& loop = *record.keptLoops()[0];
    CHECK(loop.name == "Bridge");
    CHECK(loop.a == 3175200);
    CHECK(loop.b == 4034312);
    CHECK(loop.speed == 0.75);
    CHECK(loop.cents == -100);
    CHECK(loop.bpm == 98.56);
    CHECK(loop.changed == 1795000000000);
    CHECK(record.loops[1].removed == 1795000000001);
    REQUIRE(record.last);
    CHECK(record.last->position == 3370563);
    CHECK(record.last->bass == 148);
    CHECK(written(record) == kText);
}

TEST_CASE("Fields that this program does not know are kept at every level while it changes others") {
    QByteArray text = replaced(kText, "\"format\": 1", "\"format\": 7,\n  \"further\": {\"x\": [1, 2.5, null, true]}");
    text = replaced(text, "\"name\": \"Bridge\"", "\"colour\": \"red\",\n\"name\": \"Bridge\"");
    text = replaced(text, "\"position\":", "\"heard\": 12,\n\"position\":");
    text = replaced(text, "\"id\": \"77\"", "\"by\": \"me\", \"id\": \"77\"");
    PracticeRecord record = read(text).record;
    record.loops[0].loop->name = "Chorus";
    record.loops[0].loop->speed.reset();
    record.last->position = 5;
    const QJsonObject object = recordObject(record);
    CHECK(object["format"].toInt() == 7);
    CHECK(object["further"].toObject()["x"].toArray().size() == 4);
    const QJsonObject loop = object["loops"].toArray()[0].toObject();
    CHECK(loop["colour"] == "red");
    CHECK(loop["name"] == "Chorus");
    CHECK_FALSE(loop.contains("speed"));
    CHECK(object["loops"].toArray()[1].toObject()["by"] == "me");
    CHECK(object["last"].toObject()["heard"] == 12);
    CHECK(object["last"].toObject()["position"] == 5);
}

TEST_CASE("A loop that cannot be read is left out, counted, and stays in the file as it stood") {
    const char* const spoilt[] = {"5",
                                  "null",
                                  "[]",
                                  "{}",
                                  R"({"id": "x", "a": 1})",
                                  R"({"id": "x", "a": 1.5, "b": 9})",
                                  R"({"id": "x", "a": "1", "b": 9})",
                                  R"({"id": 7, "a": 1, "b": 9})",
                                  R"({"id": "", "a": 1, "b": 9})",
                                  R"({"a": 1, "b": 9})",
                                  R"({"id": "x", "a": 1e300, "b": 9})",
                                  R"({"id": "8c1f2a", "a": 1, "b": 9})",
                                  R"({"id": "x", "removed": "yes"})"};
    for (const char* one : spoilt) {
        CAPTURE(one);
        const QByteArray text =
            replaced(kText, "    {\n      \"id\": \"77\"", QByteArray(one) + ",\n    {\n      \"id\": \"77\"");
        ReadRecord all = read(text);
        CHECK(all.loops == 2);
        CHECK(all.unreadLoops == 1);
        CHECK(all.complaint() == "1 of 2 loops could not be read.");
        CHECK(all.record.keptLoops().size() == 1);
        all.record.loops[0].loop->name = "Other";
        const QJsonArray loops = recordObject(all.record)["loops"].toArray();
        REQUIRE(loops.size() == 3);
        CHECK(loops[0].toObject()["name"] == "Other");
        CHECK(QJsonArray{loops[1]} == QJsonArray{objectOf("{\"v\": " + QByteArray(one) + "}")->value("v")});
    }
}

TEST_CASE("A field that cannot be read is left out, and stays until the program has another value for it") {
    struct {
        const char* field;
        const char* spoilt;
    } const fields[] = {{"\"speed\": 0.75\n", "\"speed\": \"fast\"\n"},
                        {"\"speed\": 0.75\n", "\"speed\": 9\n"},
                        {"\"cents\": -100,\n      \"ch", "\"cents\": 5000,\n      \"ch"},
                        {"\"bpm\": 98.56", "\"bpm\": 3"},
                        {"\"name\": \"Bridge\"", "\"name\": 3"},
                        {"\"bass\": 148", "\"bass\": 999"},
                        {"\"title\": \"Blue Lantern\"", "\"title\": [5]"}};
    for (const auto& f : fields) {
        CAPTURE(f.spoilt);
        const QByteArray text = replaced(kText, f.field, f.spoilt);
        const ReadRecord all = read(text);
        CHECK(all.unreadFields == 1);
        CHECK(all.unreadLoops == 0);
        CHECK(recordObject(all.record) == *objectOf(text));
    }
    PracticeRecord record = read(replaced(kText, "\"speed\": 0.75\n", "\"speed\": \"fast\"\n")).record;
    CHECK_FALSE(record.loops[0].loop->speed);
    record.loops[0].loop->speed = 0.5;
    CHECK(recordObject(record)["loops"].toArray()[0].toObject()["speed"] == 0.5);
}

TEST_CASE("An object without anything is a record without loops") {
    const ReadRecord all = read("{}");
    CHECK(all.record.loops.empty());
    CHECK(all.record.scale == 0);
    CHECK(read(R"({"loops": {"a": 1}, "paths": 5, "last": []})").record.loops.empty());
    CHECK(recordObject(read(R"({"loops": {"a": 1}})").record)["loops"].isObject());
}

TEST_CASE("What is no JSON object is none") {
    for (const char* text : {"", "{", "[]", "5", "{} x", "\xff\xfe", "{\"a\": 1"}) {
        CAPTURE(text);
        CHECK_FALSE(objectOf(text));
    }
}

TEST_CASE("No more than a thousand loops are read; the others stay in the file") {
    QJsonArray loops;
    for (int i = 0; i < 1003; ++i) loops.append(QJsonObject{{"id", QString::number(i)}, {"a", 1}, {"b", 2}});
    const ReadRecord all = readRecord({{"loops", loops}});
    CHECK(all.record.keptLoops().size() == 1000);
    CHECK(all.unreadLoops == 3);
    CHECK(recordObject(all.record)["loops"].toArray().size() == 1003);
}

TEST_CASE("A name of more than 200 characters is cut where it is shown, not in the file") {
    const QByteArray name(300, 'n');
    const QByteArray text = replaced(kText, "Bridge", name);
    PracticeRecord record = read(text).record;
    CHECK(record.loops[0].loop->name.size() == 200);
    CHECK(written(record) == text);
}

TEST_CASE("A path of bytes that are no text comes back as it was") {
    PracticeRecord record;
    const QString path = QString("/music/caf") + QChar(0xdce9) + ".mp3 \U0001f3b5 \"q\" \\ \n \x01";
    record.paths = {path};
    const QByteArray text = written(record);
    CHECK(text.contains("\\udce9"));
    CHECK(text.contains("\xf0\x9f\x8e\xb5"));
    CHECK(read(text).record.paths == QStringList{path});
}

TEST_CASE("A record of another scale means the same moments") {
    const PracticeRecord record = read(kText).record.inScale(48000);
    CHECK(record.scale == 48000);
    CHECK(record.loops[0].loop->a == 3456000);
    CHECK(record.loops[0].loop->b == 4391088);
    CHECK(record.last->position == 3668640);
    CHECK(read(written(record)).record.loops[0].loop->b == 4391088);
}
