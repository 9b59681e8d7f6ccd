#include "App/SessionId.h"

#include <QUuid>

#include <utility>

namespace Velkor::App
{

SessionId::SessionId() : m_id(QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString()) {}

SessionId::SessionId(std::string id) : m_id(std::move(id)) {}

std::string SessionId::GetSessionId() const
{
    return m_id;
}

}  // namespace Velkor::App
