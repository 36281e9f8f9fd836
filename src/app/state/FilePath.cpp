#include "app/state/FilePath.h"

#include <sys/stat.h>

#include <QFile>
#include <QUrl>
#include <algorithm>

namespace qm {

namespace {

constexpr char16_t kEscapes = 0xdc00;  // and the byte

bool isEscape(QChar c) {
    return c.unicode() >= kEscapes + 0x80 && c.unicode() <= kEscapes + 0xff;
}

// Of the character of UTF-8 that begins there; 0 if none does.
qsizetype characterBytes(QByteArrayView bytes) {
    for (qsizetype length = 1; length <= std::min<qsizetype>(bytes.size(), 4); ++length)
        if (bytes.first(length).isValidUtf8()) return length;
    return 0;
}

}  // namespace

QString pathFromBytes(const QByteArray& bytes) {
    if (bytes.isValidUtf8()) return QFile::decodeName(bytes);
    QString path;
    for (QByteArrayView rest = bytes; !rest.isEmpty();) {
        const qsizetype length = characterBytes(rest);
        if (length > 0)
            path += QString::fromUtf8(rest.first(length));
        else
            path += QChar(static_cast<char16_t>(kEscapes + static_cast<unsigned char>(rest.front())));
        rest = rest.sliced(std::max<qsizetype>(length, 1));
    }
    return path;
}

QByteArray pathBytes(const QString& path) {
    QByteArray bytes;
    qsizetype begin = 0;  // of the text that has not been encoded yet
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (path[i].isHighSurrogate() && i + 1 < path.size() && path[i + 1].isLowSurrogate()) {
            ++i;
        } else if (isEscape(path[i])) {
            bytes += QFile::encodeName(path.sliced(begin, i - begin));
            bytes += static_cast<char>(path[i].unicode() - kEscapes);
            begin = i + 1;
        }
    }
    return bytes + QFile::encodeName(path.sliced(begin));
}

QByteArray pathUrl(const QString& path) {
    const QByteArray bytes = pathBytes(path);
    if (bytes.isValidUtf8()) return QUrl::fromLocalFile(path).toEncoded(QUrl::FullyEncoded);
    return "file://" + bytes.toPercentEncoding("/");
}

std::optional<QString> pathFromUrl(const QUrl& url) {
    if (!url.isLocalFile()) return std::nullopt;
    if (!url.host().isEmpty()) return url.toLocalFile();
    const QByteArray bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    if (bytes.contains('\0')) return std::nullopt;
    return pathFromBytes(bytes);
}

bool isFile(const QString& path) {
    struct stat status {};
    return ::stat(pathBytes(path).constData(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool isFolder(const QString& path) {
    struct stat status {};
    return ::stat(pathBytes(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

QString pathExtension(const QString& path) {
    qsizetype end = path.size();
    while (end > 0 && path[end - 1] == u'/') --end;
    const QStringView trimmed = QStringView(path).first(end);
    const QStringView name = trimmed.sliced(trimmed.lastIndexOf(u'/') + 1);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.sliced(dot + 1).toString() : QString();
}

}  // namespace qm
