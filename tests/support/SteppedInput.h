// A sound input that hands out exactly the frames a test gives it, so that tests decide when time goes on.
#pragma once

#include <vector>

#include "engine/capture/SoundInput.h"

namespace qm::test {

class SteppedInput : public SoundInput {
public:
    // What the tests see of the input that was opened last. It outlives the input.
    struct Hand {
        SteppedInput* input = nullptr;  // null while none is open
        bool present = true;            // there is a device to be opened
        int opened = 0;

        InputFactory factory(int sampleRate = 44100) {
            return [this, sampleRate](InputSink& sink) -> Result<std::unique_ptr<SoundInput>> {
                if (!present) return Error{ErrorCategory::Device, "no sound input can be opened"};
                ++opened;
                return std::unique_ptr<SoundInput>(std::make_unique<SteppedInput>(*this, sink, sampleRate));
            };
        }
    };

    SteppedInput(Hand& hand, InputSink& sink, int sampleRate) : m_hand(hand), m_sink(sink), m_sampleRate(sampleRate) {
        m_hand.input = this;
    }
    ~SteppedInput() override {
        if (m_hand.input == this) m_hand.input = nullptr;
    }

    int sampleRate() const override { return m_sampleRate; }
    bool start() override { return m_running = m_hand.present; }

    // As the device's callback would.
    void step(std::span<const StereoFrame> frames) {
        if (m_running) m_sink.take(frames);
    }
    void vanish() {
        m_running = false;
        m_sink.inputLost();
    }

private:
    Hand& m_hand;
    InputSink& m_sink;
    const int m_sampleRate;
    bool m_running = false;
};

}  // namespace qm::test
