// The path of a file as text and as what it really is: bytes, which need not be text. Bytes that are no UTF-8 stand in
// the text as single surrogates, U+DC80 to U+DCFF, which no proper text holds, so that every path goes there and back
// unchanged. The toolkit's own functions for files take such a path for another one: use these. Any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

class QUrl;

namespace qm {

QString pathFromBytes(const QByteArray& bytes);
QByteArray pathBytes(const QString& path);  // for the system's calls

// As a "file://" address, which is plain ASCII whatever the path is.
QByteArray pathUrl(const QString& path);
std::optional<QString> pathFromUrl(const QUrl& url);  // none for what is no file of this machine

// Whether a file of any kind but a folder stands there, and can be seen.
bool isFile(const QString& path);
bool isFolder(const QString& path);

// What follows the last dot of the path's last component; nothing for "name", ".mp3" and "name.".
QString pathExtension(const QString& path);

}  // namespace qm
