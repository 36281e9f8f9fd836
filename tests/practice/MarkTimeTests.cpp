#include "practice/MarkTime.h"

#include <doctest/doctest.h>

using namespace qm;

namespace {

constexpr MarkedTrack kTrack{2 * 3600 * 44100ll, 44100};
constexpr Marks kMarks{441000, 882000};  // 10 s, 20 s

}  // namespace

TEST_CASE("A typed time is rounded to the frame") {
    struct {
        const char* text;
        std::int64_t frame;
    } const cases[] = {
        {"15.5", 683550},   {"0:15.5", 683550},      {"0:00:15.500", 683550}, {"15,5", 683550},      {"+0.010", 441441},
        {"-0.010", 440559}, {"\u22120.010", 440559}, {"+0,010", 441441},      {" 15.5 ", 683550},    {"15", 661500},
        {"0:15", 661500},   {"15.000023", 661501},   {"15.000011", 661500},   {"15.000012", 661501}, {"0", 0},
        {"-10", 0},         {"+ 0.010", 441441},     {"0:0:15.5", 683550},    {"-0:01", 396900},
    };
    for (const auto& c : cases) {
        CAPTURE(c.text);
        const TypedMark typed = typedMark(QString::fromUtf8(c.text), Mark::A, kMarks, kTrack);
        CHECK(typed.outcome == Typed::Set);
        CHECK(typed.marks == Marks{c.frame, kMarks.b});
        CHECK(typed.objection().isEmpty());
    }
}

TEST_CASE("Minutes and hours count") {
    CHECK(typedMark("75.5", Mark::B, kMarks, kTrack).marks.b == 3329550);
    CHECK(typedMark("1:15.5", Mark::B, kMarks, kTrack).marks.b == 3329550);
    CHECK(typedMark("0:01:15.500", Mark::B, kMarks, kTrack).marks.b == 3329550);
    CHECK(typedMark("1:02:03.5", Mark::B, kMarks, kTrack).marks.b == 3723 * 44100 + 22050);
    CHECK(typedMark("90:00", Mark::B, kMarks, kTrack).marks.b == 5400 * 44100);
    CHECK(typedMark("2:00:00", Mark::B, kMarks, kTrack).marks.b == kTrack.length);
}

TEST_CASE("What is no time changes nothing") {
    for (const char* text : {"", "x", "1:75", "1:60:00", "1::2", ":5", "5:", "1.2.3", "1.", ".5", "1.1234567", "+-1",
                             "+", "1e3", "0x10", "1:2:3:4", "-", "999999999999999999999"}) {
        CAPTURE(text);
        const TypedMark typed = typedMark(text, Mark::A, kMarks, kTrack);
        CHECK(typed.outcome == Typed::NoTime);
        CHECK(typed.marks == kMarks);
    }
}

TEST_CASE("A time outside the track, or A not before B, is refused in words") {
    const TypedMark late = typedMark("2:00:00.001", Mark::B, kMarks, kTrack);
    CHECK(late.outcome == Typed::OutOfTrack);
    CHECK(late.objection() == "Not within the track.");
    CHECK(typedMark("-10.001", Mark::A, kMarks, kTrack).outcome == Typed::OutOfTrack);
    const TypedMark crossed = typedMark("20", Mark::A, kMarks, kTrack);
    CHECK(crossed.outcome == Typed::NotBeforeB);
    CHECK(crossed.objection() == "A must lie before B.");
    CHECK(crossed.marks == kMarks);
    CHECK(typedMark("9", Mark::B, kMarks, kTrack).outcome == Typed::NotBeforeB);
}

TEST_CASE("The text that is shown changes nothing, though the mark lies between two milliseconds") {
    const Marks marks{441010, 882000};
    CHECK(markText(441010, 44100) == "0:10.000");
    const TypedMark typed = typedMark("0:10.000", Mark::A, marks, kTrack);
    CHECK(typed.outcome == Typed::Unchanged);
    CHECK(typed.marks == marks);
    CHECK(typedMark("10.000", Mark::A, marks, kTrack).marks.a == 441000);
}

TEST_CASE("A mark is shown to the nearest millisecond") {
    CHECK(markText(0, 44100) == "0:00.000");
    CHECK(markText(3175200, 44100) == "1:12.000");
    CHECK(markText(4034312, 44100) == "1:31.481");
    CHECK(markText(22, 44100) == "0:00.000");
    CHECK(markText(23, 44100) == "0:00.001");
    CHECK(markText(60 * 44100 - 1, 44100) == "1:00.000");
    CHECK(markText(3723 * 600 + 3, 600) == "1:02:03.005");
    CHECK(markText(5, 0) == "");
}
