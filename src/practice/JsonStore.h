// Small JSON files in a folder that several programs may share, whole at every moment. Any thread that may wait for the
// disk; never the window's.
//
// A change is written to a new file, which is synced and takes the old one's place; the old one is found in "last good"
// from before that moment on. A text that is no JSON is kept as "name (damaged).json", and the last good one is read.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <functional>
#include <optional>

namespace qm {

class JsonStore {
public:
    static constexpr qint64 kMostBytes = 1000000;  // of a file; a larger one counts as damaged

    struct Read {
        std::optional<QJsonObject> object;  // none: there is no such file, or nothing of it is left
        QString damage;                     // what had to be done about it, for the log; empty: nothing
    };

    enum class Outcome {
        Written,
        Busy,        // another program has held the lock for 200 ms: to be tried again with the next change
        Unwritable,  // no home, no right, no room
    };

    struct Write {
        Outcome outcome = Outcome::Written;
        QString reason;  // of Busy and Unwritable, for the log
        QString damage;  // as of Read
    };

    // From what stands in the file now to what is to stand there; none: it stays as it is.
    using Change = std::function<std::optional<QJsonObject>(const std::optional<QJsonObject>& stands)>;

    explicit JsonStore(QString folder) : m_folder(std::move(folder)) {}  // empty: nothing can be read or written

    const QString& folder() const { return m_folder; }
    QString path(const QString& name) const { return m_folder + u'/' + name; }
    QString lastGoodPath(const QString& name) const;

    Read read(const QString& name) const;

    // Makes the folder if there is none. While it is under way no other program writes here.
    Write write(const QString& name, const Change& change) const;

private:
    QString replace(const QString& name, const QByteArray& text, bool keepFormer) const;

    QString m_folder;
};

}  // namespace qm
