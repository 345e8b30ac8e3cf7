// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESTTESSEL_H
#define TESTTESSEL_H

#include <QHostAddress>
#include <QTcpSocket>
#include <QThread>

#include <atomic>
#include <functional>

#include <tessel/tessel.h>

/// A service that does what the test says, on the dispatch thread.
class TestService : public tessel::Service
{
public:
    using Operation = std::function<int(const tessel::Tuple &, tessel::Tuple &)>;
    explicit TestService(Operation operation, const char *interfaceName = "test.Interface")
        : tessel::Service(interfaceName)
        , m_operation(std::move(operation))
    { }
    int call(const tessel::Tuple &request, tessel::Tuple &reply) override
    {
        return m_operation(request, reply);
    }

private:
    const Operation m_operation;
};

/// Answers every call with its request.
inline int echo(const tessel::Tuple &request, tessel::Tuple &reply)
{
    reply = request;
    return 1;
}

inline tessel::PService publishService(const char *name, TestService::Operation operation,
                                       const char *interfaceName = "test.Interface")
{
    const tessel::PService service(new TestService(std::move(operation), interfaceName));
    service->set_name(name);
    service->publish();
    return service;
}

/// A peer that speaks bytes.
class RawPeer
{
public:
    explicit RawPeer(quint16 port)
    {
        m_socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        m_socket.waitForConnected(2000);
    }
    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void send(const QByteArray &bytes)
    {
        m_socket.write(bytes);
        while (m_socket.bytesToWrite() > 0 && m_socket.waitForBytesWritten(2000)) { }
    }
    /// The payload of the next frame; empty when none comes.
    QByteArray receive(int milliseconds = 2000)
    {
        while (m_socket.bytesAvailable() < 4 || m_socket.bytesAvailable() < 4 + announced()) {
            if (!m_socket.waitForReadyRead(milliseconds))
                return QByteArray();
        }
        const qint64 size = announced();
        m_socket.skip(4);
        return m_socket.read(size);
    }
    /// Whether the other end has closed within the time.
    bool waitForClosed(int milliseconds)
    {
        while (isConnected() && m_socket.waitForReadyRead(milliseconds))
            m_socket.readAll();
        return !isConnected();
    }

private:
    qint64 announced()
    {
        const QByteArray head = m_socket.peek(4);
        quint32 size = 0;
        for (const char byte : head)
            size = (size << 8) | static_cast<unsigned char>(byte);
        return size;
    }
    QTcpSocket m_socket;
};

/// What a peer announces in front of a payload.
inline QByteArray header(quint32 size)
{
    QByteArray bytes;
    for (const int shift : {24, 16, 8, 0})
        bytes.append(static_cast<char>((size >> shift) & 0xff));
    return bytes;
}

inline QByteArray framed(const QByteArray &payload)
{
    return header(static_cast<quint32>(payload.size())) + payload;
}

#endif // TESTTESSEL_H
