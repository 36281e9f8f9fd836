// A track's loops as a text that people can read and send to each other, and back. Pure, any thread.
//
//   Title: Blue Lantern
//   Artist: Marlow Quartet
//   Sound: q1-5f0c...
//   Rate: 44100
//   0:01:12.000000  0:01:31.481000  0.75  -100  Bridge
//
// A tab stands between the fields of a loop; a speed or cents that are as they are read "-".
#pragma once

#include <QByteArray>

#include "practice/PracticeRecord.h"

namespace qm {

QByteArray loopText(const PracticeRecord& record);

struct ReadLoopText {
    PracticeRecord record;  // sound, scale, title, artist and loops; the loops have no id that lasts
    int skipped = 0;        // lines that are none
};

// `scale` is taken where the text has no rate.
ReadLoopText readLoopText(const QByteArray& text, std::int64_t scale);

}  // namespace qm
