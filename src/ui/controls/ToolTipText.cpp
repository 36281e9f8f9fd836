#include "ui/controls/ToolTipText.h"

#include <QTextDocument>

namespace qm {

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

}  // namespace qm
