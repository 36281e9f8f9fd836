// The entry of the network library. Any thread but the main one: it blocks until it is done.
#pragma once

#include "update/Fetch.h"

namespace qm {

// Sets either the content or the failure, in words fit for a log line.
using NetworkFetchFunction = void(const QUrl& url, const FetchLimits& limits, QByteArray& content, QByteArray& failure);

inline constexpr const char* kNetworkFetchName = "quillmereNetworkFetch";

}  // namespace qm
