// Notices that remember what was told. Main thread only.
#pragma once

#include <QStringList>

#include "app/state/Notices.h"

namespace qm {

class ToldNotices : public Notices {
public:
    ToldNotices() {
        connect(this, &Notices::told, this, [this](const Notice& notice) {
            last = notice;
            texts << notice.text;
        });
        connect(this, &Notices::withdrawn, this, [this](const QString& subject) { withdrawnSubjects << subject; });
    }

    Notice last;
    QStringList texts;
    QStringList withdrawnSubjects;
};

}  // namespace qm
