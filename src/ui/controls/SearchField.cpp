#include "ui/controls/SearchField.h"

#include "ui/controls/Fonts.h"

namespace qm {

SearchField::SearchField(const QString& hint, QWidget* parent) : QLineEdit(parent) {
    setFont(uiFont(13));
    setPlaceholderText(hint);
    setAccessibleName(hint);
    setStyleSheet(QStringLiteral(R"(
QLineEdit { background: rgba(0, 0, 0, 97); color: #F3F5F7; border: 1px solid rgba(255, 255, 255, 41);
  border-radius: 6px; padding: 1px 7px; min-height: 20px; selection-background-color: #24B3C5;
  selection-color: #04262B; }
QLineEdit:focus { border: 2px solid #BDF6FC; padding: 0px 6px; }
)"));
}

}  // namespace qm
