// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "observers.h"

#include <QThread>

#include "observercaller.h"

namespace nap = com::halvar::nap;

namespace simulator {

Observers::Observers(QObject *parent)
    : QObject(parent)
{ }

Observers::~Observers()
{
    clear();
    for (QThread *thread : qAsConst(m_threads)) {
        thread->wait();
        delete thread;
    }
}

void Observers::add(const QString &description)
{
    remove(description);
    auto *thread = new QThread;
    thread->setObjectName(QStringLiteral("observer"));
    auto *caller = new ObserverCaller(description, m_port);
    caller->moveToThread(thread);
    connect(thread, &QThread::finished, caller, &QObject::deleteLater);
    connect(thread, &QThread::finished, this, [this, thread] {
        if (m_threads.removeOne(thread))
            thread->deleteLater();
    });
    connect(caller, &ObserverCaller::lost, this, [this, caller, description] {
        if (m_callers.value(description) != caller)
            return;
        remove(description);
        emit dropped(description);
    });
    m_callers.insert(description, caller);
    m_threads.append(thread);
    thread->start();
    QMetaObject::invokeMethod(caller, &ObserverCaller::bind, Qt::QueuedConnection);
}

bool Observers::remove(const QString &description)
{
    ObserverCaller *caller = m_callers.take(description);
    if (!caller)
        return false;
    caller->thread()->quit();
    return true;
}

void Observers::clear()
{
    for (const QString &description : descriptions())
        remove(description);
}

void Observers::send(const nap::NotificationMessage &message)
{
    if (m_silent)
        return;
    for (ObserverCaller *caller : qAsConst(m_callers))
        QMetaObject::invokeMethod(
            caller, [caller, message] { caller->send(message); }, Qt::QueuedConnection);
}

} // namespace simulator
