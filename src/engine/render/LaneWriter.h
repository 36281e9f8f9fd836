// Turns what is wanted into lanes of finished sound and splices them into what is playing. A change is rendered from a
// place just ahead of what the device has taken and cross-faded in there, so nothing that was rendered ahead is heard
// out first. Render thread only; it waits for nothing but the cache, and what the cache's interrupt() cuts short is
// rendered anew at the next call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/output/OutputCallback.h"
#include "engine/realtime/ThreadRole.h"
#include "engine/render/PcmCache.h"
#include "engine/render/RenderRequest.h"
#include "engine/render/Renderer.h"

namespace qm {

class LaneWriter {
public:
    LaneWriter(PcmCache& cache, OutputCallback& output);

    // Splices to what is wanted, unless it plays already or the splice before is still under way.
    void follow(const RenderRequest& wanted);
    bool isInForce() const { return m_shapeValid && !m_spliceWaits; }  // what was wanted last is spliced in

    // Writes the lane on by one block, unless so many frames lie ready. One block, so that requests are seen to between
    // blocks.
    void writeOn(std::size_t ahead);
    bool canWriteOn(std::size_t ahead) const { return m_shapeValid && wantsFrames(ahead); }

    // The splice before holds up the next one until the device has played on.
    bool waitsForSplice() const { return m_spliceWaits; }

    // Stretches with less effort from now on. False when it does so already, or does not stretch at all.
    bool lighten();

private:
    // What a lane was rendered for: while it stays the same there is nothing to splice.
    struct Shape {
        RenderSettings settings;
        bool backward = false;
        bool loops = false;
        std::int64_t rangeBegin = 0;
        std::int64_t rangeEnd = 0;
        std::uint64_t seek = 0;

        friend bool operator==(const Shape&, const Shape&) = default;
    };

    std::size_t frames(double seconds) const;
    std::size_t firstFrames(const Shape& shape) const;
    Shape shapeOf(const RenderRequest& wanted) const;
    bool needsSplice(const RenderRequest& wanted, const Shape& shape) const;
    std::uint64_t frameToChangeAt(const Shape& shape) const;
    Playhead playheadFrom(std::int64_t position, const Shape& shape, bool moves);
    bool startJump(Lane& lane, const Playhead& playhead, const Shape& shape);
    bool startContinuous(Lane& lane, const Playhead& playhead, const Shape& shape, std::uint64_t atFrame);
    std::size_t alignedTo(std::uint64_t atFrame, std::span<const StereoFrame> candidate);
    void publish(Lane& lane, const Splice& splice, const Shape& shape);
    bool wantsFrames(std::size_t ahead) const;

    const ThreadRole m_renderThread;
    PcmCache& m_cache;
    OutputCallback& m_output;
    Renderer m_renderer;
    Shape m_shape;
    bool m_shapeValid = false;    // false: whatever is asked for must be rendered anew
    bool m_spliceWaits = false;   // the last splice is still under way, and the next one is wanted already
    bool m_outsideRange = false;  // paused outside the loop's range: it is entered when play begins
    bool m_light = false;
    std::int64_t m_laneFrames = 0;  // length of the lane being written, when it has one
    std::vector<StereoFrame> m_block;
    std::vector<StereoFrame> m_heardOn;  // what the playing lane would play on, for alignment
};

}  // namespace qm
