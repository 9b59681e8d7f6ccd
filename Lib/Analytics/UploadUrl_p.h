#pragma once

#include <QUrl>

#include <string>

namespace Velkor::Analytics
{

// `text` as the URL batches are posted to: http or https, with a host, without a user name or
// password (credentials belong in headers, never in a URL that may be logged), and https only
// where Qt has a TLS backend. Throws std::invalid_argument with a message that says what is
// wrong.
QUrl CheckedUploadUrl(const std::string& text);

// The URL as the log and the counters name it: scheme, host, port and path, nothing else.
std::string UrlForMessages(const QUrl& url);

}  // namespace Velkor::Analytics
