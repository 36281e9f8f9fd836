// A sound in which each frame tells how it is played, and the finding of the moment when that changes.
//
// Left and right are one tone a quarter of a turn apart, so the pair turns steadily: how fast is the pitch, which way
// is the direction, and where it stands is the place. Its size swells twenty times a second: how often is the speed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "SoundFile.h"

namespace qm::measure {

Sound makeBeacon(int seconds);

enum class Change {
    Quieter,  // to nothing, or to less than a quarter: pause, gain
    Louder,   // from there: play, gain
    Jump,     // to another place, at normal speed and pitch
    Turn,     // to another pitch or direction: half-way between the two
    Speed     // to another speed: where the two speeds' lines meet
};

// Failure: std::invalid_argument.
Change changeNamed(const std::string& name);

// The first frame not before `from` where the change is heard; none when there is none within three quarters of a
// second. For Turn and Speed the sound has to be steady for that long before and after; a silence would
// move the lines of Speed, so that there is no answer then.
std::optional<std::size_t> findChange(const Sound& recording, Change change, std::size_t from);

// The longest stretch of nothing at all that begins in [from, to), in frames.
std::size_t longestSilence(const Sound& recording, std::size_t from, std::size_t to);

}  // namespace qm::measure
