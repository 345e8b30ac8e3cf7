// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tessel/service.h"

#include <atomic>
#include <optional>

#include "dispatcher.h"
#include "remoteservice.h"
#include "tessel/servicemanager.h"
#include "tessel/tessel.h"

namespace tessel {

namespace {

constexpr int BindTimeLimit = 1000; // ms
std::atomic<int> callTimeLimit{5000};

std::optional<Tuple> &threadContext()
{
    thread_local std::optional<Tuple> context;
    return context;
}

} // namespace

void init()
{
    ServiceManager::auto_create();
}

void set_call_time_limit(int milliseconds)
{
    callTimeLimit = qMax(1, milliseconds);
}

int call_time_limit()
{
    return callTimeLimit;
}

Service::Service(const char *interfaceName)
    : m_interfaceName(interfaceName)
{ }

Service::~Service() = default;

PService Service::bind(const AString &description)
{
    Description parsed;
    if (!Description::parse(description.toUtf8(), parsed))
        return PService();
    PService local;
    if (ServiceManager::auto_create().m_dispatcher->findLocal(parsed, local))
        return local;
    return RemoteService::bind(parsed, BindTimeLimit);
}

bool Service::publish()
{
    if (m_name.isEmpty())
        return false;
    ServiceManager::auto_create().m_dispatcher->publish(PService(this));
    return true;
}

void Service::unpublish()
{
    ServiceManager::auto_create().m_dispatcher->unpublish(*this);
}

int Service::call(const Tuple &, Tuple &)
{
    return ERR_NOT_IMPLEMENTED;
}

bool Service::save_session_context(Tuple &context)
{
    if (!threadContext())
        return false;
    context = *threadContext();
    return true;
}

void Service::set_session_context(const Tuple &context)
{
    threadContext() = context;
}

void Service::clear_session_context()
{
    threadContext().reset();
}

Tuple Service::session_context() const
{
    Tuple context("tessel.SessionContext");
    context.set("interface", Value(AString(m_interfaceName)));
    context.set("service", Value(AString(m_name)));
    return context;
}

SessionContextScope::SessionContextScope(const Service &service)
    : m_restores(Service::save_session_context(m_saved))
{
    if (!m_restores)
        Service::set_session_context(service.session_context());
}

SessionContextScope::~SessionContextScope()
{
    if (m_restores)
        Service::set_session_context(m_saved);
}

} // namespace tessel
