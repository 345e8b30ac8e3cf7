// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "mspclient.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QMetaType>
#include <QTimer>

#include <algorithm>
#include <deque>

#include "mspcodec.h"

namespace {

/// A server that has stopped reading is as good as gone.
constexpr qint64 maximumUnsent = 1024 * 1024;

} // namespace

/// All of it runs in the thread of the client, whose children the socket and the timers are: they follow it
/// when it is moved to another thread.
class MSPClient::Private
{
public:
    explicit Private(MSPClient *client)
        : q(client)
    { }
    ~Private();

    void info();
    void send(MSPCommand command, const QString &params);
    void open();
    void setTimes(const Times &times);

private:
    struct Command
    {
        msp::Command message;
        QDeadlineTimer limit;
        bool written = false;
        std::optional<bool> outcome;
    };
    struct Info
    {
        msp::InfoRequest message;
        QDeadlineTimer limit;
    };

    bool isConnected() const { return m_socket && m_socket->state() == QLocalSocket::ConnectedState; }
    bool isConnecting() const { return m_socket && m_socket->state() == QLocalSocket::ConnectingState; }
    void create();
    void connected();
    void lost();
    void read();
    void handle(const msp::Message &message);
    void settle(quint32 number, bool ok);
    void announce();
    void checkLimits();
    void scheduleLimits();
    void write(Command &command);
    void write(Info &request);
    void write(const msp::Message &message);

    MSPClient *const q;
    std::unique_ptr<QLocalSocket> m_socket;
    std::unique_ptr<QTimer> m_retryTimer;
    std::unique_ptr<QTimer> m_limitTimer;
    Times m_times;
    int m_pause = m_times.firstPause;
    msp::FrameReader m_reader;
    std::deque<Command> m_commands; ///< not yet announced, in the order in which they were sent
    std::deque<Info> m_infos; ///< not yet answered
    quint32 m_lastNumber = 0;
};

MSPClient::Private::~Private()
{
    if (m_socket)
        m_socket->disconnect(q);
}

void MSPClient::Private::create()
{
    m_retryTimer = std::make_unique<QTimer>(q);
    m_retryTimer->setObjectName(QStringLiteral("retry"));
    m_retryTimer->setSingleShot(true);
    connect(m_retryTimer.get(), &QTimer::timeout, q, [this] { open(); });
    m_limitTimer = std::make_unique<QTimer>(q);
    m_limitTimer->setSingleShot(true);
    connect(m_limitTimer.get(), &QTimer::timeout, q, [this] { checkLimits(); });

    m_socket = std::make_unique<QLocalSocket>(q);
    connect(m_socket.get(), &QLocalSocket::connected, q, [this] { connected(); });
    connect(m_socket.get(), &QLocalSocket::disconnected, q, [this] { lost(); });
    connect(m_socket.get(), &QLocalSocket::errorOccurred, q, [this] { lost(); });
    connect(m_socket.get(), &QLocalSocket::readyRead, q, [this] { read(); });
}

void MSPClient::Private::setTimes(const Times &times)
{
    m_times = times;
    m_pause = times.firstPause;
}

void MSPClient::Private::open()
{
    if (!m_socket)
        create();
    if (m_retryTimer->isActive() || m_socket->state() != QLocalSocket::UnconnectedState)
        return;
    m_reader.clear();
    m_socket->connectToServer(msp::serverName());
}

void MSPClient::Private::connected()
{
    for (Info &request : m_infos)
        write(request);
    for (Command &command : m_commands) {
        if (!command.written && !command.outcome)
            write(command);
    }
    scheduleLimits();
}

void MSPClient::Private::lost()
{
    // An error and the end of the connection are told separately; the first of them does the work.
    if (m_retryTimer->isActive())
        return;
    m_retryTimer->start(m_pause);
    m_pause = m_pause > m_times.longestPause / 2 ? m_times.longestPause : 2 * m_pause;
    m_socket->abort();
    // What the MSP made of these is unknown; sent again, a command could move the shutter twice.
    for (Command &command : m_commands) {
        if (!command.outcome)
            command.outcome = false;
    }
    announce();
    // Whoever asked wants the present state: one answer of the next connection serves them all.
    if (m_infos.size() > 1)
        m_infos.resize(1);
}

void MSPClient::Private::info()
{
    open();
    if (!isConnected() && !m_infos.empty())
        return;
    m_infos.push_back({{++m_lastNumber}, {}});
    if (isConnected()) {
        write(m_infos.back());
        scheduleLimits();
    }
}

void MSPClient::Private::send(MSPCommand command, const QString &params)
{
    open();
    m_commands.push_back({{++m_lastNumber, command, params}, QDeadlineTimer(m_times.reply), false, {}});
    if (isConnected()) {
        write(m_commands.back());
    } else if (!isConnecting()) {
        m_commands.back().outcome = false;
        announce();
    }
    scheduleLimits();
}

void MSPClient::Private::write(Command &command)
{
    command.written = true;
    write(msp::Message(command.message));
}

void MSPClient::Private::write(Info &request)
{
    request.limit = QDeadlineTimer(m_times.reply);
    write(msp::Message(request.message));
}

void MSPClient::Private::write(const msp::Message &message)
{
    m_socket->write(msp::frame(msp::encode(message)));
}

void MSPClient::Private::read()
{
    m_reader.append(m_socket->readAll());
    while (const std::optional<QByteArray> payload = m_reader.next()) {
        if (const std::optional<msp::Message> message = msp::decode(*payload)) {
            // It speaks, so this is a living server: after the next loss it is looked for at once.
            m_pause = m_times.firstPause;
            handle(*message);
        }
    }
    if (m_reader.isBroken())
        lost();
}

void MSPClient::Private::handle(const msp::Message &message)
{
    if (const auto *event = std::get_if<msp::Event>(&message)) {
        emit q->msp_event(event->event, event->code);
    } else if (const auto *reply = std::get_if<msp::CommandReply>(&message)) {
        settle(reply->number, reply->ok);
    } else if (const auto *infoReply = std::get_if<msp::InfoReply>(&message)) {
        const auto request = std::find_if(m_infos.begin(), m_infos.end(), [infoReply](const Info &i) {
            return i.message.number == infoReply->number;
        });
        // Each reply with the shock flag records a shock: an answer that comes twice is told once.
        if (request == m_infos.end())
            return;
        m_infos.erase(request);
        scheduleLimits();
        emit q->msp_info(infoReply->info);
    }
}

void MSPClient::Private::settle(quint32 number, bool ok)
{
    for (Command &command : m_commands) {
        if (command.message.number == number && !command.outcome) {
            command.outcome = ok;
            announce();
            return;
        }
    }
}

void MSPClient::Private::announce()
{
    QMetaObject::invokeMethod(
        q,
        [this] {
            while (!m_commands.empty() && m_commands.front().outcome) {
                const bool ok = *m_commands.front().outcome;
                m_commands.pop_front();
                emit q->msp_success(ok);
            }
            scheduleLimits();
        },
        Qt::QueuedConnection);
}

void MSPClient::Private::checkLimits()
{
    for (Command &command : m_commands) {
        if (!command.outcome && command.limit.hasExpired())
            command.outcome = false;
    }
    announce();
    if (!isConnected())
        return;
    for (Info &request : m_infos) {
        if (request.limit.hasExpired())
            write(request);
    }
    if (m_socket->bytesToWrite() > maximumUnsent)
        lost();
    scheduleLimits();
}

void MSPClient::Private::scheduleLimits()
{
    qint64 nearest = -1;
    const auto consider = [&nearest](const QDeadlineTimer &limit) {
        const qint64 remaining = limit.remainingTime();
        nearest = nearest < 0 ? remaining : std::min(nearest, remaining);
    };
    for (const Command &command : m_commands) {
        if (!command.outcome)
            consider(command.limit);
    }
    if (isConnected()) {
        for (const Info &request : m_infos)
            consider(request.limit);
    }
    if (nearest < 0)
        m_limitTimer->stop();
    else
        m_limitTimer->start(int(nearest));
}

MSPClient::MSPClient(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    registerMetaTypes();
    // Posted to this object, hence run by the event loop of the thread that it will have been moved to.
    QMetaObject::invokeMethod(
        this, [this] { d->open(); }, Qt::QueuedConnection);
}

MSPClient::~MSPClient() = default;

void MSPClient::registerMetaTypes()
{
    qRegisterMetaType<MSPInfo>("MSPInfo");
    qRegisterMetaType<MSPClient::MSPCommand>("MSPClient::MSPCommand");
    qRegisterMetaType<MSPClient::MSPEvent>("MSPClient::MSPEvent");
}

void MSPClient::setTimes(const Times &times)
{
    d->setTimes(times);
}

void MSPClient::info()
{
    d->info();
}

void MSPClient::send(MSPClient::MSPCommand command, QString const &params)
{
    d->send(command, params);
}
