// A movie on a device that plays only what the test asks for.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "engine/movie/FileMovie.h"
#include "support/Signals.h"

namespace qm::test {

constexpr int kRate = 44100;

struct Player {
    // Coded frames, or another sound.
    explicit Player(std::int64_t length = 10 * kRate, std::function<StereoFrame(std::int64_t)> sound = codedFrame,
                    double preferredRate = 1)
        : Player(computed(length, std::move(sound), preferredRate)) {}

    explicit Player(OpenedMedia media)
        : movie(std::make_unique<FileMovie>(registry, std::make_shared<Reaper>(), std::move(media),
                                            [this](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
                                                auto stepped = std::make_unique<SteppedOutput>(source);
                                                device = stepped.get();
                                                return std::unique_ptr<AudioOutput>(std::move(stepped));
                                            })) {
        settle();
    }

    // Waits until the newest request is in force.
    void settle() const {
        waitFor([&] { return movie->renderThread().isCaughtUp(); });
    }

    // Plays in callbacks of 100 frames, each when its sound is ready, or when it has not come for a while.
    std::vector<StereoFrame> play(std::size_t frames, int patience = 300) {
        std::vector<StereoFrame> sound(frames);
        for (std::size_t done = 0; done < frames; done += 100) {
            waitFor(
                [&] {
                    const RenderThread& render = movie->renderThread();
                    return render.framesReady() >= 3000 || (render.framesReady() >= 200 && render.isCaughtUp());
                },
                patience);
            device->step(std::span(sound).subspan(done, std::min<std::size_t>(100, frames - done)));
        }
        return sound;
    }

    // Play pressed and, so that the device pulls from the first frame on, waited for.
    void start(float rate = 1) {
        movie->play();
        movie->setRate(rate);
        settle();
    }

    // The device plays on until nothing sounds any more.
    void pause() {
        movie->stop();
        play(1000);
        settle();
    }

    static void waitFor(const std::function<bool()>& condition, int attempts = 20000) {
        for (int i = 0; i < attempts && !condition(); ++i) std::this_thread::sleep_for(std::chrono::microseconds(500));
    }

    std::int64_t now() const { return movie->currentTime().timeValue; }

    MovieRegistry registry;
    SteppedOutput* device = nullptr;
    std::unique_ptr<FileMovie> movie;

private:
    static OpenedMedia computed(std::int64_t length, std::function<StereoFrame(std::int64_t)> sound,
                                double preferredRate) {
        OpenedMedia media;
        media.description.preferredRate = preferredRate;
        media.description.displayName = "coded";
        media.description.hasSound = true;
        media.sound = std::make_unique<ComputedSound>(length, std::move(sound));
        return media;
    }
};

inline QTTime at(std::int64_t frames) {
    return {frames, kRate, 0};
}

}  // namespace qm::test
