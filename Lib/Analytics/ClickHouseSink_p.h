#pragma once

#include "Analytics/Sink_p.h"
#include "Analytics/UploadOptions.h"

#include <QUrl>

namespace Velkor::Analytics
{

// ClickHouse's HTTP interface: each batch is "INSERT INTO `database`.`table` FORMAT
// JSONEachRow" (in the query string) with one row per event:
//
//   {"id":"...","ts":1795520250123,"sid":"...","installation":"...","app":"...",
//    "version":"...","name":"...","params.key":["FPS",...],"params.value":["30",...]}
//
// "ts" is the event's time in milliseconds, the properties are the Nested column "params" (see
// Store/schema.sql). User and key travel in X-ClickHouse-User and X-ClickHouse-Key.
//
// ClickHouse answers 500 also when it cannot read the rows (codes such as 27 "cannot parse
// input" or 117 "incorrect data"); those replies refuse the data like a 400.
class ClickHouseSink : public Sink
{
public:
    // Throws std::invalid_argument when the database or the table is not a plain identifier.
    ClickHouseSink(const QUrl& url, const UploadOptions& options);

    QNetworkRequest Request() const override;
    void AppendRow(std::string& body, std::string_view line,
                   const EventLineFields& fields) const override;
    bool RefusesData(int status, const QByteArray& body) const override;

private:
    QNetworkRequest m_request;
};

}  // namespace Velkor::Analytics
