// How a loop is played, and what of it is kept. Values and pure functions, any thread.
#pragma once

#include "practice/Marks.h"
#include "practice/PracticeRecord.h"

namespace qm {

// As it is played just now. The speed has no direction.
struct LoopSettings {
    Marks marks;
    double speed = 1;
    double cents = 0;
};

// Speeds, or cents, that nobody can tell apart.
bool isSameSetting(double one, double other);

// To the digits that the file has: the player's own numbers have fewer.
double keptSetting(double value);

// Marks, and speed and pitch where they are not neutral.
void putSettings(KeptLoop& loop, const LoopSettings& now);
bool hasSameSettings(const KeptLoop& one, const KeptLoop& other);

// A speed or pitch that the loop does not have is never another.
bool isPlayedOtherwise(const KeptLoop& loop, const LoopSettings& now);

}  // namespace qm
