#include "practice/MarkTime.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <utility>

namespace qm {

namespace {

constexpr std::int64_t kMicroseconds = 1000000;  // a second

QString twoDigits(std::int64_t value) {
    return QString::number(value).rightJustified(2, u'0');
}

// Of an unsigned time.
std::optional<std::int64_t> microseconds(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^(?:(?:(\\d{1,5}):)?(\\d{1,6}):)?(\\d{1,8})(?:[.,](\\d{1,6}))?$"));
    const auto match = form.match(text);
    if (!match.hasMatch()) return std::nullopt;
    const auto part = [&](int number) { return match.captured(number).toLongLong(); };
    const bool hasHours = match.hasCaptured(1), hasMinutes = match.hasCaptured(2);
    if ((hasHours && part(2) >= 60) || (hasMinutes && part(3) >= 60)) return std::nullopt;
    const std::int64_t seconds = (part(1) * 60 + part(2)) * 60 + part(3);
    return seconds * kMicroseconds + match.captured(4).leftJustified(6, u'0').toLongLong();
}

// Where the mark is to stand.
std::optional<std::int64_t> typedFrame(QString text, std::int64_t mark, std::int64_t scale) {
    text.replace(QChar(0x2212), u'-');
    const bool isWay = text.startsWith(u'+') || text.startsWith(u'-');
    const auto frames = frameOfText(isWay ? text.sliced(1).trimmed() : text, scale);
    if (!frames || !isWay) return frames;
    return text.startsWith(u'-') ? mark - *frames : mark + *frames;
}

}  // namespace

QString markText(std::int64_t frame, std::int64_t scale) {
    if (scale <= 0) return {};
    const std::int64_t time = frame / scale * 1000 + (frame % scale * 1000 + scale / 2) / scale;
    const std::int64_t minutes = time / 60000, hours = minutes / 60;
    const QString rest = twoDigits(time / 1000 % 60) + u'.' + QString::number(time % 1000).rightJustified(3, u'0');
    if (hours == 0) return QString::number(minutes) + u':' + rest;
    return QString::number(hours) + u':' + twoDigits(minutes % 60) + u':' + rest;
}

QString exactText(std::int64_t frame, std::int64_t scale) {
    if (scale <= 0) return {};
    const std::int64_t time = frame / scale * kMicroseconds + (frame % scale * kMicroseconds + scale / 2) / scale;
    const std::int64_t minutes = time / (60 * kMicroseconds);
    return QString::number(minutes / 60) + u':' + twoDigits(minutes % 60) + u':' +
           twoDigits(time / kMicroseconds % 60) + u'.' + QString::number(time % kMicroseconds).rightJustified(6, u'0');
}

std::optional<std::int64_t> frameOfText(const QString& text, std::int64_t scale) {
    const auto time = microseconds(text);
    if (!time) return std::nullopt;
    const std::int64_t whole = *time / kMicroseconds * scale;
    return whole + (*time % kMicroseconds * scale + kMicroseconds / 2) / kMicroseconds;
}

QString TypedMark::objection() const {
    const auto words = [](const char* text) { return QCoreApplication::translate("qm::TypedMark", text); };
    if (outcome == Typed::NotBeforeB) return words("A must lie before B.");
    return outcome == Typed::OutOfTrack ? words("Not within the track.") : QString();
}

TypedMark typedMark(const QString& text, Mark which, Marks marks, const MarkedTrack& track) {
    std::int64_t& mark = which == Mark::A ? marks.a : marks.b;
    const Marks before = marks;
    const QString trimmed = text.trimmed();
    if (trimmed == markText(mark, track.scale)) return {Typed::Unchanged, before};
    const auto frame = typedFrame(trimmed, mark, track.scale);
    if (!frame) return {Typed::NoTime, before};
    if (*frame < 0 || *frame > track.length) return {Typed::OutOfTrack, before};
    mark = *frame;
    return marks.a < marks.b ? TypedMark{Typed::Set, marks} : TypedMark{Typed::NotBeforeB, before};
}

}  // namespace qm
