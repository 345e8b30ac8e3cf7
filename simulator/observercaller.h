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
    explicit ObserverCaller(const QString &description);

    const QString &description() const { return m_description; }
    void bind();
    void send(const com::halvar::nap::NotificationMessage &message);

signals:
    /// Once; nothing is called any more.
    void lost();

private:
    void lose();

    const QString m_description;
    tessel::PService m_observer;
};

} // namespace simulator

#endif // SIMULATOR_OBSERVERCALLER_H
