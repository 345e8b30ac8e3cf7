// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "mspserver.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>

#include <sys/stat.h>

MSPServer::MSPServer(QObject *parent)
    : QObject(parent)
{
    // Whoever may connect opens the shutter.
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &MSPServer::accept);
}

MSPServer::~MSPServer()
{
    // Nobody is told any more: the receivers may be gone before this member of theirs.
    blockSignals(true);
    close();
}

bool MSPServer::listen(const QString &name)
{
    m_errorString.clear();
    // Asked first: listening takes the place of whatever stands there.
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(500)) {
        m_errorString = tr("The MSP server \"%1\" is already running.").arg(name);
        return false;
    }
    // The file of a server that died: nobody listens behind it. A file of another kind is somebody's.
    const QString path = QDir::isAbsolutePath(name) ? name : QDir(QDir::tempPath()).filePath(name);
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISSOCK(status.st_mode)) {
        m_errorString = tr("The MSP server \"%1\" cannot be started: %2 is no socket.").arg(name, path);
        return false;
    }
    QLocalServer::removeServer(name);
    if (m_server.listen(name))
        return true;
    m_errorString = tr("The MSP server \"%1\" cannot be started: %2").arg(name, m_server.errorString());
    return false;
}

void MSPServer::close()
{
    m_server.close();
    dropClients();
}

void MSPServer::accept()
{
    while (QLocalSocket *client = m_server.nextPendingConnection()) {
        client->setParent(this);
        m_clients.insert(client, {});
        connect(client, &QLocalSocket::readyRead, this, [this, client] { read(client); });
        connect(client, &QLocalSocket::disconnected, this, [this, client] { forget(client); });
        emit clientConnected();
        read(client);
    }
}

void MSPServer::read(QLocalSocket *client)
{
    if (!m_clients.contains(client))
        return;
    m_clients[client].append(client->readAll());
    // Looked up anew for each frame: a receiver of our signals may have dropped the client.
    while (m_clients.contains(client)) {
        msp::FrameReader &reader = m_clients[client];
        const std::optional<QByteArray> payload = reader.next();
        if (!payload) {
            if (reader.isBroken()) {
                emit malformedReceived();
                forget(client);
            }
            return;
        }
        if (const std::optional<msp::Message> message = msp::decode(*payload))
            handle(client, *message);
        else
            emit malformedReceived();
    }
}

void MSPServer::handle(QLocalSocket *client, const msp::Message &message)
{
    if (const auto *command = std::get_if<msp::Command>(&message)) {
        m_open.insert(++m_lastRequest, {client, command->number});
        emit commandReceived(m_lastRequest, command->command, command->params);
    } else if (const auto *request = std::get_if<msp::InfoRequest>(&message)) {
        m_open.insert(++m_lastRequest, {client, request->number});
        emit infoRequested(m_lastRequest);
    } else {
        emit malformedReceived();
    }
}

void MSPServer::forget(QLocalSocket *client)
{
    if (m_clients.remove(client) == 0)
        return;
    for (auto request = m_open.begin(); request != m_open.end();)
        request = request->client == client ? m_open.erase(request) : std::next(request);
    client->disconnect(this);
    client->abort();
    client->deleteLater();
    emit clientDisconnected();
}

void MSPServer::dropClients()
{
    const QList<QLocalSocket *> clients = m_clients.keys();
    for (QLocalSocket *client : clients) {
        client->flush();
        forget(client);
    }
}

void MSPServer::write(QLocalSocket *client, const QByteArray &bytes)
{
    client->write(bytes);
    client->flush();
}

void MSPServer::answer(Request request, const QByteArray &bytes)
{
    if (m_open.contains(request))
        write(m_open.take(request).client, bytes);
}

void MSPServer::replySuccess(Request request, bool ok)
{
    answer(request, successFrame(request, ok));
}

void MSPServer::replyInfo(Request request, const MSPInfo &info)
{
    answer(request, infoFrame(request, info));
}

QByteArray MSPServer::successFrame(Request request, bool ok) const
{
    const auto open = m_open.constFind(request);
    if (open == m_open.constEnd())
        return {};
    return msp::frame(msp::encode(msp::CommandReply{open->number, ok}));
}

QByteArray MSPServer::infoFrame(Request request, const MSPInfo &info) const
{
    const auto open = m_open.constFind(request);
    if (open == m_open.constEnd())
        return {};
    return msp::frame(msp::encode(msp::InfoReply{open->number, info}));
}

void MSPServer::sendEvent(MSPClient::MSPEvent event, short code)
{
    sendRaw(msp::frame(msp::encode(msp::Event{event, code})));
}

void MSPServer::sendRaw(const QByteArray &bytes)
{
    const QList<QLocalSocket *> clients = m_clients.keys();
    for (QLocalSocket *client : clients)
        write(client, bytes);
}
