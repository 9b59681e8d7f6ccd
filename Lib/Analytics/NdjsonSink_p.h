#pragma once

#include "Analytics/Sink_p.h"
#include "Analytics/UploadOptions.h"

#include <QUrl>

namespace Velkor::Analytics
{

// A plain POST of the spool's lines as they are, one JSON object per line
// (application/x-ndjson), with the options' headers: what the HTTP inputs of log shippers take.
class NdjsonSink : public Sink
{
public:
    NdjsonSink(const QUrl& url, const UploadOptions& options);

    QNetworkRequest Request() const override;
    void AppendRow(std::string& body, std::string_view line,
                   const EventLineFields& fields) const override;

private:
    QNetworkRequest m_request;
};

}  // namespace Velkor::Analytics
