#include "Tracking/Gui/ObjectSearch_p.h"

#include "Tracking/Config/KtmStat.h"

namespace Velkor::KT::Tracking
{

IdPath IdPath::Of(const Config::Object& entry)
{
    return IdPath{QString::fromStdString(entry.id()).split(QLatin1Char(':'), Qt::SkipEmptyParts),
                  entry.idIsRegExp(), entry.idIsRoot()};
}

IdPart::IdPart(const QString& part, bool isRegExp) : m_part(part)
{
    if (isRegExp)
    {
        m_expression.emplace(part);
    }
}

bool IdPart::MatchesStart(const QString& name) const
{
    return m_expression ? m_expression->exactMatch(name) : name == m_part;
}

bool IdPart::MatchesDescendant(const QString& name) const
{
    return m_expression ? m_expression->indexIn(name) != -1 : name == m_part;
}

}  // namespace Velkor::KT::Tracking
