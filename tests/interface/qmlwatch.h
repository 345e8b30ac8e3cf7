// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef QMLWATCH_H
#define QMLWATCH_H

#include <QStringList>

/// Everything that Qt warns of from construction to destruction, from all threads: undefined names, binding
/// loops, missing roles, what cannot be assigned. One at a time.
class QmlWatch
{
public:
    QmlWatch();
    ~QmlWatch();

    QStringList warnings() const;
    void clear();

private:
    Q_DISABLE_COPY(QmlWatch)
    QtMessageHandler m_previous;
};

#endif // QMLWATCH_H
