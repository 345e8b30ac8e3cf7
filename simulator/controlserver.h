// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_CONTROLSERVER_H
#define SIMULATOR_CONTROLSERVER_H

#include <QJsonObject>
#include <QLocalServer>
#include <QObject>
#include <QSet>

#include <functional>

class QLocalSocket;

namespace simulator {

/// The control socket: lines of JSON in, one line of JSON out for each, notices to those who asked for them.
class ControlServer : public QObject
{
    Q_OBJECT
public:
    /// Carries a command out and gives its answer, with "ok".
    using Handler = std::function<QJsonObject(const QJsonObject &command)>;

    /// Longest line; who sends a longer one is dropped.
    static constexpr int LongestLine = 65536;

    explicit ControlServer(Handler handler, QObject *parent = nullptr);

    /// False, with errorString(), when another one serves there.
    bool listen(const QString &name);
    QString errorString() const { return m_error; }
    void notice(const QJsonObject &notice);

private:
    void accept();
    void read(QLocalSocket *client);
    QJsonObject answer(const QByteArray &line, QLocalSocket *client);
    static void write(QLocalSocket *client, const QJsonObject &object);

    const Handler m_handler;
    QSet<QLocalSocket *> m_subscribers;
    QString m_error;
    QLocalServer m_server; // its clients tell of their end when it goes: last made, first gone
};

/// An answer that refuses.
QJsonObject refusal(const QString &error);

} // namespace simulator

#endif // SIMULATOR_CONTROLSERVER_H
