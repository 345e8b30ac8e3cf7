// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_OBSERVERCALLER_H
#define SIMULATOR_OBSERVERCALLER_H

#include <QObject>
#include <QString>

#include <nap/notificationobserver.h>

namespace simulator {

/// Calls one observer; lives on a thread of its own.
class ObserverCaller : public QObject
{
    Q_OBJECT
public:
    /// \p port other than 0 replaces that of the description.
    explicit ObserverCaller(const QString &description, quint16 port = 0);

    const QString &description() const { return m_description; }
    void bind();
    void send(const com::halvar::nap::NotificationMessage &message);

signals:
    /// Once; nothing is called any more.
    void lost();

private:
    void lose();

    const QString m_description;
    const quint16 m_port;
    tessel::PService m_observer;
};

} // namespace simulator

#endif // SIMULATOR_OBSERVERCALLER_H
