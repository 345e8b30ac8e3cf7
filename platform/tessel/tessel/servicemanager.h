// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_SERVICEMANAGER_H
#define TESSEL_SERVICEMANAGER_H

#include <QtGlobal>

#include <memory>

#include "astring.h"
#include "export.h"
#include "service.h"

namespace tessel {

class Dispatcher;

/// The process's published services and its listening endpoints, on a dispatch thread of their own.
class TESSEL_EXPORT ServiceManager
{
public:
    /// The process's one manager, made when it is first asked for.
    static ServiceManager &auto_create();

    /// Opens an endpoint at "TCPIP:HOST:PORT"; "localhost" is reachable from this machine only, port 0 takes
    /// a free one. True, too, when this process listens there already. Needs a QCoreApplication.
    virtual bool listen(const AString &address);
    /// Port of the endpoint opened last; 0 for none.
    quint16 port() const;
    /// Closes every endpoint and connection; published services stay.
    void close();

protected:
    ServiceManager();
    virtual ~ServiceManager();

private:
    Q_DISABLE_COPY(ServiceManager)
    friend class Service;
    const std::unique_ptr<Dispatcher> m_dispatcher;
};

} // namespace tessel

#endif // TESSEL_SERVICEMANAGER_H
