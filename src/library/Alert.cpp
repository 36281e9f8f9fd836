#include "library/Alert.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>

namespace qm {

namespace {

constexpr int kWidth = 420, kLeastHeight = 142;  // pixels

// Of one width, whatever it says: the message is broken between words. On its own a message box cuts it.
class AlertBox : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void showEvent(QShowEvent* event) override {
        QMessageBox::showEvent(event);
        if (auto* message = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) message->setWordWrap(true);
        layout()->activate();
        setFixedSize(kWidth, std::max(kLeastHeight, layout()->totalHeightForWidth(kWidth)));
    }

    bool event(QEvent* event) override {
        // The message box would set a size of its own. NOLINTNEXTLINE(bugprone-parent-virtual-call)
        return event->type() == QEvent::LayoutRequest ? QDialog::event(event) : QMessageBox::event(event);
    }
};

// A hand that wants to play or pause answers no question: Space presses nothing, Return does.
class SpaceGuard : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
        return static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
    }
};

}  // namespace

int runWarningAlert(QWidget* parent, const QString& message, const QStringList& buttons, const QString& information,
                    int destroying) {
    AlertBox box(QMessageBox::Warning, QString(), message, QMessageBox::NoButton, parent);
    box.setInformativeText(information);
    QList<QPushButton*> added;
    SpaceGuard guard;
    for (const QString& title : buttons) {
        const bool first = added.isEmpty();
        auto* button = new QPushButton(title);
        const bool destroys = added.size() == destroying - kAlertFirstButtonReturn;
        button->setProperty("destroys", destroys && buttons.size() > 1);
        box.addButton(button, first ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
        button->installEventFilter(&guard);
        added.append(button);
    }
    box.setDefaultButton(added.first());
    box.setEscapeButton(added.last());
    box.exec();
    const qsizetype pressed = added.indexOf(qobject_cast<QPushButton*>(box.clickedButton()));
    return kAlertFirstButtonReturn + static_cast<int>(pressed < 0 ? added.size() - 1 : pressed);
}

}  // namespace qm
