// The thread that keeps the picture of the moment in a mailbox of one. It follows the clock of the sound, which never
// waits for it, and sleeps while nothing changes. The file is opened when somebody first watches, on this thread; if
// that fails there is no picture, and a log line.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "engine/video/PictureServer.h"

namespace qm {

class VideoThread {
public:
    // `clock` is asked from the video thread.
    VideoThread(VideoOpener open, VideoClock clock);
    ~VideoThread();

    // Any thread.
    void setWatched(bool watched);  // nothing is decoded and no memory is held while nobody watches
    void clockChanged();            // its answers may have jumped, or go on after standing still
    std::shared_ptr<const VideoPicture> picture() const;  // null before the first one

private:
    void run();
    bool awaitWork(double seconds);
    void serve();

    static constexpr std::size_t kBudget = std::size_t{96} << 20;

    const VideoClock m_clock;
    PictureServer m_server;  // video thread only
    int m_restless = 0;      // looks at a standing clock that are still to come

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::shared_ptr<const VideoPicture> m_picture;
    bool m_watched = false;
    bool m_clockChanged = false;
    bool m_closing = false;
    std::thread m_thread;
};

}  // namespace qm
