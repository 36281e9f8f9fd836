#include "app/state/ReadableForms.h"

#include <cmath>

namespace qm {

namespace {

QString decimals(double value, int count) {
    QString text = QString::number(std::abs(value), 'f', count);
    if (text.contains(u'.')) {
        while (text.endsWith(u'0')) text.chop(1);
        if (text.endsWith(u'.')) text.chop(1);
    }
    return value < 0 && text != u"0" ? u'−' + text : text;
}

int percent(double part) {
    return static_cast<int>(std::lround(std::abs(part) * 100));
}

QString countOf(long long number, const char* unit) {
    return QStringLiteral("%1 %2%3").arg(number).arg(unit).arg(number == 1 ? "" : "s");
}

QString minutesAndSeconds(double seconds, bool namesUnit) {
    const auto whole = static_cast<long long>(std::max(0.0, seconds));
    const long long minutes = whole / 60, rest = whole % 60;
    if (minutes == 0) return countOf(rest, "second");
    return countOf(minutes, "minute") + u' ' + (namesUnit ? countOf(rest, "second") : QString::number(rest));
}

}  // namespace

QString shortNumber(double value) {
    return decimals(value, 2);
}

QString readableSpeed(double rate) {
    return shortNumber(std::abs(rate)) + (rate < 0 ? QStringLiteral("× backward") : QStringLiteral("×"));
}

QString spokenSpeed(double rate) {
    return QStringLiteral("%1 times, %2").arg(shortNumber(std::abs(rate)), rate < 0 ? "backward" : "forward");
}

QString readablePitch(double cents) {
    const QString semitones = decimals(cents / 100, 1);
    const bool one = std::abs(cents) == 100;
    return semitones + (one ? QStringLiteral(" semitone") : QStringLiteral(" semitones"));
}

QString spokenPitch(double cents) {
    const auto whole = std::lround(cents);
    return QStringLiteral("%1%2 cents").arg(whole < 0 ? "minus " : "").arg(std::labs(whole));
}

QString readableGain(double gain) {
    return QStringLiteral("%1 %").arg(percent(gain));
}

QString spokenGain(double gain) {
    return QStringLiteral("%1 percent").arg(percent(gain));
}

QString readableBalance(double balance) {
    if (percent(balance) == 0) return QStringLiteral("Centre");
    return (balance < 0 ? QStringLiteral("L ") : QStringLiteral("R ")) + shortNumber(std::abs(balance));
}

QString spokenBalance(double balance) {
    if (percent(balance) == 0) return QStringLiteral("centre");
    return QStringLiteral("%1 %2 percent").arg(balance < 0 ? "left" : "right").arg(percent(balance));
}

QString readableTone(double value) {
    return QStringLiteral("%1 of 256").arg(std::lround(value));
}

QString spokenTone(double value) {
    return readableTone(value);
}

QString readableTime(double seconds) {
    const double bounded = std::max(0.0, seconds);
    const auto tenths = static_cast<long long>(bounded * 10);
    return QStringLiteral("%1:%2.%3").arg(tenths / 600).arg(tenths / 10 % 60, 2, 10, QLatin1Char('0')).arg(tenths % 10);
}

QString spokenTime(double seconds, double ofSeconds) {
    return QStringLiteral("%1 of %2").arg(minutesAndSeconds(seconds, true), minutesAndSeconds(ofSeconds, false));
}

QString spokenDuration(double seconds) {
    return minutesAndSeconds(seconds, true);
}

QString speedTag(double rate) {
    if (rate == 1.0) return {};
    return rate < 0 ? readableSpeed(rate) : readableSpeed(rate) + QStringLiteral(" speed");
}

QString pitchTag(double cents) {
    const auto whole = std::lround(cents);
    if (whole == 0) return {};
    return QStringLiteral("%1%2 cents")
        .arg(whole < 0 ? QStringLiteral("−") : QStringLiteral("+"))
        .arg(std::labs(whole));
}

QString speedPercent(double rate) {
    if (rate == 1.0) return {};
    return QStringLiteral("%1 %").arg(decimals(rate * 100, 1));
}

QString pitchSteps(double cents) {
    if (std::lround(cents) == 0) return {};
    const QString steps = shortNumber(cents / 100);
    return cents < 0 ? steps : u'+' + steps;
}

}  // namespace qm
