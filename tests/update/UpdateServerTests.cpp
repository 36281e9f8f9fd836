#include "update/UpdateServer.h"

#include "support/widgets/TestText.h"

using namespace qm;

TEST_CASE("the server that the program was built with is asked over a secure connection") {
    for (const QLatin1StringView path : {kDescriptionPath, kDiscImagePath, kProductPath}) {
        const QUrl url = updateUrl(path);
        CHECK(url.scheme() == "https");
        CHECK_FALSE(url.host().isEmpty());
        CHECK(url.path() == QString(path));
    }
}

TEST_CASE("the paths are those of the vendor's server") {
    CHECK(QString(kDescriptionPath) == "/quillmere/QuillmereVersionLeopard.xml");
    CHECK(QString(kDiscImagePath) == "/Download/Quillmere.dmg");
    CHECK(QString(kProductPath) == "/quillmere/");
}

TEST_CASE("the environment may name another server") {
    qputenv("QUILLMERE_UPDATE_SERVER", "http://127.0.0.1:8080");
    const QUrl url = updateUrl(kProductPath);
    qunsetenv("QUILLMERE_UPDATE_SERVER");
    CHECK(url == QUrl("http://127.0.0.1:8080/quillmere/"));
}
