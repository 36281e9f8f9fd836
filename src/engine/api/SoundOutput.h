// How the sound output of a movie does.
#pragma once

namespace qm {

enum class SoundOutput {
    Works,
    Absent,         // there is none: time goes on in silence
    DoesNotAnswer,  // it takes no sound, or has been waited for too long
};

}  // namespace qm
