// The look of what the toolkit builds: alerts and file panels. The program's style asks here for them. Main thread
// only.
#pragma once

#include <QIcon>
#include <QSize>
#include <QString>
#include <QStyle>

class QDialog;
class QFileDialog;
class QPainter;
class QStyleOptionButton;

namespace qm {

// The sheet of alerts and file panels, for the dialog itself.
QString dialogSheet();

// Of the names that the field of a file panel offers, which are a window of their own.
QString offeredNamesSheet();

// What a sheet cannot say: margins, icons, the ring round the focused button. Once for each dialog, before it is shown.
void dressDialog(QDialog& dialog);

// Gives a file panel its size, before it is shown; when it is dressed the toolkit would take the size of its contents.
void sizeFilePanel(QFileDialog& panel);

// The program's own drawing in the place of one of the toolkit's; null if there is none.
QIcon dialogIcon(QStyle::StandardPixmap icon);

QSize dialogButtonSize(const QStyleOptionButton& option, const QWidget* button);
void paintDialogButton(QPainter& painter, const QStyleOptionButton& option, const QWidget* button);

inline constexpr int kWarningSize = 40;  // pixels

}  // namespace qm
