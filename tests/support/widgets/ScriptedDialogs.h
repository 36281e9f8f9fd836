// Answers the program's questions in the place of a user and remembers what was asked. Main thread only.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "support/widgets/EventLog.h"

namespace qm {

class ScriptedDialogs {
public:
    explicit ScriptedDialogs(EventLog& log) : m_log(log) {}

    int alertAnswer = 1000;                  // 1000 is the first button, 1001 the second
    std::optional<QStringList> chosenFiles;  // what the open panel gives; none is a cancel
    std::optional<QString> savePath;         // what the save panel gives; none is a cancel

    int alert(const QString& message, const QStringList& buttons) {
        m_log.add("alert \"" + message.toStdString() + "\" [" + buttons.join(u'|').toStdString() + "]");
        return alertAnswer;
    }

    void playerAlert(const QString& message, const QString& information, const QString& button) {
        m_log.add("alert \"" + message.toStdString() + "\" \"" + information.toStdString() + "\" [" +
                  button.toStdString() + "]");
    }

    std::optional<QString> savePanel(const QString& folder, const QString& name) {
        m_log.add("save panel " + folder.toStdString() + " " + name.toStdString());
        return savePath;
    }

    std::optional<QStringList> openPanel() {
        m_log.add("open panel");
        return chosenFiles;
    }

private:
    EventLog& m_log;
};

}  // namespace qm
