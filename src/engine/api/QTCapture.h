// The one interface between the program and sound capture: the default input device, its place in a session, and the
// movie file that a session writes. Tests build the program against a fake of it. Main thread only; sound travels on
// threads of the implementation's own. Failures leave a log line.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "engine/api/Result.h"

namespace qm {

enum class QTMediaType { Sound };

class QTCaptureDevice {
public:
    virtual ~QTCaptureDevice() = default;
    virtual bool open() = 0;  // true when the device can be used
};

// A device as the input of a session.
class QTCaptureDeviceInput {
public:
    virtual ~QTCaptureDeviceInput() = default;
};

// Writes the sound of its session to a movie file: no picture, 16-bit stereo, at the device's rate. Whatever happens to
// the program, what was recorded until half a second before is a whole movie.
class QTCaptureMovieFileOutput {
public:
    virtual ~QTCaptureMovieFileOutput() = default;

    // Begins to write to the file, which is made anew; with no path finishes the file before returning.
    // `path` is in the file system's own encoding.
    virtual void recordToOutputFileURL(const std::optional<std::string>& path) = 0;

    // Why the recording that was last begun has ended by itself, or could not begin. None while it goes on and after
    // it was finished as asked. What was recorded until then is kept.
    virtual std::optional<Error> error() const = 0;
};

// Left and right, in dBFS of a sample of 1; the floor is -96.
struct QTCaptureAudioLevels {
    static constexpr float kFloor = -96;
    std::array<float, 2> averagePower{kFloor, kFloor};  // of the last tenth of a second
    std::array<float, 2> peakHold{kFloor, kFloor};      // held for two seconds
};

class QTCaptureSession {
public:
    virtual ~QTCaptureSession() = default;

    virtual bool addInput(std::shared_ptr<QTCaptureDeviceInput> input) = 0;        // of an open device
    virtual bool addOutput(std::shared_ptr<QTCaptureMovieFileOutput> output) = 0;  // also while running
    virtual void startRunning() = 0;
    virtual void stopRunning() = 0;
    virtual bool isRunning() const = 0;                    // sound arrives from an input
    virtual QTCaptureAudioLevels audioLevels() const = 0;  // of what arrives; the floor while not running
};

class CaptureEngine {
public:
    virtual ~CaptureEngine() = default;

    virtual std::shared_ptr<QTCaptureDevice> defaultInputDeviceWithMediaType(QTMediaType type) = 0;  // null if none
    virtual std::shared_ptr<QTCaptureDeviceInput> makeDeviceInput(std::shared_ptr<QTCaptureDevice> device) = 0;
    virtual std::shared_ptr<QTCaptureMovieFileOutput> makeMovieFileOutput() = 0;
    virtual std::shared_ptr<QTCaptureSession> makeSession() = 0;
};

}  // namespace qm
