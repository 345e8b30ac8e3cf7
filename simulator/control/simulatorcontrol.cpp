// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "simulatorcontrol.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QThread>
#include <QTimer>

namespace {

constexpr int connectPauseMs = 20;

int remaining(const QDeadlineTimer &deadline)
{
    return int(deadline.remainingTime());
}

} // namespace

SimulatorControl::SimulatorControl(QObject *parent)
    : QObject(parent)
{
    connect(&m_socket, &QLocalSocket::readyRead, this, &SimulatorControl::read);
    connect(&m_socket, &QLocalSocket::disconnected, this, [this] {
        if (!m_closing)
            emit connectionLost();
    });
}

QString SimulatorControl::defaultName()
{
    return QStringLiteral("halvar-simulator");
}

bool SimulatorControl::connectTo(const QString &name, int limitMs)
{
    close();
    const QDeadlineTimer deadline(limitMs);
    for (;;) {
        m_socket.connectToServer(name);
        if (m_socket.waitForConnected(qMax(1, remaining(deadline))))
            return true;
        m_error = QStringLiteral("no simulator answers at \"%1\": %2").arg(name, m_socket.errorString());
        m_socket.abort();
        if (deadline.hasExpired())
            return false;
        // A socket that does not exist yet is refused at once, and nothing tells when it appears.
        QThread::msleep(connectPauseMs);
    }
}

void SimulatorControl::close()
{
    m_closing = true;
    m_socket.abort();
    m_closing = false;
    m_buffer.clear();
    m_answers.clear();
    m_notices.clear();
}

bool SimulatorControl::isConnected() const
{
    return m_socket.state() == QLocalSocket::ConnectedState;
}

QJsonObject SimulatorControl::send(QJsonObject request, int limitMs)
{
    const QDeadlineTimer deadline(limitMs);
    const QString name = request.value(QLatin1String("command")).toString();
    const int tag = ++m_lastTag;
    request.insert(QStringLiteral("tag"), tag);
    m_error.clear();
    if (isConnected()) {
        m_socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
        m_socket.flush();
    }
    for (;;) {
        while (!m_answers.isEmpty()) {
            // Another tag answers a command that was given up.
            QJsonObject answer = m_answers.takeFirst();
            if (answer.value(QLatin1String("tag")).toInt() != tag)
                continue;
            answer.remove(QStringLiteral("tag"));
            return answer;
        }
        if (!isConnected())
            m_error = QStringLiteral("%1: not connected to a simulator").arg(name);
        else if (!m_socket.waitForReadyRead(remaining(deadline)))
            m_error = isConnected() ? QStringLiteral("%1: no answer within %2 ms").arg(name).arg(limitMs)
                                    : QStringLiteral("%1: the simulator has gone").arg(name);
        // What came in together with the end of the connection counts.
        if (!m_error.isEmpty() && m_answers.isEmpty())
            return {{QStringLiteral("ok"), false}, {QStringLiteral("error"), m_error}};
        m_error.clear();
    }
}

QJsonObject SimulatorControl::command(const QString &name, const QJsonObject &members, int limitMs)
{
    QJsonObject request = members;
    request.insert(QStringLiteral("command"), name);
    return send(request, limitMs);
}

bool SimulatorControl::run(const QString &name, const QJsonObject &members)
{
    const QJsonObject answer = command(name, members);
    if (answer.value(QLatin1String("ok")).toBool())
        return true;
    m_error = answer.value(QLatin1String("error")).toString();
    return false;
}

QJsonObject SimulatorControl::waitForNotice(const QJsonObject &members, int limitMs)
{
    QJsonObject found;
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, &loop, [this, &loop, limitMs] {
        m_error = QStringLiteral("no such notice within %1 ms").arg(limitMs);
        loop.exit(1);
    });
    connect(this, &SimulatorControl::noticeReceived, &loop, [&](const QJsonObject &notice) {
        if (!found.isEmpty() || !matches(notice, members))
            return;
        found = notice;
        loop.exit(0);
    });
    connect(this, &SimulatorControl::connectionLost, &loop, [this, &loop] {
        m_error = QStringLiteral("the simulator has gone");
        loop.exit(1);
    });
    if (!isConnected() && m_notices.isEmpty()) {
        m_error = QStringLiteral("not connected to a simulator");
        return {};
    }
    limit.start(limitMs);
    loop.exec();
    return found;
}

bool SimulatorControl::matches(const QJsonObject &notice, const QJsonObject &members)
{
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (notice.value(member.key()) != member.value())
            return false;
    }
    return true;
}

void SimulatorControl::read()
{
    m_buffer += m_socket.readAll();
    for (int end = m_buffer.indexOf('\n'); end >= 0; end = m_buffer.indexOf('\n')) {
        const QJsonObject line = QJsonDocument::fromJson(m_buffer.left(end)).object();
        m_buffer.remove(0, end + 1);
        if (line.contains(QLatin1String("ok"))) {
            m_answers.append(line);
        } else if (line.contains(QLatin1String("notice"))) {
            m_notices.append(line);
            if (m_notices.size() == 1)
                QMetaObject::invokeMethod(this, &SimulatorControl::deliver, Qt::QueuedConnection);
        }
    }
}

void SimulatorControl::deliver()
{
    // A slot may run an event loop of its own or send commands: each notice is taken out before it is told,
    // and those behind it are delivered by whichever loop comes first.
    if (m_notices.isEmpty())
        return;
    const QJsonObject notice = m_notices.takeFirst();
    if (!m_notices.isEmpty())
        QMetaObject::invokeMethod(this, &SimulatorControl::deliver, Qt::QueuedConnection);
    emit noticeReceived(notice);
}
