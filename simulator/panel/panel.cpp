// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "panel.h"

#include <QTime>

#include "simulator.h"

namespace simulator {

namespace {

bool is(const QJsonObject &notice, const char *member, const char *text)
{
    return notice.value(QLatin1String(member)).toString() == QLatin1String(text);
}

} // namespace

Panel::Panel(Simulator &simulator, QObject *parent)
    : QObject(parent)
    , m_simulator(simulator)
{
    m_shown.setSourceModel(&m_traffic);
    m_shown.setFilterRole(Traffic::LinkRole);
    connect(&simulator, &Simulator::noticed, this, &Panel::take);
    // Some of the state, like drifting conditions, changes without a notice.
    connect(&m_timer, &QTimer::timeout, this, &Panel::refresh);
    m_timer.start(PaceMs);
    refresh();
}

QString Panel::command(const QString &name, const QVariantMap &members)
{
    QJsonObject command = QJsonObject::fromVariantMap(members);
    command.insert(QStringLiteral("command"), name);
    const QString refused = m_simulator.execute(command).value(QLatin1String("error")).toString();
    // At once: a slider that was let go would else fall back for a moment.
    refresh();
    return refused;
}

void Panel::setShownLink(const QString &link)
{
    if (link == m_shownLink)
        return;
    m_shownLink = link;
    m_shown.setFilterFixedString(link);
    emit shownLinkChanged();
}

void Panel::take(const QJsonObject &notice)
{
    m_traffic.add(notice);
    const QString on = QStringLiteral("on");
    const QString text = QStringLiteral("text");
    if (is(notice, "notice", "beeper")) {
        note("beeper", {{on, notice.value(QLatin1String("level")).toInt() != 0}});
    } else if (is(notice, "command", "LIGHT_ON") || is(notice, "command", "LIGHT_OFF")) {
        if (notice.value(QLatin1String("accepted")).toBool())
            note("light", {{on, is(notice, "command", "LIGHT_ON")}});
    } else if (is(notice, "event", "SHUT_OPENED") || is(notice, "event", "SHUT_CLOSED")) {
        note("shutter", {{on, is(notice, "event", "SHUT_OPENED")}});
    } else if (is(notice, "notice", "gpio")) {
        note("gpio",
             {{text,
               notice.value(QLatin1String("file")).toString() + QStringLiteral(" = ")
                   + notice.value(QLatin1String("content")).toString()}});
    } else if (is(notice, "notice", "shell")) {
        note("shell", {{text, notice.value(QLatin1String("line"))}});
    }
}

void Panel::note(const char *part, const QJsonObject &what)
{
    QJsonObject entry = what;
    entry.insert(QStringLiteral("time"), QTime::currentTime().toString(QStringLiteral("HH:mm:ss")));
    m_last.insert(QLatin1String(part), entry);
    m_lastIsNew = true;
}

void Panel::refresh()
{
    m_traffic.flush();
    if (m_lastIsNew) {
        m_lastIsNew = false;
        emit lastChanged();
    }
    const QJsonObject state = m_simulator.execute({{QStringLiteral("command"), QStringLiteral("status")}});
    if (state == m_state)
        return;
    m_state = state;
    emit stateChanged();
}

} // namespace simulator
