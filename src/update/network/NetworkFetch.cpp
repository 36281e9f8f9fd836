#include "update/NetworkFetch.h"

#include <curl/curl.h>

#include <QDeadlineTimer>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>

namespace qm {

namespace {

constexpr int kMostRedirections = 5;
constexpr long kSuccess = 200;
constexpr std::size_t kLongestHeader = std::size_t{256} << 10;  // bytes

struct EasyEnd {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct MultiEnd {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};

bool isSecure(const QUrl& url) {
    return url.scheme() == u"https";
}

bool isWeb(const QUrl& url) {
    return isSecure(url) || url.scheme() == u"http";
}

bool isThisMachine(const QString& host) {
    return host == u"localhost" || host == u"::1" || host.startsWith(u"127.");
}

// The library knows where an answer ends as the protocol says: by its length, by its last chunk, or with the connection
// where neither is announced. What ends otherwise is an error. The limits of time and the redirections are ours.
class Fetching {
public:
    explicit Fetching(const FetchLimits& limits)
        : m_limits(limits), m_total(limits.total), m_easy(curl_easy_init()), m_multi(curl_multi_init()) {}

    void run(QUrl url);

    QByteArray content;
    QByteArray failure;

private:
    static std::size_t headerCame(char* line, std::size_t, std::size_t size, void* fetching);
    static std::size_t contentCame(char* piece, std::size_t, std::size_t size, void* fetching);
    void prepare(const QUrl& url);
    void perform();
    CURLcode result() const;
    QUrl redirection() const;
    QByteArray flaw() const;
    void giveUp(const char* reason);

    const FetchLimits m_limits;
    const QDeadlineTimer m_total;
    QDeadlineTimer m_patience;  // for the answer, then for each piece
    const std::unique_ptr<CURL, EasyEnd> m_easy;
    const std::unique_ptr<CURLM, MultiEnd> m_multi;
    std::size_t m_headerSize = 0;
    char m_error[CURL_ERROR_SIZE] = {};
};

void Fetching::run(QUrl url) {
    for (int redirections = 0; redirections <= kMostRedirections; ++redirections) {
        content.clear();
        prepare(url);
        perform();
        const QUrl target = failure.isEmpty() ? redirection() : QUrl();
        if (target.isEmpty()) {
            if (failure.isEmpty()) failure = flaw();
            if (!failure.isEmpty()) content.clear();
            return;
        }
        if (!isWeb(target) || (isSecure(url) && !isSecure(target))) break;
        url = target;
    }
    content.clear();
    giveUp("its redirections lead nowhere");
}

// The content is taken as it was sent: nothing unpacks.
void Fetching::prepare(const QUrl& url) {
    CURL* easy = m_easy.get();
    curl_easy_reset(easy);
    curl_easy_setopt(easy, CURLOPT_URL, url.toEncoded().constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Quillmere");
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "identity");
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(m_limits.size));
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, headerCame);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, contentCame);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, m_error);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);  // or the end waits for a name that is being looked up
    if (isThisMachine(url.host())) curl_easy_setopt(easy, CURLOPT_PROXY, "");
    const char* trusted = std::getenv("SSL_CERT_FILE");  // as other programs of the system understand it
    if (trusted) curl_easy_setopt(easy, CURLOPT_CAINFO, trusted);
}

void Fetching::perform() {
    m_patience.setRemainingTime(m_limits.answer);
    m_headerSize = 0;
    curl_multi_add_handle(m_multi.get(), m_easy.get());
    for (int running = 1; failure.isEmpty();) {
        curl_multi_perform(m_multi.get(), &running);
        if (running == 0) break;
        if (m_total.hasExpired()) giveUp("it takes too long");
        if (m_patience.hasExpired()) giveUp("the server is silent");
        const qint64 wait = std::min({m_total.remainingTime(), m_patience.remainingTime(), qint64(60000)});
        if (failure.isEmpty()) curl_multi_poll(m_multi.get(), nullptr, 0, static_cast<int>(wait) + 1, nullptr);
    }
    const CURLcode code = result();
    curl_multi_remove_handle(m_multi.get(), m_easy.get());
    if (code == CURLE_FILESIZE_EXCEEDED) giveUp("it is too large");
    if (code != CURLE_OK) giveUp(m_error[0] != '\0' ? m_error : curl_easy_strerror(code));
}

// Of what has ended; fine as long as nothing has.
CURLcode Fetching::result() const {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left))
        if (message->msg == CURLMSG_DONE) return message->data.result;
    return CURLE_OK;
}

// Called for each line of the header; the last one is empty.
std::size_t Fetching::headerCame(char* line, std::size_t, std::size_t size, void* fetching) {
    auto* self = static_cast<Fetching*>(fetching);
    self->m_headerSize += size;
    if (self->m_headerSize > kLongestHeader) {
        self->giveUp("its header does not end");
        return 0;
    }
    if (QByteArrayView(line, static_cast<qsizetype>(size)).trimmed().isEmpty())
        self->m_patience.setRemainingTime(self->m_limits.silence);
    return size;
}

std::size_t Fetching::contentCame(char* piece, std::size_t, std::size_t size, void* fetching) {
    auto* self = static_cast<Fetching*>(fetching);
    self->m_patience.setRemainingTime(self->m_limits.silence);
    self->content.append(piece, static_cast<qsizetype>(size));
    if (self->content.size() <= self->m_limits.size) return size;
    self->giveUp("it is too large");
    return 0;
}

void Fetching::giveUp(const char* reason) {
    if (failure.isEmpty()) failure = reason;
}

QUrl Fetching::redirection() const {
    const char* target = nullptr;
    curl_easy_getinfo(m_easy.get(), CURLINFO_REDIRECT_URL, &target);
    return target ? QUrl::fromEncoded(target) : QUrl();
}

// What is wrong with the finished answer; empty if it is what was asked for.
QByteArray Fetching::flaw() const {
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status != kSuccess) return "the server answers " + QByteArray::number(qint64(status));
    curl_header* encoding = nullptr;
    if (curl_easy_header(m_easy.get(), "Content-Encoding", 0, CURLH_HEADER, -1, &encoding) == CURLHE_OK &&
        QByteArray(encoding->value).toLower() != "identity")
        return "it is packed";
    return content.isEmpty() ? "it is empty" : QByteArray();
}

}  // namespace

}  // namespace qm

extern "C" Q_DECL_EXPORT void quillmereNetworkFetch(const QUrl& url, const qm::FetchLimits& limits, QByteArray& content,
                                                    QByteArray& failure) {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    qm::Fetching fetching(limits);
    fetching.run(url);
    content = fetching.content;
    failure = fetching.failure;
}
