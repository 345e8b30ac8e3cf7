// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_OBSERVERS_H
#define SIMULATOR_OBSERVERS_H

#include <QHash>
#include <QObject>
#include <QStringList>

#include <nap/records.h>

class QThread;

namespace simulator {

class ObserverCaller;

/// The observers that the service calls back. Each is called from a thread of its own, in order, so that a
/// slow or vanished one holds up neither the service nor the others. One that cannot be reached, or does not
/// answer within the middleware's time limit, is dropped.
class Observers : public QObject
{
    Q_OBJECT
public:
    explicit Observers(QObject *parent = nullptr);
    /// Waits for calls that still run, at most for the middleware's time limit.
    ~Observers() override;

    /// Registered again, an observer is a new one: the process behind the description may be another.
    void add(const QString &description);
    /// False when there is no such observer.
    bool remove(const QString &description);
    void clear();
    QStringList descriptions() const { return m_callers.keys(); }

    void send(const com::halvar::nap::NotificationMessage &message);
    /// Calls the observers that are added from now on back on \p port, where somebody stands between; 0: on
    /// the port that they gave.
    void setPort(quint16 port) { m_port = port; }
    /// What is sent while silent is lost.
    void setSilent(bool silent) { m_silent = silent; }

signals:
    void dropped(const QString &description);

private:
    void forget(ObserverCaller *caller);

    QHash<QString, ObserverCaller *> m_callers; // each deletes itself at the end of its thread
    QList<QThread *> m_threads; // also those that are ending
    bool m_silent = false;
    quint16 m_port = 0;
};

} // namespace simulator

#endif // SIMULATOR_OBSERVERS_H
