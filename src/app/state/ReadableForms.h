// Values and times in words: the short form of the sliders' bubble, and the spoken form for assistive tools. Any
// thread.
#pragma once

#include <QString>

namespace qm {

QString readableSpeed(double rate);       // "0.75×", "0.75× backward"
QString spokenSpeed(double rate);         // "0.75 times, forward"
QString readablePitch(double cents);      // "−1.5 semitones"
QString spokenPitch(double cents);        // "minus 150 cents"
QString readableGain(double gain);        // "62 %"
QString spokenGain(double gain);          // "62 percent"
QString readableBalance(double balance);  // "L 0.2", "Centre"
QString spokenBalance(double balance);    // "left 20 percent"
QString readableTone(double value);       // "148 of 256"
QString spokenTone(double value);
QString readableTime(double seconds);                  // "1:23.4"
QString spokenTime(double seconds, double ofSeconds);  // "1 minute 23 seconds of 4 minutes 12"
QString spokenDuration(double seconds);                // "4 minutes 12 seconds"

// At most two decimals and none that are zero; a minus sign, not a hyphen.
QString shortNumber(double value);
// "0.75× speed", "1.5× backward"; empty at the normal speed.
QString speedTag(double rate);
// "−100 cents"; empty at the original pitch.
QString pitchTag(double cents);
// The same to be read from afar: "75 %", backward "−75 %"; in semitones "+1", "−1.5".
QString speedPercent(double rate);
QString pitchSteps(double cents);

}  // namespace qm
