// Files dragged onto a window from another program, as a file manager does it (the drag and drop protocol of X, 5).
#pragma once

#include <string>
#include <vector>

#include "Desktop.h"

enum class Dropped { Taken, Refused, NoAnswer };

class FileSource {
public:
    explicit FileSource(Desktop& desktop);
    ~FileSource();
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    // Along these places of the screen, and let go at the last one.
    struct Place {
        int x, y;
    };
    Dropped drop(const std::vector<std::string>& files, Window target, const std::vector<Place>& way);

private:
    void answerRequest(const XSelectionRequestEvent& request) const;
    void tell(Window target, const char* type, const std::array<long, 5>& data) const;

    Desktop& m_desktop;
    Window m_window;
    std::string m_list;
};
