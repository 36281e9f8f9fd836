#include "practice/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace qm {

namespace {

void write(const QJsonValue& value, int depth, QByteArray& into);

void beginLine(int depth, QByteArray& into) {
    into += '\n';
    into += QByteArray(2 * depth, ' ');
}

void writeArray(const QJsonArray& array, int depth, QByteArray& into) {
    into += '[';
    for (qsizetype i = 0; i < array.size(); ++i) {
        if (i > 0) into += ',';
        beginLine(depth + 1, into);
        write(array[i], depth + 1, into);
    }
    if (!array.isEmpty()) beginLine(depth, into);
    into += ']';
}

void writeObject(const QJsonObject& object, int depth, QByteArray& into) {
    into += '{';
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member != object.begin()) into += ',';
        beginLine(depth + 1, into);
        into += jsonString(member.key()) + ": ";
        write(member.value(), depth + 1, into);
    }
    if (!object.isEmpty()) beginLine(depth, into);
    into += '}';
}

void write(const QJsonValue& value, int depth, QByteArray& into) {
    if (value.isObject()) return writeObject(value.toObject(), depth, into);
    if (value.isArray()) return writeArray(value.toArray(), depth, into);
    if (value.isString()) {
        into += jsonString(value.toString());
        return;
    }
    const QByteArray alone = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    into += alone.sliced(1, alone.size() - 2);
}

QByteArray escape(char16_t unit) {
    return "\\u" + QByteArray::number(unit, 16).rightJustified(4, '0');
}

}  // namespace

QByteArray jsonString(const QString& text) {
    QByteArray string = "\"";
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'"' || c == u'\\') {
            string += '\\';
            string += static_cast<char>(c.unicode());
        } else if (c == u'\n') {
            string += "\\n";
        } else if (c.unicode() < 0x20) {
            string += escape(c.unicode());
        } else if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            string += QStringView(text).sliced(i++, 2).toUtf8();
        } else if (c.isSurrogate()) {
            string += escape(c.unicode());
        } else {
            string += QStringView(text).sliced(i, 1).toUtf8();
        }
    }
    return string + '"';
}

std::optional<QJsonObject> objectOf(const QByteArray& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QByteArray jsonText(const QJsonObject& object) {
    QByteArray text;
    write(object, 0, text);
    return text + '\n';
}

}  // namespace qm
