// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "controlserver.h"

#include <QJsonDocument>
#include <QLocalSocket>

#include "jsonkeys.h"

namespace simulator {

namespace {

constexpr int ProbeMs = 500; // for a living server to take a connection
constexpr qint64 LargestBacklog = 1024 * 1024; // of a subscriber that reads nothing

} // namespace

QJsonObject refusal(const QString &error)
{
    return {{QStringLiteral("ok"), false}, {QStringLiteral("error"), error}};
}

ControlServer::ControlServer(Handler handler, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &ControlServer::accept);
}

bool ControlServer::listen(const QString &name)
{
    // The file that a killed simulator left behind is in nobody's way; a living one is not pushed aside.
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(ProbeMs)) {
        m_error = QStringLiteral("another simulator serves there");
        return false;
    }
    QLocalServer::removeServer(name);
    if (m_server.listen(name))
        return true;
    m_error = m_server.errorString();
    return false;
}

void ControlServer::notice(const QJsonObject &notice)
{
    const QSet<QLocalSocket *> subscribers = m_subscribers;
    for (QLocalSocket *client : subscribers) {
        if (client->bytesToWrite() > LargestBacklog)
            client->abort();
        else
            write(client, notice);
    }
}

void ControlServer::accept()
{
    while (QLocalSocket *client = m_server.nextPendingConnection()) {
        connect(client, &QLocalSocket::readyRead, this, [this, client] { read(client); });
        connect(client, &QLocalSocket::disconnected, this, [this, client] {
            m_subscribers.remove(client);
            client->deleteLater();
        });
        read(client);
    }
}

void ControlServer::read(QLocalSocket *client)
{
    while (client->state() == QLocalSocket::ConnectedState) {
        if (client->canReadLine()) {
            const QByteArray line = client->readLine();
            if (line.size() <= LongestLine + 1) {
                write(client, answer(line, client));
                continue;
            }
        } else if (client->bytesAvailable() <= LongestLine) {
            return;
        }
        write(client, refusal(QStringLiteral("the line is longer than %1 bytes").arg(LongestLine)));
        client->disconnectFromServer();
        return;
    }
}

QJsonObject ControlServer::answer(const QByteArray &line, QLocalSocket *client)
{
    const RepeatedKey repeated = findRepeatedKey(line);
    if (repeated.isFound())
        return refusal(QStringLiteral("the key \"%1\" stands twice in its object, again after %2 bytes")
                           .arg(repeated.key, QString::number(repeated.offset)));
    QJsonParseError parsed;
    const QJsonDocument document = QJsonDocument::fromJson(line, &parsed);
    if (parsed.error != QJsonParseError::NoError)
        return refusal(QStringLiteral("the line is no JSON: %1").arg(parsed.errorString()));
    if (!document.isObject())
        return refusal(QStringLiteral("expected a JSON object"));
    const QJsonObject command = document.object();
    QJsonObject answer = m_handler(command);
    if (answer.value(QLatin1String("ok")).toBool()
        && command.value(QLatin1String("command")) == QLatin1String("subscribe"))
        m_subscribers.insert(client);
    const QJsonValue tag = command.value(QLatin1String("tag"));
    if (!tag.isUndefined())
        answer.insert(QStringLiteral("tag"), tag);
    return answer;
}

void ControlServer::write(QLocalSocket *client, const QJsonObject &object)
{
    client->write(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
    client->flush();
}

} // namespace simulator
