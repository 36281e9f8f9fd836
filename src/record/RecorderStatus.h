// What a recorder's window says of it: read again and again, it never acts. Main thread only.
#pragma once

#include <QString>

#include "record/RecorderState.h"

namespace qm {

struct RecorderStatus {
    bool recording = false;
    bool hasInput = true;  // as far as is known
    QString text;          // a line in the user's words
    QTCaptureAudioLevels levels;
};

// It was to record, and there is nothing to record from.
bool lacksInput(const RecorderState& recorder);

// `recording` is the recorder's own flag, which knows nothing of a recording that has ended by itself.
RecorderStatus recorderStatus(const RecorderState& recorder, bool recording);

}  // namespace qm
