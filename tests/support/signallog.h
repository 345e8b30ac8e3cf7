// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIGNALLOG_H
#define SIGNALLOG_H

#include <QObject>
#include <QStringList>

/// One record of the signals of any number of objects, in the order in which they came.
class SignalLog : public QObject
{
public:
    /// Adds \p name to the record each time \p signal of \p sender is emitted.
    template <typename Sender, typename Signal>
    void watch(const Sender *sender, Signal signal, const QString &name)
    {
        connect(sender, signal, this, [this, name] { m_names.append(name); });
    }
    QStringList names() const { return m_names; }
    QString text() const { return m_names.join(QLatin1Char(' ')); }
    void clear() { m_names.clear(); }

private:
    QStringList m_names;
};

#endif // SIGNALLOG_H
