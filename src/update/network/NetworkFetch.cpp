#include "update/network/NetworkFetch.h"

#include <QEventLoop>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QTimer>
#include <algorithm>

namespace qm {

namespace {

constexpr int kMostRedirections = 5;
constexpr int kSuccess = 200;

// The content is taken as it was sent, over one plain connection: its length can be checked, and nothing unpacks.
QNetworkRequest requestFor(const QUrl& url) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(kMostRedirections);
    request.setHeader(QNetworkRequest::UserAgentHeader, QByteArrayLiteral("Quillmere"));
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

bool isThisMachine(const QString& host) {
    return host == u"localhost" || QHostAddress(host).isLoopback();
}

class Fetching : public QObject {
public:
    explicit Fetching(const FetchLimits& limits) : m_limits(limits) {}

    void run(const QUrl& url);

    QByteArray content;
    QByteArray failure;

private:
    void answerBegins();
    void takeContent();
    void conclude();
    QByteArray flaw() const;
    void giveUp(const char* reason);

    FetchLimits m_limits;
    QNetworkAccessManager m_manager;
    QNetworkReply* m_reply = nullptr;
    QTimer m_patience;  // for the answer, then for each piece
    QEventLoop m_loop;
};

void Fetching::run(const QUrl& url) {
    if (isThisMachine(url.host())) m_manager.setProxy(QNetworkProxy::NoProxy);
    m_reply = m_manager.get(requestFor(url));
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Fetching::answerBegins);
    connect(m_reply, &QNetworkReply::readyRead, this, &Fetching::takeContent);
    connect(m_reply, &QNetworkReply::finished, &m_loop, &QEventLoop::quit);
    connect(&m_patience, &QTimer::timeout, this, [this] { giveUp("the server is silent"); });
    m_patience.start(m_limits.answer);
    QTimer::singleShot(m_limits.total, this, [this] { giveUp("it takes too long"); });
    if (!m_reply->isFinished()) m_loop.exec();
    conclude();
}

void Fetching::answerBegins() {
    m_patience.start(m_limits.silence);
    if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_limits.size) giveUp("it is too large");
}

void Fetching::takeContent() {
    m_patience.start(m_limits.silence);
    content += m_reply->read(m_limits.size + 1 - content.size());
    if (content.size() > m_limits.size) giveUp("it is too large");
}

void Fetching::giveUp(const char* reason) {
    if (failure.isEmpty()) failure = reason;
    m_reply->abort();
}

void Fetching::conclude() {
    if (failure.isEmpty()) takeContent();
    if (failure.isEmpty()) failure = flaw();
    if (!failure.isEmpty()) content.clear();
}

// What is wrong with the finished answer; empty if it is the whole of what was asked for.
QByteArray Fetching::flaw() const {
    if (m_reply->error() != QNetworkReply::NoError) return m_reply->errorString().toUtf8();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != kSuccess) return "the server answers " + QByteArray::number(status);
    if (m_reply->hasRawHeader("Content-Encoding") && m_reply->rawHeader("Content-Encoding").toLower() != "identity")
        return "it is packed";
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    // A redirection may leave its own length behind.
    if (length.isValid() && content.size() < length.toLongLong())
        return "it is not complete: " + QByteArray::number(content.size()) + " of " + length.toByteArray() + " bytes";
    // When a connection breaks between two chunks, the toolkit may take that for the end.
    const bool chunked = m_reply->rawHeader("Transfer-Encoding").toLower().contains("chunked");
    if (chunked && !m_limits.showsItsEnd) return "its end cannot be told";
    return content.isEmpty() ? "it is empty" : QByteArray();
}

}  // namespace

}  // namespace qm

extern "C" Q_DECL_EXPORT void quillmereNetworkFetch(const QUrl& url, const qm::FetchLimits& limits, QByteArray& content,
                                                    QByteArray& failure) {
    qm::Fetching fetching(limits);
    fetching.run(url);
    content = fetching.content;
    failure = fetching.failure;
}
