// Sound capture, out of the program's way until it is needed: it comes with the engine's module, for which the first
// set-up of a recorder waits. Without the module there is no input. Main thread only.
#pragma once

#include "app/DeferredEngine.h"

namespace qm {

class DeferredCapture : public CaptureEngine {
public:
    explicit DeferredCapture(DeferredEngine& engine) : m_engine(engine) {}

    std::shared_ptr<QTCaptureDevice> defaultInputDeviceWithMediaType(QTMediaType type) override;
    std::shared_ptr<QTCaptureDeviceInput> makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) override;
    std::shared_ptr<QTCaptureMovieFileOutput> makeMovieFileOutput() override;
    std::shared_ptr<QTCaptureSession> makeSession() override;

private:
    CaptureEngine* capture();  // null without the module

    DeferredEngine& m_engine;
    std::unique_ptr<CaptureEngine> m_capture;
};

}  // namespace qm
