// Two lanes of finished sound: one plays while the other is free to be written, and a splice cross-fades from the one
// to the other. Whatever changes the sound to come (a seek, a new speed, another loop) is rendered into the idle lane
// and spliced in; nothing that was rendered ahead needs to be heard out first. Never locks, allocates or waits.
#pragma once

#include <array>
#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>

#include "engine/output/Lane.h"
#include "engine/realtime/ThreadRole.h"

namespace qm {

// Switches to the idle lane when the playing one has given `atFrame` frames, or at once when it has given more or has
// run dry, cross-fading over `fadeFrames`. Unrelated sound is faded at equal power and begins with its first frame. The
// same sound rendered twice is faded at equal gain, and goes on where it is, however late.
struct Splice {
    std::uint64_t atFrame = 0;
    std::uint32_t fadeFrames = 0;
    bool unrelated = true;
};

class LanePair {
public:
    explicit LanePair(std::size_t laneFrames) : m_lanes{Lane(laneFrames), Lane(laneFrames)} {}

    // Render thread. The lane that is free to be written, or none while a splice is still under way.
    Lane* idle();

    // Render thread. The lane that the newest splice leads to: more of the sound is written to its end.
    Lane& beingWritten() {
        assert(m_writer.isHere());
        return m_lanes[m_written];
    }
    const Lane& beingWritten() const {
        assert(m_writer.isHere());
        return m_lanes[m_written];
    }

    // Render thread, when the idle lane has been written.
    void splice(const Splice& splice);

    // Any thread.
    std::uint64_t splices() const { return m_issued.load(std::memory_order_acquire); }     // asked for so far
    std::size_t framesReady() const { return m_lanes[splices() % 2].frames.available(); }  // before more are needed

    // The callback, or in its place while none runs.
    const Lane& playing() const { return m_lanes[m_playing]; }

    // Looks for a splice, and carries it out when it is due. In silence it is due at once and needs no fade. True when
    // another lane plays from now on.
    bool takeSplice(bool inSilence);

    // How many frames can be read at once, at most so many; 0 when the lane is dry.
    std::size_t framesInOneGo(std::size_t most) const;

    // Reads so many, in the middle of a fade mixed from both lanes.
    void read(std::span<StereoFrame> out);

    // The playing lane is dry: a fade into it is over if nothing more will come.
    void runDry();

    // When whoever was in the callback's place is known to have done with it: the next one takes it.
    void handOverReading() {
        for (Lane& lane : m_lanes) lane.frames.handOverConsumer();
    }

private:
    void change(bool inSilence);
    void catchUp();
    void mixOldLane(std::span<StereoFrame> out);
    void finishFade();

    std::array<Lane, 2> m_lanes;
    const ThreadRole m_writer;
    std::size_t m_written = 0;                // writer only
    Splice m_pending;                         // written before m_issued is raised
    std::atomic<std::uint64_t> m_issued{0};   // splices asked for
    std::atomic<std::uint64_t> m_settled{0};  // splices carried out, old lane drained

    // Callback only.
    std::size_t m_playing = 0;
    std::uint64_t m_taken = 0;  // splices seen
    bool m_due = false;         // one of them is still to be carried out
    bool m_fading = false;
    std::uint32_t m_fadeFrames = 0;
    std::uint32_t m_fadeDone = 0;
    std::array<StereoFrame, 256> m_old{};  // of the lane that fades out
};

}  // namespace qm
