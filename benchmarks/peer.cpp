// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "peer.h"

#include <QCoreApplication>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zmq.h>

#include <tessel/tessel.h>

#include "core.h"

namespace {

/// Answers every request with itself.
class EchoService : public tessel::Service
{
public:
    EchoService()
        : Service("bench.Echo")
    { }
    int call(const tessel::Tuple &request, tessel::Tuple &reply) override
    {
        reply = request;
        return 1;
    }
};

bool receive(int socket, void *bytes, std::size_t size)
{
    return ::recv(socket, bytes, size, MSG_WAITALL) == ssize_t(size);
}

// The client says first how many bytes it sends each time and how many it wants back.
void echo(int listener)
{
    for (;;) {
        const int client = ::accept(listener, nullptr, nullptr);
        if (client < 0)
            return;
        const int on = 1;
        ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        std::array<std::uint32_t, 2> sizes{};
        if (receive(client, sizes.data(), sizeof sizes)) {
            std::vector<char> request(sizes[0]);
            const std::vector<char> reply(sizes[1]);
            while (receive(client, request.data(), request.size())
                   && ::send(client, reply.data(), reply.size(), MSG_NOSIGNAL) == ssize_t(reply.size())) { }
        }
        ::close(client);
    }
}

// The first bytes of each request say how many are wanted back.
void answerZeroMq(void *socket)
{
    std::vector<char> request(1024);
    std::vector<char> reply(1024);
    for (;;) {
        const int size = zmq_recv(socket, request.data(), request.size(), 0);
        std::uint32_t wanted = 0;
        if (size < int(sizeof wanted))
            return;
        std::memcpy(&wanted, request.data(), sizeof wanted);
        if (wanted > reply.size() || zmq_send(socket, reply.data(), wanted, 0) < 0)
            return;
    }
}

/// \return the port, 0 when there is none.
int startZeroMq()
{
    void *const socket = zmq_socket(zmq_ctx_new(), ZMQ_REP);
    std::array<char, 64> endpoint{};
    std::size_t size = endpoint.size();
    if (zmq_bind(socket, "tcp://127.0.0.1:*") != 0
        || zmq_getsockopt(socket, ZMQ_LAST_ENDPOINT, endpoint.data(), &size) != 0)
        return 0;
    std::thread(answerZeroMq, socket).detach();
    return std::atoi(std::strrchr(endpoint.data(), ':') + 1);
}

} // namespace

int runPeer(int argc, char **argv)
{
    const OneCore core;
    QCoreApplication application(argc, argv); // the middleware's threads need one
    tessel::init();
    tessel::AutoRef<EchoService> service(new EchoService);
    service->set_name("echo");
    tessel::ServiceManager &manager = tessel::ServiceManager::auto_create();
    if (!service->publish() || !manager.listen("TCPIP:localhost:0"))
        return 1;

    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(listener, reinterpret_cast<sockaddr *>(&address), size) != 0 || ::listen(listener, 1) != 0
        || ::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size) != 0)
        return 1;
    std::thread(echo, listener).detach();

    std::printf("%d %d %d\n", manager.port(), ntohs(address.sin_port), startZeroMq());
    std::fflush(stdout);
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) { }
    // The echo may be in the middle of an answer: nothing of it needs an orderly end.
    ::_exit(0);
}
