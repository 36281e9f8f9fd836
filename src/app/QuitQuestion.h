// Asks before Quit gives up a movie that is still being written. Only the user's own Quit asks. Main thread only; runs
// until the user has answered.
#pragma once

#include <functional>

#include "library/TrackExport.h"
#include "player/Notices.h"

namespace qm {

class QuitQuestion {
public:
    enum class Answer { Finish, QuitNow, Stay };

    using Ask = std::function<Answer()>;

    // `showWaiting` says in the export's panel whether the program is about to quit.
    QuitQuestion(TrackExport& exporting, Notices& notices, Ask ask, std::function<void(bool)> showWaiting);

    // True to quit now. If the user would rather have the movie first, `quit` is called when it is written; when it
    // fails the user is told, and when it is cancelled the program stays. Asking again replaces the former answer.
    bool mayQuit(const std::function<void()>& quit);

private:
    bool isWritten(TrackExport::End end);

    TrackExport& m_export;
    Notices& m_notices;
    Ask m_ask;
    std::function<void(bool)> m_showWaiting;
};

// The question as an alert of the program.
QuitQuestion::Answer askWhetherToQuit(QWidget* window);

}  // namespace qm
