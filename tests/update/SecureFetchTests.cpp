#include <doctest/doctest.h>

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

#include "support/network/LocalServer.h"
#include "support/widgets/TestText.h"
#include "update/BackgroundFetch.h"

using namespace qm;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    REQUIRE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// A key and a certificate for this machine, made for one test.
struct Identity {
    Identity() {
        const QString key = folder.filePath(QStringLiteral("key"));
        const QStringList arguments{"req",
                                    "-x509",
                                    "-newkey",
                                    "ec",
                                    "-pkeyopt",
                                    "ec_paramgen_curve:prime256v1",
                                    "-nodes",
                                    "-days",
                                    "2",
                                    "-subj",
                                    "/CN=127.0.0.1",
                                    "-addext",
                                    "subjectAltName=IP:127.0.0.1",
                                    "-keyout",
                                    key,
                                    "-out",
                                    file};
        REQUIRE(QProcess::execute(QStringLiteral("openssl"), arguments) == 0);
        privateKey = QSslKey(contentOf(key), QSsl::Ec);
        certificate = QSslCertificate(contentOf(file));
        REQUIRE_FALSE(certificate.isNull());
    }
    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("certificate"));
    QSslKey privateKey;
    QSslCertificate certificate;
};

std::unique_ptr<QTcpServer> secureServer(const Identity& identity) {
    auto server = std::make_unique<QSslServer>();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(identity.certificate);
    configuration.setPrivateKey(identity.privateKey);
    server->setSslConfiguration(configuration);
    return server;
}

// A secure server and an open one.
struct TwoServers {
    TwoServers() {
        REQUIRE(secure.listen());
        REQUIRE(open.listen());
        secure.answers["/it"] = page("secure");
        open.answers["/it"] = page("open");
    }
    ~TwoServers() { qunsetenv("SSL_CERT_FILE"); }

    void trust() const { qputenv("SSL_CERT_FILE", QFile::encodeName(identity.file)); }
    QUrl secureUrl(const QByteArray& path) const { return secure.url(path, QStringLiteral("https")); }

    Identity identity;
    LocalServer secure{secureServer(identity)};
    LocalServer open;
};

}  // namespace

TEST_CASE_FIXTURE(TwoServers, "a secure server is read if somebody vouches for it") {
    CHECK_FALSE(fetchInBackground(secureUrl("/it")));
    CHECK(secure.requests.isEmpty());
    trust();
    const auto result = fetchInBackground(secureUrl("/it"));
    REQUIRE(result);
    CHECK(result.value() == "secure");
}

TEST_CASE_FIXTURE(TwoServers, "a redirection leads from an open server to a secure one, never the other way") {
    trust();
    open.answers["/up"] = redirection(secureUrl("/it").toEncoded());
    secure.answers["/down"] = redirection(open.url("/it").toEncoded());
    secure.answers["/along"] = redirection("/it");
    CHECK(fetchInBackground(open.url("/up")));
    CHECK(fetchInBackground(secureUrl("/along")));
    CHECK_FALSE(fetchInBackground(secureUrl("/down")));
    CHECK_FALSE(open.requests.contains("/it"));
}
