// Which of the program's notices the status line shows: the newest, and when a passing one has gone, the newest of
// those that last. Main thread only.
#pragma once

#include <QObject>
#include <optional>
#include <vector>

#include "player/Notices.h"

namespace qm {

class MainWindow;
class NoticeLine;

class StatusNotices : public QObject {
    Q_OBJECT

public:
    // Also shows what was told before there was a window.
    StatusNotices(MainWindow& window, Notices& notices);

private:
    void tell(const Notice& notice);
    bool update(const Notice& notice);
    void withdraw(const QString& subject);
    void forget(const QString& subject);
    void showLasting();
    void act();

    NoticeLine& m_line;
    std::optional<Notice> m_passing;  // stands before those that last
    std::vector<Notice> m_lasting;    // the newest last
};

}  // namespace qm
