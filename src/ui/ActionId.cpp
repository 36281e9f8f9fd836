#include "ui/ActionId.h"

#include <QMetaEnum>

namespace qm {

QString actionName(ActionId id) {
    return QString::fromLatin1(QMetaEnum::fromType<ActionId>().valueToKey(static_cast<int>(id)));
}

std::optional<ActionId> actionNamed(const QString& name) {
    bool isKnown = false;
    const int id = QMetaEnum::fromType<ActionId>().keyToValue(name.toLatin1().constData(), &isKnown);
    return isKnown ? std::optional(static_cast<ActionId>(id)) : std::nullopt;
}

}  // namespace qm
