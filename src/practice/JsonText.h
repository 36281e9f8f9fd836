// JSON as the program writes it: keys sorted, two spaces, UTF-8, one line end at the end. Unlike the toolkit's own text
// it keeps the single surrogates that stand in a path for bytes which are no UTF-8. Pure, any thread.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <optional>

namespace qm {

QByteArray jsonText(const QJsonObject& object);
QByteArray jsonString(const QString& text);  // with its quotes

// None where the text is no JSON object.
std::optional<QJsonObject> objectOf(const QByteArray& text);

}  // namespace qm
