#include "EventsJson.h"

#include "RepeatedJsonKey.h"
#include "ToolError.h"

#include "Tracking/Events/EventJson.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QList>

#include <iterator>
#include <optional>

namespace Velkor::KT::KtTrack
{

namespace
{

const char* TypeName(const QJsonValue& value)
{
    switch (value.type())
    {
        case QJsonValue::Null:
            return "null";
        case QJsonValue::Bool:
            return "a boolean";
        case QJsonValue::Double:
            return "a number";
        case QJsonValue::String:
            return "a string";
        case QJsonValue::Array:
            return "an array";
        case QJsonValue::Object:
            return "an object";
        case QJsonValue::Undefined:
            break;
    }
    return "nothing";
}

std::string QuotedKey(const QString& text)
{
    std::string out;
    Tracking::AppendJsonString(out, text.toStdString());
    return out;
}

bool IsBlank(const QByteArray& line)
{
    for (const char c : line)
    {
        if (c != ' ' && c != '\t' && c != '\r')
        {
            return false;
        }
    }
    return true;
}

Tracking::Event ParseLine(const QByteArray& line, const std::string& where)
{
    // A repeated key would leave one of two values unread. It is looked for before parsing:
    // Qt 5's parser loses the memory of an object or array that a repeated key replaces.
    if (const std::optional<QString> key = RepeatedJsonKey(line))
    {
        throw ToolError(where + "key " + QuotedKey(*key) + " appears twice in one object");
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError)
    {
        throw ToolError(where + "invalid JSON at column " + std::to_string(error.offset + 1) +
                        ": " + error.errorString().toStdString());
    }
    if (!document.isObject())
    {
        throw ToolError(where + "expected an object, found " +
                        (document.isArray() ? "an array" : "a single value"));
    }
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it)
    {
        if (it.key() != QLatin1String("name") && it.key() != QLatin1String("params"))
        {
            throw ToolError(where + "unknown key " + QuotedKey(it.key()) +
                            " (an event has only \"name\" and \"params\")");
        }
    }
    const QJsonValue name = object.value(QLatin1String("name"));
    if (name.isUndefined())
    {
        throw ToolError(where + "\"name\" is missing");
    }
    if (!name.isString())
    {
        throw ToolError(where + "\"name\" must be a string, not " + TypeName(name));
    }
    Tracking::Event event{name.toString().toStdString(), {}};
    const QJsonValue params = object.value(QLatin1String("params"));
    if (params.isUndefined())
    {
        return event;
    }
    if (!params.isObject())
    {
        throw ToolError(where + "\"params\" must be an object, not " + TypeName(params));
    }
    const QJsonObject paramsObject = params.toObject();
    for (auto it = paramsObject.begin(); it != paramsObject.end(); ++it)
    {
        if (!it.value().isString())
        {
            throw ToolError(where + "value of " + QuotedKey(it.key()) + " must be a string, not " +
                            TypeName(it.value()));
        }
        event.params[it.key().toStdString()] = it.value().toString().toStdString();
    }
    return event;
}

}  // namespace

QByteArray ReadInput(const std::string& path, std::istream& in)
{
    if (path == "-")
    {
        const std::string all{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
        return QByteArray(all.data(), static_cast<int>(all.size()));
    }
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
    {
        throw ToolError(path + ": cannot read: " + file.errorString().toStdString());
    }
    return file.readAll();
}

std::vector<NumberedEvent> ParseEvents(const QByteArray& data, const std::string& name)
{
    std::vector<NumberedEvent> events;
    const QList<QByteArray> lines = data.split('\n');
    for (int i = 0; i < lines.size(); ++i)
    {
        if (IsBlank(lines[i]))
        {
            continue;
        }
        const int line = i + 1;
        events.push_back({ParseLine(lines[i], name + ":" + std::to_string(line) + ": "), line});
    }
    return events;
}

}  // namespace Velkor::KT::KtTrack
