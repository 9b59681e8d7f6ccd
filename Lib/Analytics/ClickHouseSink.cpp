#include "Analytics/ClickHouseSink_p.h"

#include <QUrlQuery>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace Velkor::Analytics
{

namespace
{

void RequireIdentifier(const char* what, const std::string& name)
{
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    };
    if (name.empty() || (name[0] >= '0' && name[0] <= '9') ||
        !std::all_of(name.begin(), name.end(), plain))
    {
        throw std::invalid_argument(std::string("Statistics upload refused: the ClickHouse ") +
                                    what + " '" + name +
                                    "' is not a plain identifier (letters, digits and '_', not "
                                    "starting with a digit)");
    }
}

// ClickHouse's codes for rows it cannot read.
bool IsDataErrorCode(int code)
{
    static constexpr int kCodes[] = {6, 26, 27, 32, 38, 41, 53, 69, 70, 72, 117, 131, 190, 376};
    return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

void AppendArray(std::string& body, const EventLineFields& fields, bool keys)
{
    body.push_back('[');
    bool first = true;
    for (const auto& [key, value] : fields.params)
    {
        if (!first)
        {
            body.push_back(',');
        }
        first = false;
        body.append(keys ? key : value);
    }
    body.push_back(']');
}

}  // namespace

ClickHouseSink::ClickHouseSink(const QUrl& url, const UploadOptions& options)
{
    RequireIdentifier("database", options.database);
    RequireIdentifier("table", options.table);
    QUrl target = url;
    QUrlQuery query(target);
    query.addQueryItem("query", QString::fromStdString("INSERT INTO `" + options.database + "`.`" +
                                                       options.table + "` FORMAT JSONEachRow"));
    target.setQuery(query);
    m_request.setUrl(target);
    m_request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-ndjson");
    if (!options.user.empty())
    {
        m_request.setRawHeader("X-ClickHouse-User", QByteArray::fromStdString(options.user));
    }
    if (!options.key.empty())
    {
        m_request.setRawHeader("X-ClickHouse-Key", QByteArray::fromStdString(options.key));
    }
    for (const auto& [name, value] : options.headers)
    {
        m_request.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
    }
}

QNetworkRequest ClickHouseSink::Request() const
{
    return m_request;
}

void ClickHouseSink::AppendRow(std::string& body, std::string_view /*line*/,
                               const EventLineFields& fields) const
{
    body += "{\"id\":";
    body += fields.id;
    body += ",\"ts\":";
    body += std::to_string(fields.unixMilliseconds);
    body += ",\"sid\":";
    body += fields.sid;
    body += ",\"installation\":";
    body += fields.installation;
    body += ",\"app\":";
    body += fields.identity;
    body += ",\"version\":";
    body += fields.version;
    body += ",\"name\":";
    body += fields.name;
    body += ",\"params.key\":";
    AppendArray(body, fields, true);
    body += ",\"params.value\":";
    AppendArray(body, fields, false);
    body += "}\n";
}

bool ClickHouseSink::RefusesData(int status, const QByteArray& body) const
{
    if (status != 500 || !body.startsWith("Code: "))
    {
        return false;
    }
    return IsDataErrorCode(std::atoi(body.constData() + 6));
}

}  // namespace Velkor::Analytics
