#include "support/widgets/FakeCapture.h"

#include <fstream>

namespace qm {

namespace {

class FakeDevice : public QTCaptureDevice {
public:
    explicit FakeDevice(FakeCapture& capture) : m_capture(capture) {}

    bool open() override {
        m_capture.log.add("open device");
        return m_capture.deviceOpens;
    }

private:
    FakeCapture& m_capture;
};

class FakeOutput : public QTCaptureMovieFileOutput {
public:
    explicit FakeOutput(FakeCapture& capture) : m_capture(capture) {}

    void recordToOutputFileURL(const std::optional<std::string>& path) override {
        m_capture.log.add("record " + path.value_or("nil"));
        if (path && m_capture.writesFiles) std::ofstream(*path) << "recording " << ++m_capture.recordings;
    }
    std::optional<Error> error() const override { return m_capture.error; }

private:
    FakeCapture& m_capture;
};

class FakeSession : public QTCaptureSession {
public:
    explicit FakeSession(FakeCapture& capture) : m_capture(capture) {}

    bool addInput(std::shared_ptr<QTCaptureDeviceInput>) override {
        m_capture.log.add("add input");
        return m_hasInput = m_capture.addsInput;
    }
    bool addOutput(std::shared_ptr<QTCaptureMovieFileOutput> output) override {
        m_capture.log.add(output ? "add output" : "add no output");
        return output != nullptr;
    }
    void startRunning() override {
        m_capture.log.add("start running");
        m_running = m_hasInput && m_capture.runs;
    }
    void stopRunning() override {
        m_capture.log.add("stop running");
        m_running = false;
    }
    bool isRunning() const override { return m_running; }
    QTCaptureAudioLevels audioLevels() const override { return m_running ? m_capture.levels : QTCaptureAudioLevels(); }

private:
    FakeCapture& m_capture;
    bool m_hasInput = false;
    bool m_running = false;
};

}  // namespace

std::shared_ptr<QTCaptureDevice> FakeCapture::defaultInputDeviceWithMediaType(QTMediaType) {
    log.add("default sound input");
    return hasDevice ? std::make_shared<FakeDevice>(*this) : nullptr;
}

std::shared_ptr<QTCaptureDeviceInput> FakeCapture::makeDeviceInput(std::shared_ptr<QTCaptureDevice>) {
    log.add("device input");
    return std::make_shared<QTCaptureDeviceInput>();
}

std::shared_ptr<QTCaptureMovieFileOutput> FakeCapture::makeMovieFileOutput() {
    log.add("movie file output");
    return makesOutput ? std::make_shared<FakeOutput>(*this) : nullptr;
}

std::shared_ptr<QTCaptureSession> FakeCapture::makeSession() {
    log.add("session");
    return std::make_shared<FakeSession>(*this);
}

}  // namespace qm
