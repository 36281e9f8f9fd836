// The ordered record of what a test saw happen: engine calls, preference writes, log lines, dialogs. Main thread only.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace qm {

class EventLog {
public:
    // Called with each event before it is recorded, to look at fields and controls at that very moment.
    std::function<void(const std::string& event)> atEvent;

    void add(std::string event) {
        if (atEvent) atEvent(event);
        m_events.push_back(std::move(event));
    }

    const std::vector<std::string>& events() const { return m_events; }

    std::vector<std::string> take() { return std::exchange(m_events, {}); }

    // How many events begin with the text.
    int count(const std::string& beginning) const {
        int found = 0;
        for (const std::string& event : m_events) found += event.starts_with(beginning) ? 1 : 0;
        return found;
    }

private:
    std::vector<std::string> m_events;
};

using Events = std::vector<std::string>;

}  // namespace qm
