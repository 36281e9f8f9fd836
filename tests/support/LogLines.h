// Takes the program's log lines, from any thread, as long as it lives.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "engine/api/Log.h"

namespace qm {

class LogLines {
public:
    LogLines() {
        setLogSink([this](std::string_view line) {
            const std::lock_guard lock(m_mutex);
            m_lines.emplace_back(line);
        });
    }
    ~LogLines() { setLogSink({}); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    std::vector<std::string> lines() const {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

}  // namespace qm
