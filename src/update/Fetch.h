// Reading a whole resource of a web server, with an end in any case. What speaks to the network is a library of its
// own, loaded by the first fetch, so that the start of the program does not pay for it.
#pragma once

#include <QByteArray>
#include <QUrl>
#include <chrono>
#include <functional>

#include "engine/api/Result.h"

namespace qm {

struct FetchLimits {
    std::chrono::milliseconds answer;   // until the server has begun to answer, finding and reaching it included
    std::chrono::milliseconds silence;  // between two pieces of the content
    std::chrono::milliseconds total;
    qint64 size;  // bytes of content
};

// Blocks until the content is there as a whole or the fetch has failed. Any thread but the main one.
using Fetch = std::function<Result<QByteArray>(const QUrl& url, const FetchLimits& limits)>;

// The fetch over HTTP and HTTPS. It fails unless the answer is a success, within the limits and complete: it ended as
// the protocol says, with its announced length, its last chunk, or, if it announced neither, with the connection. It
// follows a few redirections, never to another protocol or from a secure to an open connection.
Result<QByteArray> fetchFromNetwork(const QUrl& url, const FetchLimits& limits);

}  // namespace qm
