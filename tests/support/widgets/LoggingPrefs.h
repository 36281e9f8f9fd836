// A preferences store in a file of the test's own that records each look for a key's presence and each write.
#pragma once

#include "app/state/Prefs.h"
#include "support/widgets/EventLog.h"

namespace qm {

class LoggingPrefs : public Prefs {
public:
    LoggingPrefs(const QString& path, EventLog& log) : Prefs(path), m_log(log) {}

    bool contains(const QString& key) const override {
        m_log.add("contains " + key.toStdString());
        return Prefs::contains(key);
    }

protected:
    void setText(const QString& key, const QString& text) override {
        m_log.add("store " + key.toStdString() + " " + text.toStdString());
        Prefs::setText(key, text);
    }

private:
    EventLog& m_log;
};

}  // namespace qm
