// Says of files that are dragged over the play list, before they are let go, whether they will be taken. They are
// looked at on another thread; until that answers, or when it never does, they look as if they were. Main thread only.
#pragma once

#include <QList>
#include <QObject>
#include <QTimer>
#include <QUrl>
#include <future>

#include "library/FileWords.h"

namespace qm {

class PlayListView;

class DropHover : public QObject {
    Q_OBJECT

public:
    explicit DropHover(PlayListView& view);  // which owns it

private:
    void begin(const QList<QUrl>& files);
    void end();
    void look();
    void judge(const Refusal& refusal);

    PlayListView& m_view;
    QStringList m_paths;
    std::future<Refusal> m_answer;
    QTimer m_timer{this};
};

}  // namespace qm
