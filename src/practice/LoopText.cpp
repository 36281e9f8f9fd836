#include "practice/LoopText.h"

#include <QRegularExpression>
#include <utility>

#include "practice/MarkTime.h"

namespace qm {

namespace {

constexpr std::int64_t kHighestScale = 1000000;

QString oneLine(const QString& text) {
    return text.simplified();
}

QString numberOr(const std::optional<double>& number) {
    return number ? QString::number(*number, 'g', 12) : QStringLiteral("-");
}

// False where the text is neither a number from `least` to `most` nor "-".
bool readNumber(const QString& text, double least, double most, std::optional<double>& number) {
    if (text == u"-") return true;
    bool isNumber = false;
    number = text.toDouble(&isNumber);
    return isNumber && *number >= least && *number <= most;
}

bool readHeader(const QString& line, PracticeRecord& record) {
    static const QRegularExpression form(QStringLiteral("^(Title|Artist|Sound|Rate):(.*)$"));
    const auto match = form.match(line);
    if (!match.hasMatch()) return false;
    const QString name = match.captured(1), value = match.captured(2).trimmed();
    if (name == u"Title") record.title = value;
    if (name == u"Artist") record.artist = value;
    if (name == u"Sound") record.sound = value;
    if (name != u"Rate") return true;
    const std::int64_t rate = value.toLongLong();
    if (rate <= 0 || rate > kHighestScale) return false;
    record.scale = rate;
    return true;
}

std::optional<KeptLoop> readLoop(const QString& line, std::int64_t scale) {
    static const QRegularExpression form(QStringLiteral("^(\\S+)\\s+(\\S+)\\s+(\\S+)\\s+(\\S+)(?:\\s+(.*))?$"));
    const auto match = form.match(line);
    if (!match.hasMatch()) return std::nullopt;
    const auto a = frameOfText(match.captured(1), scale), b = frameOfText(match.captured(2), scale);
    KeptLoop loop;
    if (!a || !b || *a >= *b || !readNumber(match.captured(3), 0.35, 2.5, loop.speed) ||
        !readNumber(match.captured(4), -1200, 1200, loop.cents))
        return std::nullopt;
    loop.a = *a;
    loop.b = *b;
    loop.name = match.captured(5).trimmed().left(PracticeRecord::kLongestName);
    return loop;
}

}  // namespace

QByteArray loopText(const PracticeRecord& record) {
    QString text = QStringLiteral("Title: %1\n").arg(oneLine(record.title)) +
                   QStringLiteral("Artist: %1\n").arg(oneLine(record.artist)) +
                   QStringLiteral("Sound: %1\nRate: %2\n").arg(record.sound).arg(record.scale);
    for (const KeptLoop* loop : record.keptLoops())
        text += QStringList{exactText(loop->a, record.scale), exactText(loop->b, record.scale), numberOr(loop->speed),
                            numberOr(loop->cents), oneLine(loop->name)}
                    .join(u'\t') +
                u'\n';
    return text.toUtf8();
}

ReadLoopText readLoopText(const QByteArray& text, std::int64_t scale) {
    ReadLoopText read;
    read.record.scale = scale;
    QString all = QString::fromUtf8(text);
    if (all.startsWith(QChar::ByteOrderMark)) all.remove(0, 1);
    for (const QString& whole : all.split(u'\n')) {
        const QString line = whole.trimmed();
        if (line.isEmpty() || (read.record.loops.empty() && readHeader(line, read.record))) continue;
        auto loop = readLoop(line, read.record.scale);
        if (!loop) {
            ++read.skipped;
            continue;
        }
        loop->id = QString::number(read.record.loops.size());
        const QString id = loop->id;
        read.record.loops.push_back({.id = id, .loop = std::move(loop), .removed = 0, .stored = {}});
    }
    return read;
}

}  // namespace qm
