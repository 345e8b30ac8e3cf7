// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATORCONTROL_H
#define SIMULATORCONTROL_H

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QLocalSocket>
#include <QObject>

/// The hand that drives a running halvar-simulator through its control socket (docs/simulator.md): presses
/// the trigger, places samples, provokes faults, and hears what the instrument does.
///
/// Commands wait for their answer without running the event loop, so that nothing else of the caller's thread
/// happens in between. Notices come by a signal, from the event loop only.
class SimulatorControl : public QObject
{
    Q_OBJECT
public:
    explicit SimulatorControl(QObject *parent = nullptr);

    /// Name of the socket that a simulator serves on unless told otherwise.
    static QString defaultName();

    /// Connects to the simulator at \p name, for which it waits up to \p limitMs: it may still be starting.
    /// False, with errorString(), when none answers.
    bool connectTo(const QString &name = defaultName(), int limitMs = 5000);
    void close();
    bool isConnected() const;
    /// Why the last operation that failed did so.
    QString errorString() const { return m_error; }

    /// Sends \p request, a command with its members, and gives its answer. Without one within \p limitMs, or
    /// without a connection, gives an object with "ok" false and "error", as a refusing simulator does.
    QJsonObject send(QJsonObject request, int limitMs = 5000);
    /// The same, for the command \p name with \p members.
    QJsonObject command(const QString &name, const QJsonObject &members = {}, int limitMs = 5000);
    /// Whether the command \p name with \p members was obeyed; otherwise errorString() says why not.
    bool run(const QString &name, const QJsonObject &members = {});

    bool press() { return run(QStringLiteral("press")); }
    bool release() { return run(QStringLiteral("release")); }
    QJsonObject status() { return command(QStringLiteral("status")); }
    /// Asks for the notices, of which each is then told by noticeReceived().
    bool subscribe() { return run(QStringLiteral("subscribe")); }

    /// Runs the event loop until a notice that holds all of \p members is delivered, and gives it; an empty
    /// object, with errorString(), after \p limitMs or when the connection is lost. Notices that were
    /// delivered before the call do not count.
    QJsonObject waitForNotice(const QJsonObject &members, int limitMs = 10000);
    /// Whether \p notice holds each member of \p members with an equal value.
    static bool matches(const QJsonObject &notice, const QJsonObject &members);

signals:
    void noticeReceived(const QJsonObject &notice);
    /// The simulator has gone; not emitted by close().
    void connectionLost();

private:
    void read();
    void deliver();

    QLocalSocket m_socket;
    QByteArray m_buffer;
    QList<QJsonObject> m_answers;
    QList<QJsonObject> m_notices;
    QString m_error;
    int m_lastTag = 0;
    bool m_closing = false;
};

#endif // SIMULATORCONTROL_H
