#include "Analytics/NdjsonSink_p.h"

namespace Velkor::Analytics
{

NdjsonSink::NdjsonSink(const QUrl& url, const UploadOptions& options) : m_request(url)
{
    m_request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-ndjson");
    for (const auto& [name, value] : options.headers)
    {
        m_request.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
    }
}

QNetworkRequest NdjsonSink::Request() const
{
    return m_request;
}

void NdjsonSink::AppendRow(std::string& body, std::string_view line,
                           const EventLineFields& /*fields*/) const
{
    body += line;
    body.push_back('\n');
}

}  // namespace Velkor::Analytics
