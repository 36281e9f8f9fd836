// A warning with buttons, modal to the program. Main thread only.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace qm {

inline constexpr int kAlertFirstButtonReturn = 1000;

// 1000 for the first button, 1001 for the second and so on. Esc and closing count as the last button. `information`
// says more below the message; `destroying` is the button that is marked as the one that destroys, where there are
// others.
int runWarningAlert(QWidget* parent, const QString& message, const QStringList& buttons,
                    const QString& information = {}, int destroying = kAlertFirstButtonReturn);

}  // namespace qm
