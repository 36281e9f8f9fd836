// update_server FOLDER MAJOR MINOR BUILD: announces that release to the program under test. Of FOLDER/Quillmere.dmg it
// sends the first half at once, as a chunk, and the rest when FOLDER/go is there. It leaves its address in
// FOLDER/address when it listens, and adds each path that it is asked for to FOLDER/requests.
#include <QCoreApplication>
#include <QFile>
#include <cstdio>

#include "support/network/LocalServer.h"

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void append(const QString& path, const QByteArray& line) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append)) file.write(line + '\n');
}

QByteArray description(char** numbers) {
    QByteArray entries;
    for (const char* key : {"Major Version", "Minor Version", "Build Version"})
        entries += QByteArray("<key>") + key + "</key><string>" + *numbers++ + "</string>";
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)" + entries + "</dict></plist>";
}

QByteArray chunk(const QByteArray& content) {
    return QByteArray::number(content.size(), 16) + "\r\n" + content + "\r\n";
}

// In two chunks, without its length.
qm::Answer inTwoHalves(const QByteArray& content, std::function<bool()> mayEnd) {
    const QByteArray header = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    const qsizetype half = content.size() / 2;
    return {header + chunk(content.left(half)), {}, 20, true, chunk(content.mid(half)) + chunk({}), std::move(mayEnd)};
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc != 5) {
        std::fputs("usage: update_server FOLDER MAJOR MINOR BUILD\n", stderr);
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    qm::LocalServer server;
    server.answers["/quillmere/QuillmereVersionLeopard.xml"] = qm::page(description(argv + 2));
    server.answers["/Download/Quillmere.dmg"] =
        inTwoHalves(contentOf(folder + "/Quillmere.dmg"), [=] { return QFile::exists(folder + "/go"); });
    QObject::connect(&server, &qm::LocalServer::requested,
                     [=](const QByteArray& path) { append(folder + "/requests", path); });
    if (!server.listen()) return 1;
    append(folder + "/address", server.url().toEncoded());
    return QCoreApplication::exec();
}
