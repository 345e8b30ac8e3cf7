// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TCPSOCKET_H
#define TESSEL_TCPSOCKET_H

#include <QtGlobal>

#include <cerrno>
#include <utility>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "framebuffer.h"

namespace tessel {

/// A connected socket, and the only owner of its descriptor.
class TcpSocket
{
public:
    TcpSocket() = default;
    explicit TcpSocket(int descriptor)
        : m_descriptor(descriptor)
    {
        // Each message is waited for.
        const int on = 1;
        ::setsockopt(m_descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    ~TcpSocket() { close(); }
    TcpSocket(const TcpSocket &) = delete;
    TcpSocket &operator=(TcpSocket &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    int descriptor() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    void close()
    {
        if (isOpen())
            ::close(std::exchange(m_descriptor, -1));
    }

    enum class Result {
        Done,
        Later,
        Closed
    };
    /// Sends what can be sent without waiting. \param sent how much that was
    Result send(const char *bytes, int size, int &sent) const
    {
        const ssize_t done =
            ::send(m_descriptor, bytes, static_cast<std::size_t>(size), MSG_NOSIGNAL | MSG_DONTWAIT);
        sent = static_cast<int>(qMax<ssize_t>(0, done));
        return done >= 0 ? Result::Done : failure();
    }
    /// Reads once.
    Result receive(FrameBuffer &frames, bool waits = false) const
    {
        int size = 0;
        char *const room = frames.room(size);
        const ssize_t got =
            ::recv(m_descriptor, room, static_cast<std::size_t>(size), waits ? 0 : MSG_DONTWAIT);
        if (got > 0)
            frames.add(static_cast<int>(got));
        return got > 0 ? Result::Done : got == 0 ? Result::Closed : failure();
    }

private:
    static Result failure()
    {
        return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR ? Result::Later : Result::Closed;
    }
    int m_descriptor = -1;
};

} // namespace tessel

#endif // TESSEL_TCPSOCKET_H
