// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESTTESSEL_H
#define TESTTESSEL_H

#include <QByteArray>
#include <QThread>

#include <atomic>
#include <functional>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

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

/// A peer that speaks bytes. Without Qt's sockets, which threads must not use while the application ends.
class RawPeer
{
public:
    explicit RawPeer(quint16 port)
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const timeval patience{2, 0};
        ::setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        m_isConnected =
            ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    }
    ~RawPeer() { ::close(m_socket); }
    RawPeer(const RawPeer &) = delete;
    RawPeer &operator=(const RawPeer &) = delete;

    bool isConnected() const { return m_isConnected; }
    void send(const QByteArray &bytes)
    {
        for (int done = 0; done < bytes.size();) {
            const ssize_t sent = ::send(m_socket, bytes.constData() + done,
                                        static_cast<std::size_t>(bytes.size() - done), MSG_NOSIGNAL);
            if (sent <= 0)
                return;
            done += static_cast<int>(sent);
        }
    }
    /// The payload of the next frame; empty when none comes.
    QByteArray receive(int milliseconds = 2000)
    {
        while (m_received.size() < 4 || m_received.size() < 4 + announced()) {
            if (!read(milliseconds))
                return QByteArray();
        }
        const int size = announced();
        const QByteArray payload = m_received.mid(4, size);
        m_received.remove(0, 4 + size);
        return payload;
    }
    /// Whether the other end has closed within the time.
    bool waitForClosed(int milliseconds)
    {
        while (m_isConnected && read(milliseconds))
            m_received.clear();
        return !m_isConnected;
    }

private:
    bool read(int milliseconds)
    {
        pollfd descriptor{m_socket, POLLIN, 0};
        if (!m_isConnected || ::poll(&descriptor, 1, milliseconds) <= 0)
            return false;
        char bytes[4096];
        const ssize_t size = ::recv(m_socket, bytes, sizeof bytes, 0);
        m_isConnected = size > 0;
        if (m_isConnected)
            m_received.append(bytes, static_cast<int>(size));
        return m_isConnected;
    }
    int announced() const
    {
        quint32 size = 0;
        for (int i = 0; i < 4; ++i)
            size = (size << 8) | static_cast<unsigned char>(m_received.at(i));
        return static_cast<int>(size);
    }

    const int m_socket;
    bool m_isConnected;
    QByteArray m_received;
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
