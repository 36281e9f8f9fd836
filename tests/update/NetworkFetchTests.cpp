#include <doctest/doctest.h>

#include <QFile>
#include <QTemporaryDir>

#include "support/network/LocalServer.h"
#include "support/widgets/TestText.h"
#include "update/BackgroundFetch.h"

using namespace qm;
using namespace std::chrono_literals;

namespace {

constexpr qint64 kSize = kFetchedSize;

struct Listening : LocalServer {
    Listening() { REQUIRE(listen()); }

    std::string failureOf(const Answer& answer, const FetchLimits& limits = kPatient) {
        answers["/it"] = answer;
        const auto result = fetchInBackground(url("/it"), limits);
        return result ? "none" : result.error().message;
    }

    std::string contentOf(const Answer& answer) {
        answers["/it"] = answer;
        const auto result = fetchInBackground(url("/it"));
        return result ? result.value().toStdString() : "failed: " + result.error().message;
    }
};

// How an answer is cut into pieces on its way, which must not matter.
constexpr int kPieceSizes[] = {0, 1, 7, 64};

const QByteArray kOk = "HTTP/1.1 200 OK\r\n";
const QByteArray kChunked = "Transfer-Encoding: chunked\r\n\r\n";

}  // namespace

TEST_CASE_FIXTURE(Listening, "what the server sends is what is fetched, byte for byte") {
    QByteArray content;
    for (int byte = 0; byte < 256; ++byte) content += static_cast<char>(byte);
    answers["/it"] = page(content);
    const auto result = fetchInBackground(url("/it"));
    REQUIRE(result);
    CHECK(result.value() == content);
    CHECK(requests.contains("/it"));
}

TEST_CASE_FIXTURE(Listening, "an error page is a failure, whatever stands on it") {
    for (const int status : {204, 304, 400, 401, 403, 404, 407, 410, 500, 503}) {
        CAPTURE(status);
        CHECK(failureOf(page("a page", status)) != "none");
    }
}

TEST_CASE("a server that is not there is a failure") {
    LocalServer gone;
    REQUIRE(gone.listen());
    const QUrl url = gone.url("/it");
    gone.stopListening();
    CHECK_FALSE(fetchInBackground(url));
}

TEST_CASE_FIXTURE(Listening, "more than the limit is a failure, announced or not") {
    for (const int size : kPieceSizes) {
        CAPTURE(size);
        pieceSize = size;
        CHECK(failureOf(page(QByteArray(kSize, 'x'))) == "none");
        CHECK(failureOf(page(QByteArray(kSize + 1, 'x'))) == "it is too large");
        CHECK(failureOf({kOk + "Content-Length: 99999999999999\r\n\r\n", {}, 0, false}) == "it is too large");
        CHECK(failureOf({kOk + kChunked, "5\r\nabcde\r\n"}) == "it is too large");
        CHECK(failureOf({kOk + kChunked, "5\r\nab"}) != "none");
        CHECK(failureOf({kOk + "\r\n", "endless "}) == "it is too large");
        CHECK(failureOf({kOk, "X-More: of this\r\n"}) == "its header does not end");
    }
}

TEST_CASE_FIXTURE(Listening, "less than was announced is a failure, and so is no content or no answer") {
    for (const int size : kPieceSizes) {
        CAPTURE(size);
        pieceSize = size;
        CHECK(failureOf({kOk + "Content-Length: 10\r\n\r\nshort"}) != "none");
        CHECK(failureOf(page("")) == "it is empty");
        CHECK(failureOf({kOk + kChunked + "0\r\n\r\n"}) == "it is empty");
        CHECK(failureOf({""}) != "none");
        CHECK(failureOf({"no server of this kind\r\n\r\n"}) != "none");
        CHECK(failureOf({"HTTP/1.1 200"}) != "none");
    }
}

TEST_CASE_FIXTURE(Listening, "without a length the end of the connection is the end") {
    for (const int size : kPieceSizes) {
        pieceSize = size;
        CHECK(contentOf({kOk + "\r\nall of it"}) == "all of it");
        CHECK(contentOf({kOk + "Connection: close\r\n\r\nall of it"}) == "all of it");
        CHECK(contentOf({"HTTP/1.0 200 OK\r\n\r\nall of it"}) == "all of it");
    }
}

TEST_CASE_FIXTURE(Listening, "with its length or its last chunk an answer is whole, though the connection stays open") {
    for (const int size : kPieceSizes) {
        CAPTURE(size);
        pieceSize = size;
        const auto staysOpen = [](const QByteArray& all) { return Answer{all, {}, 0, false}; };
        CHECK(contentOf(staysOpen(kOk + "Content-Length: 5\r\n\r\nabcde")) == "abcde");
        CHECK(contentOf(staysOpen(kOk + kChunked + "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n")) == "abcde");
        CHECK(contentOf(staysOpen(kOk + kChunked + "5;of=this\r\nabcde\r\n0\r\nX-Sum: 1\r\n\r\n")) == "abcde");
        CHECK(contentOf({kOk + kChunked + "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"}) == "abcde");
    }
}

TEST_CASE_FIXTURE(Listening, "chunks that break off before the last one are a failure, wherever they do") {
    const QByteArray chunks = "3\r\nabc\r\n2\r\nde\r\n0\r\n";
    for (qsizetype length = 0; length < chunks.size() - 2; ++length) {
        CAPTURE(length);
        CHECK(failureOf({kOk + kChunked + chunks.first(length)}) != "none");
    }
    CHECK(failureOf({kOk + kChunked + "no number\r\nabc\r\n0\r\n\r\n"}) != "none");
}

TEST_CASE_FIXTURE(Listening, "a silent server is given up") {
    constexpr FetchLimits kHasty{100ms, 120s, 240s, kSize};
    CHECK(failureOf({"", {}, 0, false}, kHasty) == "the server is silent");
    CHECK(failureOf({kOk, "X-More: of this\r\n", 5}, kHasty) == "the server is silent");
    constexpr FetchLimits kHastyLater{120s, 100ms, 240s, kSize};
    CHECK(failureOf({kOk + "Content-Length: 10\r\n\r\nshort", {}, 0, false}, kHastyLater) == "the server is silent");
}

TEST_CASE_FIXTURE(Listening, "a server that sends for ever is given up") {
    constexpr FetchLimits kOnce{120s, 120s, 200ms, kSize << 10};
    CHECK(failureOf({kOk + "Content-Length: 1000000\r\n\r\n", "x", 5}, kOnce) == "it takes too long");
}

TEST_CASE_FIXTURE(Listening, "packed content is not taken") {
    CHECK(failureOf(page("packed", 200, "Content-Encoding: gzip\r\n")) != "none");
}

TEST_CASE_FIXTURE(Listening, "a few redirections are followed") {
    answers["/a"] = redirection("/b");
    answers["/b"] = redirection(url("/c").toEncoded());
    answers["/c"] = page("here");
    const auto result = fetchInBackground(url("/a"));
    INFO((result ? "" : result.error().message));
    REQUIRE(result);
    CHECK(result.value() == "here");
    CHECK(requests.contains("/b"));
}

TEST_CASE_FIXTURE(Listening, "redirections in a circle, or to anything but a web server, are a failure") {
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("secret")));
    REQUIRE(file.open(QIODevice::WriteOnly));
    file.write("secret");
    file.close();
    CHECK(failureOf(redirection("/it")) != "none");
    CHECK(requests.size() < 50);
    CHECK(failureOf(redirection("file://" + file.fileName().toUtf8())) != "none");
    CHECK(failureOf(redirection("ftp://127.0.0.1/it")) != "none");
    CHECK(failureOf(redirection("data:text/plain,here")) != "none");
    CHECK(failureOf(redirection("qrc:/images/default.tiff")) != "none");
    CHECK(failureOf(redirection("")) != "none");
    CHECK(failureOf(redirection("http://")) != "none");
}
