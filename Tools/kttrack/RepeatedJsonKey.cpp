#include "RepeatedJsonKey.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QSet>

#include <algorithm>
#include <vector>

namespace Velkor::KT::KtTrack
{

namespace
{

// The index of the quote that closes the string literal opening at `start`, or -1.
int StringEnd(const QByteArray& json, int start)
{
    for (int at = start + 1; at < json.size(); ++at)
    {
        if (json[at] == '\\')
        {
            ++at;
        }
        else if (json[at] == '"')
        {
            return at;
        }
    }
    return -1;
}

std::optional<QString> Decoded(const QByteArray& literal)
{
    const bool plain =
        std::all_of(literal.begin(), literal.end(),
                    [](char c) { return c != '\\' && static_cast<unsigned char>(c) < 0x80; });
    if (plain)
    {
        return QString::fromLatin1(literal.mid(1, literal.size() - 2));
    }
    QJsonParseError error{};
    const QJsonDocument array = QJsonDocument::fromJson('[' + literal + ']', &error);
    if (error.error != QJsonParseError::NoError)
    {
        return std::nullopt;
    }
    return array.array().at(0).toString();
}

struct Level
{
    bool object;
    QSet<QString> keys;
};

}  // namespace

std::optional<QString> RepeatedJsonKey(const QByteArray& json)
{
    std::vector<Level> levels;
    bool keyNext = false;  // after an object's '{' or ','
    for (int at = 0; at < json.size(); ++at)
    {
        const char c = json[at];
        if (c == '{' || c == '[')
        {
            levels.push_back({c == '{', {}});
            keyNext = c == '{';
        }
        else if (c == '}' || c == ']')
        {
            if (levels.empty() || levels.back().object != (c == '}'))
            {
                return std::nullopt;
            }
            levels.pop_back();
            keyNext = false;
        }
        else if (c == ',')
        {
            keyNext = !levels.empty() && levels.back().object;
        }
        else if (c == '"')
        {
            const int end = StringEnd(json, at);
            if (end < 0)
            {
                return std::nullopt;
            }
            if (keyNext)
            {
                const std::optional<QString> key = Decoded(json.mid(at, end - at + 1));
                if (!key)
                {
                    return std::nullopt;
                }
                if (levels.back().keys.contains(*key))
                {
                    return key;
                }
                levels.back().keys.insert(*key);
            }
            at = end;
        }
        else if (c != ' ' && c != '\t' && c != '\r' && c != '\n')
        {
            keyNext = false;
        }
    }
    return std::nullopt;
}

}  // namespace Velkor::KT::KtTrack
