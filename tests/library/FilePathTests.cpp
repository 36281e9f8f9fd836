#include "library/FilePath.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <random>

#include "support/widgets/TestText.h"

using namespace qm;

TEST_CASE("an ordinary path is the same text and the same bytes as for the toolkit") {
    for (const char* bytes :
         {"", "/music/a.wav", "/m/\xc3\xbc \xe2\x82\xac \xf0\x9f\x8e\xb8.wav", "/m/100% \x01\n#?;&.wav"}) {
        CAPTURE(bytes);
        const QString path = pathFromBytes(bytes);
        CHECK(path == QFile::decodeName(bytes));
        CHECK(pathBytes(path) == QByteArray(bytes));
        CHECK(pathUrl(path) == QUrl::fromLocalFile(path).toEncoded(QUrl::FullyEncoded));
        CHECK((path.isEmpty() || pathFromUrl(QUrl::fromEncoded(pathUrl(path))) == path));
    }
}

TEST_CASE("a path that is no text keeps its bytes, and what of it is text stays readable") {
    const QByteArray bytes = "/m/caf\xe9/\xf0\x9f\x8e\xb8\xff.wav";
    const QString path = pathFromBytes(bytes);
    CHECK(path == QStringLiteral("/m/caf") + QChar(0xdce9) + QStringLiteral("/\U0001F3B8") + QChar(0xdcff) + ".wav");
    CHECK(pathBytes(path) == bytes);
    CHECK(pathUrl(path) == "file:///m/caf%E9/%F0%9F%8E%B8%FF.wav");
    CHECK(pathFromUrl(QUrl("file:///m/caf%E9/%F0%9F%8E%B8%FF.wav")) == path);
}

TEST_CASE("any bytes but zero go through text and address unchanged") {
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i) {
        QByteArray bytes = "/";
        for (unsigned count = random() % 12; count > 0; --count) {
            // Few different ones, so that whole, broken, overlong and surrogate sequences come up.
            constexpr unsigned char kBytes[] = {'a',  '%',  '/',  1,    0x80, 0x9f, 0xa0, 0xbf, 0xc0,
                                                0xc3, 0xe0, 0xe2, 0xed, 0xef, 0xf0, 0xf4, 0xf5, 0xff};
            bytes += static_cast<char>(kBytes[random() % sizeof kBytes]);
        }
        const QString path = pathFromBytes(bytes);
        CAPTURE(bytes.toHex().toStdString());
        REQUIRE(pathBytes(path) == bytes);
        if (bytes.startsWith("//")) continue;  // in an address that would be a machine's name
        REQUIRE(pathFromUrl(QUrl::fromEncoded(pathUrl(path))) == path);
    }
}

TEST_CASE("what is no file of this machine has no path") {
    CHECK_FALSE(pathFromUrl(QUrl("http://nowhere.invalid/a.mp3")));
    CHECK_FALSE(pathFromUrl(QUrl("file:///m/a%00b.wav")));
    CHECK_FALSE(pathFromUrl(QUrl()));
}

TEST_CASE("files, and no folders, are files whatever their names are") {
    const QTemporaryDir folder;
    const QByteArray name = folder.path().toUtf8() + "/caf\xe9.wav";
    CHECK_FALSE(isFile(pathFromBytes(name)));
    std::FILE* made = std::fopen(name.constData(), "w");
    REQUIRE(made);
    std::fclose(made);
    CHECK(isFile(pathFromBytes(name)));
    CHECK_FALSE(isFile(folder.path()));
}
