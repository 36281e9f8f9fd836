#include "app/state/Prefs.h"

#include <QByteArray>
#include <charconv>
#include <cmath>
#include <limits>

#include "app/state/Numbers.h"
#include "engine/api/Log.h"

namespace qm {

namespace {

#ifdef Q_OS_MACOS
constexpr QSettings::Format kFormat = QSettings::NativeFormat;
#else
constexpr QSettings::Format kFormat = QSettings::IniFormat;
#endif

// The number at the start of the text, whatever the locale; 0 without one.
double leadingNumber(const QString& text) {
    QByteArray bytes = text.trimmed().toLatin1();
    if (bytes.startsWith('+')) bytes.remove(0, 1);
    double value = 0;
    const auto result = std::from_chars(bytes.constData(), bytes.constData() + bytes.size(), value);
    return result.ec == std::errc() && std::isfinite(value) ? value : 0;
}

}  // namespace

Prefs::Prefs() : m_settings(kFormat, QSettings::UserScope, QStringLiteral("Quillmere"), QStringLiteral("Quillmere")) {
    m_settings.setFallbacksEnabled(false);
}

Prefs::Prefs(const QString& path) : m_settings(path, QSettings::IniFormat) {}

bool Prefs::contains(const QString& key) const {
    return m_settings.contains(key);
}

bool Prefs::boolForKey(const QString& key) const {
    const QString value = text(key).trimmed();
    if (value.compare(u"true", Qt::CaseInsensitive) == 0 || value.compare(u"yes", Qt::CaseInsensitive) == 0)
        return true;
    return leadingNumber(value) != 0;
}

int Prefs::integerForKey(const QString& key) const {
    return truncToInt32(leadingNumber(text(key)));
}

float Prefs::floatForKey(const QString& key) const {
    const double value = leadingNumber(text(key));
    return std::abs(value) <= std::numeric_limits<float>::max() ? static_cast<float>(value) : 0.0f;
}

void Prefs::setBool(const QString& key, bool value) {
    setText(key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

void Prefs::setInteger(const QString& key, int value) {
    setText(key, QString::number(value));
}

void Prefs::setFloat(const QString& key, float value) {
    setText(key, QString::number(static_cast<double>(value), 'g', 9));  // nine digits give the same float back
}

QString Prefs::text(const QString& key) const {
    return m_settings.value(key).toString();
}

void Prefs::setText(const QString& key, const QString& text) {
    m_settings.setValue(key, text);
    m_settings.sync();
    if (m_settings.status() != QSettings::NoError) {
        qmLog("Prefs: cannot write " + m_settings.fileName().toStdString());
    }
}

}  // namespace qm
