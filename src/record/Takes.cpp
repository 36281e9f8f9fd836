#include "record/Takes.h"

#include <QFileInfo>
#include <QThreadPool>
#include <algorithm>

#include "ui/SavePanel.h"
#include "ui/controls/FadingWindow.h"

namespace qm {

namespace {

QString supportFolder() {
    return QFileInfo(takeInSupportFolder()).path();
}

QString nameOf(const QString& path) {
    return QFileInfo(path).fileName();
}

}  // namespace

Takes::Takes(Notices& notices, const MainWindowOutlet& outlets)
    : m_notices(notices),
      m_outlets(outlets),
      m_runPanel([](QWidget* parent, const QString& folder, const QString& name) {
          return runKeepPanel(parent, folder, name, {}, AtDiscard::KeepsIt);
      }) {}

bool Takes::makeRoom(const QString& path) {
    if (!QFileInfo::exists(path)) return true;
    const auto aside = setAside(path);
    if (!aside) {
        m_notices.tell(
            QStringLiteral("“%1” is in the way and cannot be renamed, so nothing is recorded").arg(nameOf(path)));
        return false;
    }
    const QString text = QStringLiteral("The recording before is now “%1”").arg(nameOf(*aside));
    if (QFileInfo(path).path() == supportFolder())
        offer(text);
    else
        m_notices.tell(text + QStringLiteral(" on the desktop"));
    return true;
}

bool Takes::keep(const QString& take, const QString& wanted) {
    if (moveRecording(take, wanted)) return true;
    if (QFileInfo(take).path() == supportFolder())
        offer(QStringLiteral("The recording cannot be kept as “%1”, but it is not lost").arg(nameOf(wanted)));
    else
        m_notices.tell(QStringLiteral("The recording cannot be kept as “%1”; it is still “%2” on the desktop")
                           .arg(nameOf(wanted), nameOf(take)));
    return false;
}

void Takes::offerLeft() {
    const QString folder = supportFolder();
    QThreadPool::globalInstance()->start([this, folder] {
        const QStringList takes = takesIn(folder);
        QMetaObject::invokeMethod(
            &m_notices, [this, takes] { offerThese(finished(takes)); }, Qt::QueuedConnection);
    });
}

QStringList Takes::finished(QStringList takes) const {
    takes.removeIf([this](const QString& path) { return m_isBeingMade(path); });
    return takes;
}

void Takes::offerThese(const QStringList& left) {
    if (left.size() == 1) offer(QStringLiteral("A recording from before has not been kept yet"));
    if (left.size() > 1) offer(QStringLiteral("%1 recordings from before have not been kept yet").arg(left.size()));
}

void Takes::offer(const QString& text) {
    m_notices.tell(
        {text, QStringLiteral("Keep…"), [this] { keepNextLeft(); }, QStringLiteral("left recordings"), true});
}

// What is there is looked up again: since the offer a recording may have begun in the first one's place.
void Takes::keepNextLeft() {
    const QStringList left = finished(takesIn(supportFolder()));
    if (left.isEmpty()) return;
    const auto chosen = m_runPanel(m_outlets.mainWindow, musicFolder(), kTakeName);
    if (chosen && keep(left.first(), *chosen)) offerThese(left.mid(1));
}

}  // namespace qm
