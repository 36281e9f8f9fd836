#include "library/PropertyListWriter.h"

#include <QBuffer>
#include <limits>

#include "library/PropertyListReader.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

const std::string kHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

template <typename Write>
std::string written(Write write) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    PropertyListWriter writer(buffer);
    write(writer);
    CHECK(writer.finish());
    return buffer.data().toStdString();
}

QString throughFile(const QString& text) {
    const std::string document = written([&](PropertyListWriter& writer) { writer.string(text); });
    PropertyListReader reader(QByteArray::fromStdString(document));
    CHECK(reader.next() == PropertyListEvent::String);
    return reader.string();
}

// Takes the first bytes and no more.
class FullDevice : public QIODevice {
public:
    explicit FullDevice(qint64 room) : m_room(room) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override {
        if (size > m_room) return -1;
        m_room -= size;
        return size;
    }

private:
    qint64 m_room;
};

}  // namespace

TEST_CASE("an empty array is one tag below the published header") {
    CHECK(written([](PropertyListWriter& w) {
              w.beginArray();
              w.endArray();
          }) == kHeader + "<array/>\n</plist>\n");
}

TEST_CASE("each level is one tab further in") {
    CHECK(written([](PropertyListWriter& w) {
              w.beginArray();
              w.beginDict();
              w.key("a");
              w.integer(-5);
              w.key("b");
              w.string("x");
              w.endDict();
              w.beginDict();
              w.endDict();
              w.endArray();
          }) == kHeader +
                    "<array>\n\t<dict>\n\t\t<key>a</key>\n\t\t<integer>-5</integer>\n\t\t<key>b</key>\n"
                    "\t\t<string>x</string>\n\t</dict>\n\t<dict/>\n</array>\n</plist>\n");
}

TEST_CASE("strings are UTF-8 with markup escaped") {
    CHECK(written([](PropertyListWriter& w) { w.string(QStringLiteral("a & b <c> \"d\" \u00fc\u20ac")); }) ==
          kHeader + "<string>a &amp; b &lt;c&gt; \"d\" \xc3\xbc\xe2\x82\xac</string>\n</plist>\n");
}

TEST_CASE("every text that XML can hold comes back as it was") {
    for (const QString& text : {QString(), QString(" "), QStringLiteral("  a  "), QStringLiteral("a\tb\nc\rd\r\ne"),
                                QStringLiteral("<&>]]>\"'&amp;"), QStringLiteral("\u00e4\U0001F3B8\uFFFD")}) {
        CAPTURE(text);
        CHECK(throughFile(text) == text);
    }
}

TEST_CASE("characters that XML cannot hold are dropped, and what follows them is kept") {
    CHECK(throughFile(QStringLiteral("a\u0001b\u001fc")) == "abc");
    CHECK(throughFile(QString(QChar(0xd800)) + u'a' + QChar(0xdc00) + u'b') == "ab");
    CHECK(throughFile(QStringLiteral("a") + QChar(0xfffe) + QChar(0xffff) + QChar(u'\0') + u'b') == "ab");
    CHECK(throughFile(QStringLiteral("a") + QChar(0xd83c)) == "a");
}

TEST_CASE("integers of all sizes are written in full") {
    CHECK(written([](PropertyListWriter& w) { w.integer(std::numeric_limits<std::int64_t>::min()); }) ==
          kHeader + "<integer>-9223372036854775808</integer>\n</plist>\n");
}

TEST_CASE("a device that takes only a part makes the writing fail") {
    for (const qint64 room : {0, 100, 300000}) {
        FullDevice device(room);
        PropertyListWriter writer(device);
        writer.beginArray();
        for (int i = 0; i < 100000; ++i) writer.string(QStringLiteral("some text"));
        writer.endArray();
        CHECK_FALSE(writer.finish());
    }
}
