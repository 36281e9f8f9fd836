// What is told of files that were brought in and not taken, or not all of them, with what can be done about it. Main
// thread only.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "app/state/Notices.h"
#include "library/FileWords.h"

namespace qm {

class DropNotices {
public:
    struct Acts {
        std::function<void(const QStringList& paths)> add;
        std::function<void(const QString& folder)> openIn;  // asks for files there
        std::function<void(const QString& path)> openAnyway;
    };

    DropNotices(Notices& notices, Acts acts) : m_notices(notices), m_acts(std::move(acts)) {}

    // Of the dropped files none was taken, because of the first; the others, where they could be, are offered.
    void refused(const Refusal& refusal, const QString& path, const QStringList& others = {});

    // Of the dropped files the first was taken.
    void onlyFirstTaken(const QStringList& dropped);

private:
    void offer(Notice& notice, const QStringList& others, qsizetype left) const;

    Notices& m_notices;
    Acts m_acts;
};

}  // namespace qm
