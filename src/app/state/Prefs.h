// The preferences store: flat keys, each value written to disk the moment it is set. Values are kept as text ("true",
// a decimal integer, a float with nine digits), so that any of them can be read as any type. An absent key reads as
// false or 0. Main thread only; a store that cannot be written leaves a log line and keeps the values of this run.
#pragma once

#include <QSettings>
#include <QString>

namespace qm {

// The keys; there are no others.
namespace prefkeys {
inline constexpr QLatin1String kAudioLevels("AudioLevels");                  // bool: level indicators on
inline constexpr QLatin1String kSoftwareUpdateCheck("SoftwareUpdateCheck");  // bool; absent means true
inline constexpr QLatin1String kTextColor("TextColor");                      // integer 0 to 3
inline constexpr QLatin1String kDefaultAudioLevel("DefaultAudioLevel");      // float, a gain; 0 means not set
inline constexpr QLatin1String kToolbarOpen("ToolbarOpen");                  // bool; written only
}  // namespace prefkeys

class Prefs {
public:
    Prefs();                              // the user's own store
    explicit Prefs(const QString& path);  // a store in this file
    virtual ~Prefs() = default;

    virtual bool contains(const QString& key) const;

    bool boolForKey(const QString& key) const;    // true: "true", "yes" or a number other than 0
    int integerForKey(const QString& key) const;  // the leading number, saturated; else 0
    float floatForKey(const QString& key) const;  // the leading finite number; else 0

    void setBool(const QString& key, bool value);
    void setInteger(const QString& key, int value);
    void setFloat(const QString& key, float value);

protected:
    virtual QString text(const QString& key) const;
    virtual void setText(const QString& key, const QString& text);

private:
    QSettings m_settings;
};

}  // namespace qm
