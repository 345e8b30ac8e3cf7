// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "observercaller.h"

#include <QsLog.h>

namespace nap = com::halvar::nap;

namespace simulator {

ObserverCaller::ObserverCaller(const QString &description, quint16 port)
    : m_description(description)
    , m_port(port)
{ }

void ObserverCaller::bind()
{
    static const QByteArray prefix("com.halvar.nap.NotificationObserver:");
    QByteArray description = m_description.toUtf8();
    if (!description.startsWith(prefix))
        description.prepend(prefix);
    if (m_port != 0)
        description.replace(description.lastIndexOf(':') + 1, description.size(), QByteArray::number(m_port));
    m_observer = tessel::Service::bind(tessel::AString(description));
    if (!m_observer) {
        QLOG_WARN() << "observer" << m_description << "cannot be reached";
        lose();
    }
}

void ObserverCaller::send(const nap::NotificationMessage &message)
{
    if (!m_observer)
        return;
    const int status = nap::NotificationObserver::sendMessage(*m_observer, message);
    // An observer that does not know the operation is there at least.
    if (status >= 0 || status == tessel::ERR_NOT_IMPLEMENTED)
        return;
    QLOG_WARN() << "observer" << m_description << "does not answer: status" << status;
    lose();
}

void ObserverCaller::lose()
{
    m_observer.reset();
    emit lost();
}

} // namespace simulator
