// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tessel/servicemanager.h"

#include "dispatcher.h"
#include "tessel/description.h"

namespace tessel {

ServiceManager::ServiceManager()
    : m_dispatcher(std::make_unique<Dispatcher>())
{ }

ServiceManager::~ServiceManager() = default;

ServiceManager &ServiceManager::auto_create()
{
    struct Process : ServiceManager
    { };
    static Process manager;
    return manager;
}

bool ServiceManager::listen(const AString &address)
{
    Description parsed;
    return Description::parseAddress(address.toUtf8(), parsed) && m_dispatcher->listen(parsed);
}

quint16 ServiceManager::port() const
{
    return m_dispatcher->lastPort();
}

void ServiceManager::close()
{
    m_dispatcher->close();
}

} // namespace tessel
