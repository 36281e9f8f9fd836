#include "library/PropertyListReader.h"

#include <limits>
#include <string>
#include <vector>

#include "support/widgets/TestText.h"

using namespace qm;
using Event = PropertyListEvent;

namespace {

// The events of a document as words, values included, up to the end or the damage.
std::vector<std::string> eventsOf(const QByteArray& document) {
    PropertyListReader reader(document);
    std::vector<std::string> words;
    for (;;) {
        const std::string text(reader.text());
        switch (reader.next()) {
            case Event::BeginArray:
                words.push_back("[");
                break;
            case Event::EndArray:
                words.push_back("]");
                break;
            case Event::BeginDict:
                words.push_back("{");
                break;
            case Event::EndDict:
                words.push_back("}");
                break;
            case Event::Key:
                words.push_back("key " + std::string(reader.text()));
                break;
            case Event::String:
                words.push_back("string " + std::string(reader.text()));
                break;
            case Event::Integer:
                words.push_back("integer " + std::to_string(reader.integer()));
                break;
            case Event::Real:
                words.push_back("real " + std::to_string(reader.real()));
                break;
            case Event::True:
                words.push_back("true");
                break;
            case Event::False:
                words.push_back("false");
                break;
            case Event::Date:
                words.push_back("date " + std::string(reader.text()));
                break;
            case Event::Data:
                words.push_back("data " + std::string(reader.text()));
                break;
            case Event::End:
                words.push_back("end");
                return words;
            case Event::Damaged:
                words.push_back("damaged");
                return words;
        }
    }
}

using Words = std::vector<std::string>;

// The events of one value inside <plist>, without "end".
Words valueOf(const QByteArray& value) {
    Words words = eventsOf("<plist version=\"1.0\">" + value + "</plist>");
    if (words.back() == "end") words.pop_back();
    return words;
}

}  // namespace

TEST_CASE("every kind of value is read, in document order") {
    CHECK(valueOf("<array><string>a</string><integer>-7</integer><real>2.5</real><true/><false/>"
                  "<date>2020-01-02T03:04:05Z</date><data>AAEC</data><dict><key>k</key><array/></dict></array>") ==
          Words{"[", "string a", "integer -7", "real 2.500000", "true", "false", "date 2020-01-02T03:04:05Z",
                "data AAEC", "{", "key k", "[", "]", "}", "]"});
}

TEST_CASE("declaration, document type, comments and instructions between values are passed over") {
    CHECK(eventsOf(
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- > -->\n"
              "<!DOCTYPE plist PUBLIC \"-//X//Y>\" \"http://nowhere.invalid/x.dtd\" [ <!ELEMENT a (b)> <!-- ] --> ]>\n"
              "<plist version='1.0'><?pi ?><array><!-- <string>no</string> --></array></plist>\n<!-- end -->\n") ==
          Words{"[", "]", "end"});
}

TEST_CASE("blanks inside a string are kept") {
    CHECK(valueOf("<string> </string>") == Words{"string  "});
    CHECK(valueOf("<string>\n\t a </string>") == Words{"string \n\t a "});
}

TEST_CASE("an empty element and an element without text are the empty string") {
    CHECK(valueOf("<string/>") == Words{"string "});
    CHECK(valueOf("<string></string>") == Words{"string "});
}

TEST_CASE("references, marked sections and comments inside a string become its text") {
    CHECK(valueOf("<string>a &amp; b &lt;&gt;&quot;&apos; &#65;&#x42;</string>") == Words{"string a & b <>\"' AB"});
    CHECK(valueOf("<string>&#xfc;&#x20ac;&#x1F600;</string>") == Words{"string \xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80"});
    CHECK(valueOf("<string>a<![CDATA[ <b> & ]]>c<!-- d -->e<?pi f?>g</string>") == Words{"string a <b> & ceg"});
}

TEST_CASE("carriage returns read as line feeds, except written as a reference") {
    CHECK(valueOf("<string>a\r\nb\rc&#13;d</string>") == Words{"string a\nb\nc\rd"});
}

TEST_CASE("references to anything but characters that XML has are damage") {
    for (const char* text : {"&nbsp;", "&#0;", "&#xD800;", "&#x110000;", "&#;", "&#x;", "&#12", "&", "&amp", "&#-5;"}) {
        CAPTURE(text);
        CHECK(valueOf("<string>" + QByteArray(text) + "</string>") == Words{"damaged"});
    }
}

TEST_CASE("entities of the document's own are not known, so they cannot grow") {
    CHECK(eventsOf("<!DOCTYPE p [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\"><!ENTITY f SYSTEM \"file:///x\">]>"
                   "<plist><array><string>x</string><string>&b;</string></array></plist>") ==
          Words{"[", "string x", "damaged"});
}

TEST_CASE("entities of the document's own are not known in attributes either, however the document type is hidden") {
    const QByteArray type = "<!DOCTYPE p [<!ENTITY a \"aaaa\">]>";
    CHECK(eventsOf(type + "<plist version=\"&a;\"><array/></plist>") == Words{"damaged"});
    CHECK(eventsOf("<!-- -->\xef\xbb\xbf" + type + "<plist version=\"&a;\"><array/></plist>") == Words{"damaged"});
    CHECK(eventsOf("<!-- -->\xef\xbb\xbf<!DOCTYPE p><plist><array/></plist>") == Words{"damaged"});
}

TEST_CASE("the line of damage is counted from the document's first line, with many values before it") {
    PropertyListReader reader("\n<!DOCTYPE plist\n>\n<plist><array>\n" + QByteArray("<true/>\n").repeated(1000) +
                              "<no/></array></plist>");
    int values = 0;
    for (Event event = reader.next(); event != Event::Damaged; event = reader.next()) values += event == Event::True;
    CHECK(values == 1000);
    CHECK(reader.line() == 1005);
}

TEST_CASE("control characters and bytes that are not UTF-8 are damage, after the values before them") {
    CHECK(valueOf("<array><string>ok</string><string>a\x01</string></array>") == Words{"[", "string ok", "damaged"});
    CHECK(valueOf("<array><string>ok</string><string>\xff\xfe</string></array>") == Words{"[", "string ok", "damaged"});
    CHECK(valueOf(QByteArray("<string>a\0b</string>", 20)) == Words{"damaged"});
    CHECK(valueOf("<string>\xc3</string>") == Words{"damaged"});
}

TEST_CASE("integers are decimal or hexadecimal, with a sign and blanks, saturated at 64 bits") {
    CHECK(valueOf("<integer> +12\n</integer>") == Words{"integer 12"});
    CHECK(valueOf("<integer>0x1F</integer>") == Words{"integer 31"});
    CHECK(valueOf("<integer>-9223372036854775808</integer>") == Words{"integer -9223372036854775808"});
    CHECK(valueOf("<integer>99999999999999999999</integer>") == Words{"integer 9223372036854775807"});
    CHECK(valueOf("<integer>-99999999999999999999</integer>") == Words{"integer -9223372036854775808"});
}

TEST_CASE("numbers that are no numbers are damage") {
    for (const char* value :
         {"<integer>abc</integer>", "<integer/>", "<integer>1.5</integer>", "<integer>1 2</integer>",
          "<integer>--1</integer>", "<real>x</real>", "<real/>", "<true>yes</true>"}) {
        CAPTURE(value);
        CHECK(valueOf(value) == Words{"damaged"});
    }
}

TEST_CASE("a dictionary alternates keys and values, and nothing else") {
    CHECK(valueOf("<dict><string>a</string></dict>") == Words{"{", "damaged"});
    CHECK(valueOf("<dict><key>a</key><key>b</key></dict>") == Words{"{", "key a", "damaged"});
    CHECK(valueOf("<dict><key>a</key></dict>") == Words{"{", "key a", "damaged"});
    CHECK(valueOf("<array><key>a</key></array>") == Words{"[", "damaged"});
}

TEST_CASE("tags that do not match, unknown elements and stray text are damage") {
    for (const char* value :
         {"<array></dict>", "<string>a</integer>", "<set/>", "<array>text</array>", "<string>a<b/></string>", "<array",
          "< array/>", "<array x></array>", "<array x=1></array>", "<array x=\"1\"y=\"2\"/>"}) {
        CAPTURE(value);
        CHECK(valueOf(value).back() == "damaged");
    }
}

TEST_CASE("a document that is no property list is damage at once") {
    for (const char* document : {"", "hello", "<html></html>", "<array/>", "<plist/>", "<plist></plist>", "bplist00",
                                 "( old, text )", "<plist><array/><array/></plist>", "<!DOCTYPE"}) {
        CAPTURE(document);
        CHECK(eventsOf(document).back() == "damaged");
    }
}

TEST_CASE("what follows the property list is damage, blanks are not") {
    CHECK(eventsOf("<plist><array/></plist>\n\n") == Words{"[", "]", "end"});
    CHECK(eventsOf("<plist><array/></plist>x") == Words{"[", "]", "damaged"});
    CHECK(eventsOf("<plist><array/></plist><plist><array/></plist>").back() == "damaged");
}

TEST_CASE("a document cut anywhere gives a beginning of its events and then damage") {
    const QByteArray whole =
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><dict><key>a</key><string>x &amp; y</string></dict>"
        "<integer>12</integer></array></plist>";
    const Words all = eventsOf(whole);
    CHECK(all.back() == "end");
    for (qsizetype length = 0; length < whole.size(); ++length) {
        CAPTURE(length);
        Words words = eventsOf(whole.first(length));
        CHECK(words.back() == "damaged");
        words.pop_back();
        CHECK(std::equal(words.begin(), words.end(), all.begin()));
    }
}

TEST_CASE("nesting is limited, and a million levels cost no stack") {
    const auto nested = [](int levels, bool closed) {
        return "<plist>" + QByteArray("<array>").repeated(levels) +
               (closed ? QByteArray("</array>").repeated(levels) : QByteArray()) + "</plist>";
    };
    CHECK(eventsOf(nested(int(PropertyListReader::kMaximumDepth), true)).back() == "end");
    CHECK(eventsOf(nested(int(PropertyListReader::kMaximumDepth) + 1, true)).back() == "damaged");
    CHECK(eventsOf(nested(1000000, false)).back() == "damaged");
}

TEST_CASE("a value is skipped with everything in it") {
    PropertyListReader reader(
        "<plist><array><dict><key>a</key><array><dict/></array></dict><string>z</string></array></plist>");
    CHECK(reader.next() == Event::BeginArray);
    CHECK(reader.skipValue(reader.next()));
    CHECK(reader.next() == Event::String);
    CHECK(reader.string() == "z");
}

TEST_CASE("skipping a value that is damaged says so") {
    PropertyListReader reader("<plist><array><dict><key>a</key></array></plist>");
    CHECK(reader.next() == Event::BeginArray);
    CHECK_FALSE(reader.skipValue(reader.next()));
}

TEST_CASE("damage tells its reason and its line") {
    PropertyListReader reader("<plist>\n<array>\n<integer>x</integer>\n</array></plist>");
    while (reader.next() != Event::Damaged) {
    }
    CHECK(QString(reader.damage()) == "an integer that is no number");
    CHECK(reader.line() == 3);
}

TEST_CASE("a byte order mark and other encodings are understood") {
    const QString text =
        QStringLiteral("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist><string>\u00fc</string></plist>");
    CHECK(eventsOf("\xef\xbb\xbf<plist><string>a</string></plist>") == Words{"string a", "end"});
    CHECK(eventsOf(text.toLatin1()) == Words{"string \xc3\xbc", "end"});
    const QString wide = QStringLiteral("\ufeff<plist><string>\u00fc</string></plist>");
    CHECK(eventsOf(QByteArray(reinterpret_cast<const char*>(wide.utf16()), wide.size() * 2)) ==
          Words{"string \xc3\xbc", "end"});
}
