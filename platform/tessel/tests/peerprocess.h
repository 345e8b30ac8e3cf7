// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PEERPROCESS_H
#define PEERPROCESS_H

#include <QFile>
#include <QProcess>

#include <tessel/tessel.h>

/// A process that serves "test.Interface:peer".
class PeerProcess
{
public:
    explicit PeerProcess(quint16 port = 0)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // Where the build has the address sanitizer: freed memory that it holds back is not in use.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("ASAN_OPTIONS"),
                           environment.value(QStringLiteral("ASAN_OPTIONS"))
                               + QStringLiteral(":quarantine_size_mb=1"));
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(TESSELPEER), {QStringLiteral("serve"), QString::number(port)});
        while (!m_process.canReadLine() && m_process.waitForReadyRead(10000)) { }
        m_port = static_cast<quint16>(m_process.readLine().trimmed().toUInt());
    }
    ~PeerProcess() { kill(); }

    quint16 port() const { return m_port; } ///< 0 when it does not serve
    QByteArray portText() const { return QByteArray::number(m_port); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    bool waitForFinished() { return m_process.waitForFinished(5000); }
    int exitCode() const { return m_process.exitCode(); }
    bool exitedNormally() const { return m_process.exitStatus() == QProcess::NormalExit; }

    tessel::PService bind() const
    {
        return tessel::Service::bind(tessel::AString("test.Interface:peer@TCPIP:localhost:" + portText()));
    }

    /// Memory in use, KiB.
    qint64 resident() const
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
        if (!status.open(QIODevice::ReadOnly))
            return -1;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                return line.mid(6).trimmed().split(' ').first().toLongLong();
        }
        return -1;
    }

private:
    QProcess m_process;
    quint16 m_port = 0;
};

/// A call of the operation \p name with one integer.
inline int callPeer(tessel::Service &peer, const char *name, const char *field = nullptr, int value = 0)
{
    tessel::Tuple request(name);
    if (field)
        request.set(field, tessel::Value(value));
    tessel::Tuple reply;
    return peer.call(request, reply);
}

#endif // PEERPROCESS_H
