#include "app/DeferredCapture.h"

#include "app/LiveWait.h"

namespace qm {

CaptureEngine* DeferredCapture::capture() {
    if (!m_capture && m_engine.module()) m_capture = m_engine.module()->makeCaptureEngine(waitWithLiveWindow);
    return m_capture.get();
}

std::shared_ptr<QTCaptureDevice> DeferredCapture::defaultInputDeviceWithMediaType(QTMediaType type) {
    return capture() ? capture()->defaultInputDeviceWithMediaType(type) : nullptr;
}

std::shared_ptr<QTCaptureDeviceInput> DeferredCapture::makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) {
    return capture() ? capture()->makeDeviceInput(std::move(device)) : nullptr;
}

std::shared_ptr<QTCaptureMovieFileOutput> DeferredCapture::makeMovieFileOutput() {
    return capture() ? capture()->makeMovieFileOutput() : nullptr;
}

std::shared_ptr<QTCaptureSession> DeferredCapture::makeSession() {
    return capture() ? capture()->makeSession() : nullptr;
}

}  // namespace qm
