// Any bytes as a property list.
#include <QByteArray>

#include "fuzz/FuzzTarget.h"
#include "library/PropertyListReader.h"

using namespace qm;
using namespace qm::test;
using Event = PropertyListEvent;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes listWith(const std::string& values, const std::string& prolog = "<?xml version=\"1.0\"?>\n") {
    const std::string text = prolog + "<plist version=\"1.0\"><array>" + values + "</array></plist>\n";
    return {text.begin(), text.end()};
}

bool begins(Event event) {
    return event == Event::BeginArray || event == Event::BeginDict;
}

bool ends(Event event) {
    return event == Event::EndArray || event == Event::EndDict;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    PropertyListReader reader(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    std::size_t depth = 0, events = 0;
    Event event = reader.next();
    for (; event != Event::End && event != Event::Damaged; event = reader.next()) {
        promise(++events <= size);
        if (begins(event)) ++depth;
        if (ends(event)) promise(depth-- > 0);
        promise(depth <= PropertyListReader::kMaximumDepth);
        const std::string_view text = reader.text();
        promise(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8());
    }
    promise(event == Event::Damaged || depth == 0);
    promise((event == Event::Damaged) == (*reader.damage() != '\0'));
    promise(reader.line() >= 1 && reader.next() == event);
    return 0;
}

std::vector<Bytes> qm::test::fuzzSeeds() {
    const std::string track =
        "<dict><key>track</key><string>/music/a &amp; b</string><key>bass</key><integer>-7</integer></dict>";
    const std::string bomb = "<!DOCTYPE p [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\"><!-- ] -->]>";
    return {
        listWith(track + track),
        listWith("<real>2.5</real><true/><false/><date>2020-01-02T03:04:05Z</date><data>AAEC</data><dict/>"),
        listWith("<string>a<![CDATA[ <b> & ]]>c<!-- d -->e<?pi f?>g&#x1F600;\xc3\xbc\r\n</string>"),
        listWith("<string>&b;</string>", bomb),
        listWith("<string>\xfc</string>", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"),
        listWith(std::string(300, '\n') + track + track + track, "\xef\xbb\xbf<!-- > --><?pi > ?>"),
    };
}
