// What the program tells its user without asking: why something was not done, or what was done where nobody looks, with
// an act where there is something to do about it. Subjects tell; the status line of the main window shows, and whoever
// else listens hears the same. Main thread only.
#pragma once

#include <QMetaMethod>
#include <QObject>
#include <QString>
#include <functional>
#include <utility>
#include <vector>

namespace qm {

struct Notice {
    QString text;     // one line, a sentence without a full stop
    QString actText;  // of the button; empty where there is nothing to do
    std::function<void()> act = {};
    QString subject = {};   // a notice replaces an older one of the same subject; empty: it is alone
    bool lasts = false;     // shown until it is withdrawn, replaced or acted upon, not for some seconds only
    bool isUpdate = false;  // the same once more with other numbers: shown, not spoken again
};

class Notices : public QObject {
    Q_OBJECT

public:
    void tell(const Notice& notice) {
        if (!isSignalConnected(QMetaMethod::fromSignal(&Notices::told))) m_untold.push_back(notice);
        emit told(notice);
    }
    void tell(const QString& text) { tell(Notice{text, {}}); }

    // What it said is not so any more.
    void withdraw(const QString& subject) {
        std::erase_if(m_untold, [&](const Notice& notice) { return notice.subject == subject; });
        emit withdrawn(subject);
    }

    // What was told while nobody listened, the oldest first: parts speak before there is a window.
    std::vector<Notice> takeUntold() { return std::exchange(m_untold, {}); }

signals:
    void told(const qm::Notice& notice);
    void withdrawn(const QString& subject);

private:
    std::vector<Notice> m_untold;
};

}  // namespace qm
