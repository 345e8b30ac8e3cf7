// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "scriptedmsp.h"

#include <QTest>
#include <QTimer>

ScriptedMsp::ScriptedMsp(QObject *parent)
    : QObject(parent)
    , m_previousName(qgetenv(msp::serverNameVariable))
{
    m_info.fwVersion = QStringLiteral("2.1");
    m_info.MSPVersion = QStringLiteral("1.4");
    connect(&m_server, &MSPServer::commandReceived, this,
            [this](MSPServer::Request request, MSPClient::MSPCommand command, const QString &params) {
                m_commands.append(command);
                m_params.append(params);
                answer(request, false);
                emit commandReceived(command);
            });
    connect(&m_server, &MSPServer::infoRequested, this, [this](MSPServer::Request request) {
        ++m_infoRequests;
        answer(request, true);
    });
    connect(&m_server, &MSPServer::malformedReceived, this, [this] { ++m_malformed; });
    qputenv(msp::serverNameVariable, serverName().toLocal8Bit());
    if (!m_directory.isValid() || !comeBack())
        qFatal("The scripted MSP cannot serve: %s", qPrintable(m_server.errorString()));
}

ScriptedMsp::~ScriptedMsp()
{
    if (m_previousName.isEmpty())
        qunsetenv(msp::serverNameVariable);
    else
        qputenv(msp::serverNameVariable, m_previousName);
}

QString ScriptedMsp::serverName() const
{
    return m_directory.filePath(QStringLiteral("msp"));
}

void ScriptedMsp::clear()
{
    m_commands.clear();
    m_params.clear();
    m_infoRequests = 0;
    m_malformed = 0;
}

bool ScriptedMsp::inject(MSPClient::MSPEvent event, short code)
{
    m_server.sendEvent(event, code);
    return m_server.clientCount() > 0;
}

void ScriptedMsp::die()
{
    m_server.close();
}

bool ScriptedMsp::comeBack()
{
    return m_server.isListening() || m_server.listen(serverName());
}

bool ScriptedMsp::waitForClient(int milliseconds) const
{
    return QTest::qWaitFor([this] { return m_server.clientCount() > 0; }, milliseconds);
}

void ScriptedMsp::answer(MSPServer::Request request, bool isInfo)
{
    const QByteArray good = isInfo ? m_server.infoFrame(request, m_info)
                                   : m_server.successFrame(request, m_fault != Fault::RefuseCommand);
    const auto reply = [this, request, isInfo] {
        if (isInfo)
            m_server.replyInfo(request, m_info);
        else
            m_server.replySuccess(request, m_fault != Fault::RefuseCommand);
    };
    switch (m_fault) {
    case Fault::None:
    case Fault::RefuseCommand:
        reply();
        break;
    case Fault::NoReply:
        break;
    case Fault::FirstReplyLost:
        m_fault = Fault::None;
        break;
    case Fault::LateReply:
        QTimer::singleShot(m_lateBy, this, reply);
        break;
    case Fault::CutMidFrame:
        m_server.sendRaw(good.left(good.size() / 2));
        m_server.dropClients();
        break;
    case Fault::Garbage:
        m_server.sendRaw(msp::frame(QByteArrayLiteral("no message")));
        m_server.sendRaw(msp::frame(QByteArray()));
        m_server.sendRaw(msp::frame(good.mid(msp::headerSize, 5)));
        reply();
        break;
    case Fault::Oversized:
        m_server.sendRaw(QByteArray(16, '\xff'));
        break;
    }
}
