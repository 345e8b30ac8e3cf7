// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_SERVICE_H
#define TESSEL_SERVICE_H

#include <QByteArray>

#include "astring.h"
#include "autoref.h"
#include "export.h"
#include "tuple.h"

namespace tessel {

class Service;
using PService = AutoRef<Service>;

/// Something that can be called: an implementation in this process, or the proxy of one in another.
///
/// An implementation overrides call(); requests from other processes reach it on the middleware's dispatch
/// thread, one at a time. A proxy may be called from any thread; it blocks the caller until the answer, at
/// most for the time limit.
class TESSEL_EXPORT Service : public RefCounted
{
public:
    explicit Service(const char *interfaceName);

    /// The service that \p description names, "[INTERFACE:]NAME@TCPIP:HOST:PORT": itself when it is
    /// published in this process at that address, else a proxy. Empty after at most 1 s when nobody answers
    /// there, or somebody else. A peer that was restarted is another one: its old proxies stay dead.
    static PService bind(const AString &description);

    /// Makes the service reachable under its name wherever this process listens. One of the same interface
    /// and name that was published before is gone with that.
    bool publish();
    void unpublish();

    const QByteArray &interface_name() const { return m_interfaceName; }
    const QByteArray &name() const { return m_name; }
    /// Before publish().
    void set_name(const AString &name) { m_name = name.toUtf8(); }

    /// \param request its class name is the operation's full name.
    /// \param reply   what the operation answers; untouched when it has no answer.
    /// \return 0 or more on success, else a negative Status. Here: ERR_NOT_IMPLEMENTED.
    virtual int call(const Tuple &request, Tuple &reply);

    // The session that the calling thread works in: who was called, for operations that call on.
    /// \return false when the thread has none; \p context is then untouched.
    static bool save_session_context(Tuple &context);
    static void set_session_context(const Tuple &context);
    static void clear_session_context();
    /// The context of a call to this very service.
    Tuple session_context() const;

protected:
    ~Service() override;

private:
    QByteArray m_interfaceName;
    QByteArray m_name;
};

/// Sets the session context for a direct call of \p service: the caller's own is kept and put back; where
/// there is none, the service's own is set and stays.
class TESSEL_EXPORT SessionContextScope
{
public:
    explicit SessionContextScope(const Service &service);
    ~SessionContextScope();

private:
    Q_DISABLE_COPY(SessionContextScope)
    Tuple m_saved;
    bool m_restores;
};

} // namespace tessel

#endif // TESSEL_SERVICE_H
