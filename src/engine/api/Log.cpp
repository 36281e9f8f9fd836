#include "engine/api/Log.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace qm {

namespace {

constexpr std::size_t kMostWaiting = std::size_t{1} << 18;  // bytes
constexpr std::chrono::milliseconds kLastWait{300};

// The descriptor may be one that others share, so it is left as it is: whether it blocks or not, it is waited for.
void writeAll(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd ready{STDERR_FILENO, POLLOUT, 0};
            ::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return;  // nobody reads it
        }
    }
}

class LogWriter {
public:
    LogWriter() {
        std::thread([this] { run(); }).detach();
    }

    void take(std::string_view line) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_waiting.size() + line.size() >= kMostWaiting) {
                ++m_lost;
                return;
            }
            m_waiting.append(line).append("\n");
        }
        m_changed.notify_all();
    }

    bool flush(std::chrono::milliseconds longest) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longest, [this] { return m_waiting.empty() && !m_writing; });
    }

private:
    void run() {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return !m_waiting.empty(); });
            std::string text = std::exchange(m_waiting, {});
            const int lost = std::exchange(m_lost, 0);
            m_writing = true;
            lock.unlock();
            if (lost > 0) text += std::to_string(lost) + " lines of the log were lost here: nobody read it\n";
            writeAll(text);
            lock.lock();
            m_writing = false;
            m_changed.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_waiting;
    int m_lost = 0;  // lines that came when too many waited
    bool m_writing = false;
};

std::mutex g_mutex;
std::function<void(std::string_view)> g_sink;

// Never destroyed: threads may log until the very end.
LogWriter& writer() {
    static LogWriter& only = [&]() -> LogWriter& {
        std::atexit([] { flushLog(kLastWait); });
        return *new LogWriter;
    }();
    return only;
}

}  // namespace

void qmLog(std::string_view line) {
    {
        const std::lock_guard lock(g_mutex);
        if (g_sink) return g_sink(line);
    }
    writer().take(line);
}

bool flushLog(std::chrono::milliseconds longest) {
    return writer().flush(longest);
}

void setLogSink(std::function<void(std::string_view)> sink) {
    const std::lock_guard lock(g_mutex);
    g_sink = std::move(sink);
}

}  // namespace qm
