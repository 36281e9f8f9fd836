#include "practice/PracticeFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "app/state/SupportFolder.h"
#include "engine/api/Log.h"
#include "practice/JsonText.h"

namespace qm {

namespace {

void log(const QString& line) {
    if (!line.isEmpty()) qmLog(QStringLiteral("practice: ").append(line).toUtf8().toStdString());
}

// Empty for what is no identity, which may not become a part of a path.
QString nameOf(const QString& sound) {
    static const QRegularExpression form(QStringLiteral("^q[0-9]+-[0-9a-f]{32}$"));
    return form.match(sound).hasMatch() ? sound + QStringLiteral(".json") : QString();
}

ReadRecord readIn(const QJsonObject& object, const QString& sound, std::int64_t scale) {
    ReadRecord read = readRecord(object);
    read.record.sound = sound;
    if (scale > 0) read.record = read.record.inScale(scale);
    return read;
}

}  // namespace

QString practiceFolderPath() {
    const QString home = homeFolder();
    return home.isEmpty() ? QString() : home + kSupportFolder + QStringLiteral("/Practice");
}

std::optional<ReadRecord> PracticeFolder::record(const QString& sound) const {
    const QString name = nameOf(sound);
    if (name.isEmpty()) return std::nullopt;
    const JsonStore::Read read = m_store.read(name);
    if (!read.object) {
        log(read.damage);
        return std::nullopt;
    }
    ReadRecord found = readIn(*read.object, sound, 0);
    found.damage = read.damage;
    if (found.damage.isEmpty() && found.unreadLoops + found.unreadFields > 0)
        found.damage = QStringLiteral("%1: %2 of %3 loops and %4 fields could not be read; they stay in the file")
                           .arg(m_store.path(name))
                           .arg(found.unreadLoops)
                           .arg(found.loops)
                           .arg(found.unreadFields);
    return found;
}

std::optional<PracticeRecord> PracticeFolder::formerRecord(const QString& path, const QString& sound) const {
    if (m_store.folder().isEmpty()) return std::nullopt;
    const QByteArray asWritten = jsonString(path);
    const auto files = QDir(m_store.folder()).entryInfoList({QStringLiteral("q*-*.json")}, QDir::Files, QDir::Time);
    for (const QFileInfo& info : files) {
        const QString other = info.completeBaseName();
        QFile file(info.filePath());
        if (other == sound || nameOf(other).isEmpty() || info.size() > JsonStore::kMostBytes) continue;
        if (!file.open(QIODevice::ReadOnly)) continue;
        const QByteArray text = file.readAll();
        if (!text.contains(asWritten)) continue;
        const auto object = objectOf(text);
        if (!object) continue;
        PracticeRecord record = readIn(*object, other, 0).record;
        if (record.paths.contains(path)) return record;
    }
    return std::nullopt;
}

PracticeFolder::Saved PracticeFolder::save(const PracticeRecord& ours, LoopOrder order, std::int64_t now) const {
    Saved saved{.outcome = JsonStore::Outcome::Unwritable, .record = ours};
    const QString name = nameOf(ours.sound);
    if (name.isEmpty()) return saved;
    PracticeRecord both = ours;
    const auto write = m_store.write(name, [&](const std::optional<QJsonObject>& stands) {
        if (stands) both = merged(ours, readIn(*stands, ours.sound, ours.scale).record, order, now);
        return std::optional(recordObject(both));
    });
    log(write.damage);
    saved.outcome = write.outcome;
    saved.reason = write.reason;
    if (write.outcome == JsonStore::Outcome::Written) saved.record = std::move(both);
    return saved;
}

}  // namespace qm
