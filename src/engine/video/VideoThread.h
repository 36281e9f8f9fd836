// The threads that keep the picture of the moment in a mailbox of one. They follow the clock of the sound, which never
// waits for them, and sleep while nothing changes.
//
// One decodes ahead and makes the next pictures ready to be painted. The other one only waits for the moment at which
// the next of them is due, puts it into the mailbox and tells the viewer; so no picture waits for a long decoding.
//
// The file is opened when somebody first watches, on the decoding thread; if that fails there is no picture, and a log
// line.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "engine/video/PictureServer.h"

namespace qm {

class VideoThread {
public:
    // `clock` is asked from both threads.
    VideoThread(VideoOpener open, VideoClock clock);
    ~VideoThread();

    // Any thread. Nothing is decoded and no memory is held while nobody watches. The viewer before is not called any
    // more when it returns.
    void setViewer(std::optional<PictureViewer> viewer);
    void clockChanged();                                  // its answers may have jumped, or go on after standing still
    std::shared_ptr<const VideoPicture> picture() const;  // null before the first one

private:
    using Instant = std::chrono::steady_clock::time_point;

    void decode();
    bool awaitDecoding(PictureSize& place);
    void present();
    bool awaitDue(Instant due);
    Instant show(const VideoMoment& moment, Instant asked);

    static constexpr std::size_t kBudget = std::size_t{256} << 20;

    const VideoClock m_clock;
    PictureServer m_server;  // decoding thread only

    // Presenting thread only.
    VideoMoment m_lastMoment;
    Instant m_lastMoved;  // when the clock was last seen to have moved
    int m_looksLeft = 0;  // at a clock that has been told something, until it surely does as it was told

    mutable std::mutex m_mutex;
    std::condition_variable m_decode;
    std::condition_variable m_present;
    std::optional<PictureViewer> m_viewer;
    PictureSchedule m_schedule;
    std::shared_ptr<const VideoPicture> m_picture;
    bool m_decodingWanted = false;
    bool m_scheduleChanged = false;
    bool m_clockChanged = false;
    bool m_closing = false;
    std::thread m_decoder;
    std::thread m_presenter;
};

}  // namespace qm
