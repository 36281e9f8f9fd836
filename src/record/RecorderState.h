// What a recorder keeps: the parts of its capture, the recording's start and clock, and what it showed last. The
// capture parts are made once and live to the end of the run. Main thread only.
#pragma once

#include <QDateTime>
#include <QTimer>
#include <cstdint>
#include <memory>

#include "engine/api/QTCapture.h"

namespace qm {

struct RecorderState {
    std::shared_ptr<QTCaptureDevice> audioDevice;  // none when no sound input could be opened
    std::shared_ptr<QTCaptureSession> captureSession;
    std::shared_ptr<QTCaptureDeviceInput> captureAudioDeviceInput;
    std::shared_ptr<QTCaptureMovieFileOutput> captureMovieFileOutput;

    QDateTime audioRecordStartTime;
    std::unique_ptr<QTimer> audioRecordTimer;  // none while the clock does not run
    std::int32_t auseconds = 0;
    std::int32_t auminutes = 0;
    std::int32_t auhours = 0;

    bool inputGaveNothing = false;  // the session would not run when it was last asked to
};

}  // namespace qm
