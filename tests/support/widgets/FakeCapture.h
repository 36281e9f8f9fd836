// A capture engine without sound: the test says what is there and what fails, and every call that would change
// something is recorded in order. Main thread only.
#pragma once

#include "engine/api/QTCapture.h"
#include "support/widgets/EventLog.h"

namespace qm {

class FakeCapture : public CaptureEngine {
public:
    explicit FakeCapture(EventLog& eventLog) : log(eventLog) {}

    EventLog& log;
    bool hasDevice = true;
    bool deviceOpens = true;
    bool addsInput = true;
    bool makesOutput = true;
    bool runs = true;            // a session that is started then runs
    bool writesFiles = true;     // a recording is a file with its number in it
    std::optional<Error> error;  // of the output
    QTCaptureAudioLevels levels;
    int recordings = 0;

    std::shared_ptr<QTCaptureDevice> defaultInputDeviceWithMediaType(QTMediaType type) override;
    std::shared_ptr<QTCaptureDeviceInput> makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) override;
    std::shared_ptr<QTCaptureMovieFileOutput> makeMovieFileOutput() override;
    std::shared_ptr<QTCaptureSession> makeSession() override;
};

}  // namespace qm
