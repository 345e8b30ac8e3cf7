// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef MSPSERVER_H
#define MSPSERVER_H

#include <QHash>
#include <QLocalServer>
#include <QObject>
#include <QPointer>

#include "mspcodec.h"

class QLocalSocket;

/// The server side of the MSP link, for whoever plays the microcontroller: the simulated instrument and the
/// tests. It decides nothing: every command and request is handed out by a signal with a handle, and is
/// answered, at any later time or never, through that handle.
class MSPServer : public QObject
{
    Q_OBJECT
public:
    using Request = quint64;

    explicit MSPServer(QObject *parent = nullptr);
    ~MSPServer() override;

    /// Serves on \p name (a plain name or an absolute path). False, with errorString(), when a living server
    /// already does; the file that a dead one left behind is replaced.
    bool listen(const QString &name = msp::serverName());
    /// Drops all clients and stops serving.
    void close();
    bool isListening() const { return m_server.isListening(); }
    QString fullServerName() const { return m_server.fullServerName(); }
    QString errorString() const { return m_errorString; }
    int clientCount() const { return int(m_clients.size()); }

    /// Both answer once; a handle that was answered, or whose client has gone, is ignored.
    void replySuccess(Request request, bool ok);
    void replyInfo(Request request, const MSPInfo &info);
    /// The bytes of these answers, for tests that spoil them; the handle stays open. Empty when it is not.
    QByteArray successFrame(Request request, bool ok) const;
    QByteArray infoFrame(Request request, const MSPInfo &info) const;

    void sendEvent(MSPClient::MSPEvent event, short code = 0);
    /// Writes \p bytes to every client as they are.
    void sendRaw(const QByteArray &bytes);
    void dropClients();

signals:
    void commandReceived(MSPServer::Request request, MSPClient::MSPCommand command, const QString &params);
    void infoRequested(MSPServer::Request request);
    void clientConnected();
    void clientDisconnected();
    /// A client sent something that is no request; it was ignored.
    void malformedReceived();

private:
    struct Open
    {
        QLocalSocket *client;
        quint32 number;
    };

    void accept();
    void read(QLocalSocket *client);
    void handle(QLocalSocket *client, const msp::Message &message);
    void forget(QLocalSocket *client);
    void answer(Request request, const QByteArray &bytes);
    void write(QLocalSocket *client, const QByteArray &bytes);

    QLocalServer m_server;
    QString m_errorString;
    QHash<QLocalSocket *, msp::FrameReader> m_clients;
    QHash<Request, Open> m_open;
    Request m_lastRequest = 0;
};

#endif // MSPSERVER_H
