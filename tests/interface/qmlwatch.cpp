// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "qmlwatch.h"

#include <QMutex>
#include <QMutexLocker>

namespace {

QMutex mutex;
QStringList found;

void watch(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    const QMutexLocker lock(&mutex);
    found.append(message);
}

} // namespace

QmlWatch::QmlWatch()
    : m_previous(qInstallMessageHandler(watch))
{
    clear();
}

QmlWatch::~QmlWatch()
{
    qInstallMessageHandler(m_previous);
}

QStringList QmlWatch::warnings() const
{
    const QMutexLocker lock(&mutex);
    return found;
}

void QmlWatch::clear()
{
    const QMutexLocker lock(&mutex);
    found.clear();
}
