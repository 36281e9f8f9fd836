// A sound input as the capture session needs it: it hands out frames on a thread of its own until it is destroyed or
// lost. All methods belong to the main thread.
#pragma once

#include <functional>
#include <memory>
#include <span>

#include "engine/api/Result.h"
#include "engine/sound/StereoFrame.h"

namespace qm {

// Whoever takes the sound. Both are called on the device's threads, and never lock, allocate, log or wait.
class InputSink {
public:
    virtual void take(std::span<const StereoFrame> frames) noexcept = 0;
    virtual void inputLost() noexcept = 0;  // the device has vanished: no more frames will come

protected:
    ~InputSink() = default;
};

class SoundInput {
public:
    virtual ~SoundInput() = default;  // after it take() is not called any more

    virtual int sampleRate() const = 0;  // frames a second, up to 48000
    virtual bool start() = 0;            // begins to call take(); false when the device has gone
};

using InputFactory = std::function<Result<std::unique_ptr<SoundInput>>(InputSink& sink)>;

// The system's default input.
Result<std::unique_ptr<SoundInput>> openSystemInput(InputSink& sink);

}  // namespace qm
