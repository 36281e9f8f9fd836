// Files that wait to be added to the play list. One is added each time the program has nothing else to do, so that the
// window and the message bus live on, however many there are. What is done is told with the count, and can be
// cancelled: what has been added by then stays. Main thread only; files that give no track are counted.
#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <optional>

#include "app/state/Notices.h"

namespace qm {

class FileQueue : public QObject {
    Q_OBJECT

public:
    // Adds a file: whether it gave a track; none while another one is being loaded.
    using AddFile = std::function<std::optional<bool>(const QString& path)>;

    FileQueue(AddFile add, Notices& notices);

    // The first at once if none wait, the others in their order. The words are told if none of all gives a track.
    void add(const QStringList& paths, const QString& wordsForNone = {});
    void cancel();
    bool isBusy() const { return m_total > 0; }

signals:
    void ended();  // all are added, or it was cancelled; before that is told

private:
    void step();
    void finish();
    void tellProgress();
    void tellEnd(int total) const;

    AddFile m_add;
    Notices& m_notices;
    QStringList m_waiting;
    QString m_firstFailed;
    QString m_wordsForNone;
    QTimer m_timer{this};
    int m_total = 0;  // 0: nothing is being added
    int m_done = 0;
    int m_failed = 0;
    bool m_isStepping = false;
    bool m_isCancelled = false;
};

}  // namespace qm
