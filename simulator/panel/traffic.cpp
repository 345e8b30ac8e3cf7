// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "traffic.h"

#include <QTime>

namespace simulator {

namespace {

QString text(const QJsonObject &notice, const char *member)
{
    return notice.value(QLatin1String(member)).toVariant().toString();
}

QString detection(const QJsonObject &notice)
{
    QString line = QStringLiteral("NAP_DETECTION %1 ± %2")
                       .arg(notice.value(QLatin1String("value")).toDouble(), 0, 'f', 3)
                       .arg(notice.value(QLatin1String("sigma")).toDouble(), 0, 'f', 3);
    if (notice.contains(QLatin1String("decision")))
        line += QLatin1Char(' ') + text(notice, "decision");
    return line;
}

QString napCall(const QJsonObject &notice)
{
    QString arguments;
    if (notice.contains(QLatin1String("autoStop")))
        arguments = QStringLiteral("autoStop: ") + text(notice, "autoStop");
    return QStringLiteral("%1(%2) = %3").arg(text(notice, "call"), arguments, text(notice, "result"));
}

} // namespace

void Traffic::add(const QJsonObject &notice)
{
    const QString kind = text(notice, "notice");
    Line line;
    line.link = QStringLiteral("NAP");
    if (kind == QLatin1String("napCall")) {
        line.incoming = true;
        line.text = napCall(notice);
    } else if (kind == QLatin1String("observer")) {
        line.incoming = true;
        line.text = QStringLiteral("observer %1: %2").arg(text(notice, "event"), text(notice, "description"));
    } else if (kind == QLatin1String("status")) {
        line.text = QStringLiteral("NAP_STATUS ") + text(notice, "status");
        if (notice.contains(QLatin1String("error")))
            line.text += QLatin1Char(' ') + text(notice, "error");
    } else if (kind == QLatin1String("detection")) {
        line.text = detection(notice);
    } else if (kind == QLatin1String("notification")) {
        line.text = text(notice, "id");
    } else if (kind == QLatin1String("mspCommand")) {
        const bool accepted = notice.value(QLatin1String("accepted")).toBool();
        line.link = QStringLiteral("MSP");
        line.incoming = true;
        line.text = QStringLiteral("%1 %2, %3")
                        .arg(text(notice, "command"),
                             accepted ? QStringLiteral("accepted") : QStringLiteral("refused"),
                             text(notice, "state"));
    } else if (kind == QLatin1String("mspInfo")) {
        line.link = QStringLiteral("MSP");
        line.incoming = true;
        line.text = QStringLiteral("info requested, ") + text(notice, "state");
    } else if (kind == QLatin1String("mspEvent")) {
        line.link = QStringLiteral("MSP");
        line.text = QStringLiteral("%1 %2").arg(text(notice, "event"), text(notice, "code"));
    } else {
        return;
    }
    line.time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    m_added.append(line);
    if (m_added.size() > Limit)
        m_added.removeFirst();
}

void Traffic::flush()
{
    if (m_added.isEmpty())
        return;
    const int tooMany = m_lines.size() + m_added.size() - Limit;
    if (tooMany > 0) {
        beginRemoveRows(QModelIndex(), 0, tooMany - 1);
        m_lines.remove(0, tooMany);
        endRemoveRows();
    }
    beginInsertRows(QModelIndex(), m_lines.size(), m_lines.size() + m_added.size() - 1);
    m_lines += m_added;
    endInsertRows();
    m_added.clear();
}

void Traffic::clear()
{
    beginResetModel();
    m_lines.clear();
    m_added.clear();
    endResetModel();
}

int Traffic::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_lines.size();
}

QVariant Traffic::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_lines.size())
        return QVariant();
    const Line &line = m_lines.at(index.row());
    switch (role) {
    case TimeRole:
        return line.time;
    case LinkRole:
        return line.link;
    case IncomingRole:
        return line.incoming;
    case TextRole:
        return line.text;
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> Traffic::roleNames() const
{
    return {{TimeRole, "time"}, {LinkRole, "link"}, {IncomingRole, "incoming"}, {TextRole, "text"}};
}

} // namespace simulator
