// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "middleman.h"

#include <QHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QtEndian>

#include <array>
#include <sys/socket.h>

namespace {

constexpr int headerSize = 4;

QByteArray chance(int size)
{
    // The same bytes in every run.
    static QRandomGenerator generator(20260401);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}

qintptr descriptor(QIODevice *device)
{
    if (auto *tcp = qobject_cast<QTcpSocket *>(device))
        return tcp->socketDescriptor();
    return qobject_cast<QLocalSocket *>(device)->socketDescriptor();
}

void flush(QIODevice *device)
{
    if (auto *tcp = qobject_cast<QTcpSocket *>(device))
        tcp->flush();
    else
        qobject_cast<QLocalSocket *>(device)->flush();
}

} // namespace

/// One connection, with its two sockets and what came of a frame so far.
struct Pair : QObject
{
    std::array<QIODevice *, 2> into{}; ///< by direction, the socket that is written to
    std::array<QByteArray, 2> pending;
    std::array<QByteArray, 2> held;
    std::array<bool, 2> closed{};
    std::array<QByteArray, 2> dripping; ///< what is still to come byte by byte
};

class Middleman::Worker : public QObject
{
public:
    Worker(const Place &nearEnd, const Place &farEnd)
        : m_near(nearEnd)
        , m_far(farEnd)
        , m_tcp(this)
        , m_local(this)
    {
        connect(&m_tcp, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *client = m_tcp.nextPendingConnection())
                accept(client);
        });
        connect(&m_local, &QLocalServer::newConnection, this, [this] {
            while (QLocalSocket *client = m_local.nextPendingConnection())
                accept(client);
        });
    }

    bool listen()
    {
        if (m_near.port != 0)
            return m_tcp.listen(QHostAddress(QHostAddress::LocalHost), m_near.port);
        QLocalServer::removeServer(m_near.socket);
        return m_local.listen(m_near.socket);
    }
    void setListening(bool on)
    {
        m_tcp.close();
        m_local.close();
        if (on)
            listen();
    }
    void end(Pair *pair)
    {
        if (!m_pairs.removeOne(pair))
            return;
        for (QIODevice *socket : pair->into) {
            socket->disconnect(this);
            flush(socket);
            socket->close();
            socket->deleteLater();
        }
        pair->deleteLater();
    }
    void cut()
    {
        while (!m_pairs.isEmpty())
            end(m_pairs.first());
    }
    void sayToClients(const QByteArray &bytes)
    {
        for (Pair *pair : qAsConst(m_pairs))
            say(pair, ToClient, bytes);
    }

    Plan plan;
    int seen = 0;
    int spoiled = 0;
    int connections() const { return m_pairs.size(); }

private:
    void accept(QIODevice *client)
    {
        auto *pair = new Pair;
        pair->setParent(this);
        QIODevice *server = nullptr;
        if (m_far.port != 0) {
            auto *socket = new QTcpSocket(this);
            socket->connectToHost(QHostAddress(QHostAddress::LocalHost), m_far.port);
            socket->waitForConnected();
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            server = socket;
        } else {
            auto *socket = new QLocalSocket(this);
            socket->connectToServer(m_far.socket);
            socket->waitForConnected();
            server = socket;
        }
        pair->into = {server, client};
        m_pairs.append(pair);
        connect(client, &QIODevice::readyRead, this, [=] { read(pair, client, ToServer); });
        connect(server, &QIODevice::readyRead, this, [=] { read(pair, server, ToClient); });
        for (QIODevice *socket : pair->into) {
            if (auto *tcp = qobject_cast<QTcpSocket *>(socket))
                connect(tcp, &QAbstractSocket::disconnected, this, [this, pair] { end(pair); });
            else
                connect(qobject_cast<QLocalSocket *>(socket), &QLocalSocket::disconnected, this,
                        [this, pair] { end(pair); });
        }
        if (!server->isOpen())
            end(pair);
        else
            read(pair, client, ToServer);
    }
    void read(Pair *pair, QIODevice *from, Direction direction)
    {
        QByteArray &pending = pair->pending[direction];
        pending += from->readAll();
        while (m_pairs.contains(pair) && pending.size() >= headerSize) {
            const quint32 length = qFromBigEndian<quint32>(pending.constData());
            if (quint32(pending.size() - headerSize) < length)
                return;
            const QByteArray frame = pending.left(headerSize + int(length));
            pending.remove(0, frame.size());
            pass(pair, direction, frame);
        }
    }
    void drip(Pair *pair, Direction direction)
    {
        say(pair, direction, pair->dripping[direction].left(1));
        pair->dripping[direction].remove(0, 1);
        if (!pair->dripping[direction].isEmpty())
            QTimer::singleShot(plan.milliseconds, Qt::PreciseTimer, pair, [=] { drip(pair, direction); });
    }
    void say(Pair *pair, Direction direction, const QByteArray &bytes)
    {
        if (pair->closed[direction] || !pair->into[direction]->isOpen())
            return;
        pair->into[direction]->write(bytes);
        flush(pair->into[direction]);
    }
    void pass(Pair *pair, Direction direction, const QByteArray &frame)
    {
        const bool spoils = plan.fault != Nothing && direction == plan.direction && seen++ >= plan.skipped
            && (plan.count < 0 || spoiled < plan.count);
        if (!spoils && !pair->dripping[direction].isEmpty()) {
            pair->dripping[direction] += frame;
            return;
        }
        if (!spoils) {
            say(pair, direction, frame + std::exchange(pair->held[direction], QByteArray()));
            return;
        }
        ++spoiled;
        spoil(pair, direction, frame);
    }
    void spoil(Pair *pair, Direction direction, const QByteArray &frame)
    {
        switch (plan.fault) {
        case Nothing:
        case Silence:
            break;
        case Delay:
            QTimer::singleShot(plan.milliseconds, pair, [=] { say(pair, direction, frame); });
            break;
        case Cut:
            end(pair);
            break;
        case HalfClose:
            pair->closed[direction] = true;
            ::shutdown(int(descriptor(pair->into[direction])), SHUT_WR);
            break;
        case Truncate:
            say(pair, direction, frame.left(frame.size() / 2));
            end(pair);
            break;
        case Stall:
            say(pair, direction, frame.left(frame.size() / 2));
            pair->closed[direction] = true;
            break;
        case Duplicate:
            say(pair, direction, frame + frame);
            break;
        case Swap:
            pair->held[direction] = frame;
            break;
        case Garbage:
            say(pair, direction, frame.left(headerSize) + chance(frame.size() - headerSize));
            break;
        case Noise:
            say(pair, direction, chance(200));
            break;
        case Drip:
            pair->dripping[direction] += frame;
            if (pair->dripping[direction].size() == frame.size())
                drip(pair, direction);
            break;
        case Announce:
            say(pair, direction, QByteArray::fromHex("7fffffff") + chance(1000));
            break;
        }
    }

    const Place m_near;
    const Place m_far;
    QTcpServer m_tcp;
    QLocalServer m_local;
    QVector<Pair *> m_pairs;
};

Middleman::Middleman(const Place &near, const Place &far)
    : m_worker(new Worker(near, far))
{
    m_thread.setObjectName(QStringLiteral("middleman"));
    m_worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
}

Middleman::~Middleman()
{
    run([](Worker &worker) { worker.cut(); });
    m_thread.quit();
    m_thread.wait();
}

void Middleman::run(const std::function<void(Worker &)> &task) const
{
    QMetaObject::invokeMethod(
        m_worker, [this, &task] { task(*m_worker); }, Qt::BlockingQueuedConnection);
}

bool Middleman::start()
{
    bool listens = false;
    run([&listens](Worker &worker) { listens = worker.listen(); });
    return listens;
}

void Middleman::follow(const Plan &plan)
{
    run([&plan](Worker &worker) {
        worker.plan = plan;
        worker.seen = 0;
        worker.spoiled = 0;
    });
}

int Middleman::spoiled() const
{
    int count = 0;
    run([&count](const Worker &worker) { count = worker.spoiled; });
    return count;
}

int Middleman::connections() const
{
    int count = 0;
    run([&count](const Worker &worker) { count = worker.connections(); });
    return count;
}

void Middleman::cut()
{
    run([](Worker &worker) { worker.cut(); });
}

void Middleman::setListening(bool on)
{
    run([on](Worker &worker) { worker.setListening(on); });
}

void Middleman::sayToClients(const QByteArray &bytes)
{
    run([&bytes](Worker &worker) { worker.sayToClients(bytes); });
}

const char *Middleman::name(Fault fault)
{
    switch (fault) {
    case Nothing:
        return "nothing";
    case Delay:
        return "delay";
    case Silence:
        return "silence";
    case Cut:
        return "cut";
    case HalfClose:
        return "half-close";
    case Truncate:
        return "truncate";
    case Stall:
        return "stall";
    case Duplicate:
        return "duplicate";
    case Swap:
        return "swap";
    case Garbage:
        return "garbage";
    case Noise:
        return "noise";
    case Drip:
        return "drip";
    case Announce:
        return "announce 2 GB";
    }
    return "?";
}
