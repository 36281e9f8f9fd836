#include "library/Alert.h"

#include <QMessageBox>
#include <QPushButton>

namespace qm {

int runWarningAlert(QWidget* parent, const QString& message, const QStringList& buttons, const QString& information) {
    QMessageBox box(QMessageBox::Warning, QString(), message, QMessageBox::NoButton, parent);
    box.setInformativeText(information);
    QList<QPushButton*> added;
    for (const QString& title : buttons) {
        const bool first = added.isEmpty();
        auto* button = new QPushButton(title);
        button->setProperty("destroys", first && buttons.size() > 1);  // it asks before it destroys
        box.addButton(button, first ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
        added.append(button);
    }
    box.setDefaultButton(added.first());
    box.setEscapeButton(added.last());
    box.exec();
    const qsizetype pressed = added.indexOf(qobject_cast<QPushButton*>(box.clickedButton()));
    return kAlertFirstButtonReturn + static_cast<int>(pressed < 0 ? added.size() - 1 : pressed);
}

}  // namespace qm
