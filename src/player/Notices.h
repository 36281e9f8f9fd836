// What the program tells its user without asking: why something was not done, or what was done where nobody looks, with
// an act where there is something to do about it. Subjects tell; the status line of the main window shows, and whoever
// else listens hears the same. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <functional>

namespace qm {

struct Notice {
    QString text;     // one line, a sentence without a full stop
    QString actText;  // of the button; empty where there is nothing to do
    std::function<void()> act = {};
    QString subject = {};  // a notice replaces an older one of the same subject; empty: it is alone
    bool lasts = false;    // shown until it is withdrawn, replaced or acted upon, not for some seconds only
};

class Notices : public QObject {
    Q_OBJECT

public:
    void tell(const Notice& notice) { emit told(notice); }
    void tell(const QString& text) { tell(Notice{text, {}}); }
    void withdraw(const QString& subject) { emit withdrawn(subject); }  // what it said is not so any more

signals:
    void told(const qm::Notice& notice);
    void withdrawn(const QString& subject);
};

}  // namespace qm
