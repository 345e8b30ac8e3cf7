// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SCRIPTEDMSP_H
#define SCRIPTEDMSP_H

#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

#include <mspserver.h>

/// An MSP that does as the test says: it answers every request with success and info(), unless a fault is
/// set, counts what it received and raises events that nobody asked for.
///
/// It serves on a private socket, and from construction to destruction every MSPClient of the process finds
/// it there. One at a time, in a thread with an event loop (the test's own).
class ScriptedMsp : public QObject
{
    Q_OBJECT
public:
    enum class Fault {
        None,
        NoReply, ///< requests are received and left unanswered
        RefuseCommand, ///< every command fails
        FirstReplyLost, ///< the next answer is swallowed, the following ones come
        LateReply, ///< answers come after lateBy()
        CutMidFrame, ///< half an answer, then the connection is dropped
        Garbage, ///< frames that hold no message come before each answer
        Oversized ///< a frame of impossible length instead of each answer
    };

    explicit ScriptedMsp(QObject *parent = nullptr);
    ~ScriptedMsp() override;

    void setFault(Fault fault) { m_fault = fault; }
    /// What the information requests are answered with: at first a healthy MSP in standby.
    void setInfo(const MSPInfo &info) { m_info = info; }
    MSPInfo info() const { return m_info; }
    void setLateBy(int milliseconds) { m_lateBy = milliseconds; }

    /// How many of them came.
    int received(MSPClient::MSPCommand command) const { return int(m_commands.count(command)); }
    QVector<MSPClient::MSPCommand> commands() const { return m_commands; }
    QStringList params() const { return m_params; }
    int infoRequests() const { return m_infoRequests; }
    int malformed() const { return m_malformed; }
    void clear();

    /// Raises an event; false when no client is connected to hear it.
    bool inject(MSPClient::MSPEvent event, short code = 0);
    void sendRaw(const QByteArray &bytes) { m_server.sendRaw(bytes); }

    /// The server process dies: its clients lose it and find nobody.
    void die();
    /// It is back; false when it cannot serve.
    bool comeBack();
    bool waitForClient(int milliseconds = 5000) const;
    int clientCount() const { return m_server.clientCount(); }
    QString serverName() const;

signals:
    void commandReceived(MSPClient::MSPCommand command);

private:
    void answer(MSPServer::Request request, bool isInfo);

    QTemporaryDir m_directory;
    MSPServer m_server;
    QByteArray m_previousName;
    MSPInfo m_info;
    Fault m_fault = Fault::None;
    int m_lateBy = 3000;
    QVector<MSPClient::MSPCommand> m_commands;
    QStringList m_params;
    int m_infoRequests = 0;
    int m_malformed = 0;
};

#endif // SCRIPTEDMSP_H
