// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tessel/servicemanager.h"

#include <QCoreApplication>

#include <cstdlib>

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
    // Never destroyed: the services that are still published at the end of the process must not be taken down
    // after what they use.
    static ServiceManager *const manager = new Process;
    return *manager;
}

bool ServiceManager::listen(const AString &address)
{
    Description parsed;
    if (!Description::parseAddress(address.toUtf8(), parsed) || !m_dispatcher->listen(parsed))
        return false;
    // At the end of the process requests must stop before the objects that services use are destroyed: what
    // was made before the endpoint outlives them by this.
    std::atexit([] { auto_create().m_dispatcher->stop(); });
    // And before the application is, through which Qt passes the events of every thread.
    qAddPostRoutine([] { auto_create().m_dispatcher->rest(); });
    return true;
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
