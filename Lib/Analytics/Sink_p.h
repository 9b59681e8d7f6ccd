#pragma once

#include "Analytics/EventLineReader_p.h"

#include <QByteArray>
#include <QNetworkRequest>

#include <string>
#include <string_view>

namespace Velkor::Analytics
{

// A kind of store: how a batch is addressed and what one event's row in its body looks like.
class Sink
{
public:
    virtual ~Sink() = default;

    // The request a batch is posted with, headers included, without the body's encoding.
    virtual QNetworkRequest Request() const = 0;
    // Appends the row of one event: `line` as the spool holds it (no line end), read into
    // `fields`.
    virtual void AppendRow(std::string& body, std::string_view line,
                           const EventLineFields& fields) const = 0;
    // Whether a reply other than 400 and 413 refuses the batch's data rather than failing.
    virtual bool RefusesData(int /*status*/, const QByteArray& /*body*/) const { return false; }
};

}  // namespace Velkor::Analytics
