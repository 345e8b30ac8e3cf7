// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_PANEL_H
#define SIMULATOR_PANEL_H

#include <QAbstractItemModel>
#include <QJsonObject>
#include <QObject>
#include <QSortFilterProxyModel>
#include <QTimer>
#include <QVariantMap>

#include "traffic.h"

namespace simulator {

class Simulator;

/// What the panel's window sees of the simulator, and the one way by which it acts on it: the commands of the
/// control socket. Changes are told at most every Pace.
class Panel : public QObject
{
    Q_OBJECT
    /// The answer to the command "status".
    Q_PROPERTY(QJsonObject state READ state NOTIFY stateChanged)
    /// What each part did last, by its name ("beeper", "light", "shutter", "gpio", "shell"): "time", and
    /// "on", or "text". A part that has done nothing yet is not in it.
    Q_PROPERTY(QJsonObject last READ last NOTIFY lastChanged)
    /// The traffic of the links, narrowed to shownLink.
    Q_PROPERTY(QAbstractItemModel *traffic READ traffic CONSTANT)
    /// "NAP", "MSP", or empty for both.
    Q_PROPERTY(QString shownLink READ shownLink WRITE setShownLink NOTIFY shownLinkChanged)
public:
    static constexpr int PaceMs = 100;

    /// \param simulator is to live longer.
    explicit Panel(Simulator &simulator, QObject *parent = nullptr);

    /// Carries out a command of the control socket.
    /// \return empty, or why it was refused
    Q_INVOKABLE QString command(const QString &name, const QVariantMap &members = QVariantMap());
    Q_INVOKABLE void clearTraffic() { m_traffic.clear(); }

    QJsonObject state() const { return m_state; }
    QJsonObject last() const { return m_last; }
    QAbstractItemModel *traffic() { return &m_shown; }
    QString shownLink() const { return m_shownLink; }
    void setShownLink(const QString &link);

signals:
    void stateChanged();
    void lastChanged();
    void shownLinkChanged();

private:
    void take(const QJsonObject &notice);
    void note(const char *part, const QJsonObject &what);
    void refresh();

    Simulator &m_simulator;
    QJsonObject m_state;
    QJsonObject m_last;
    bool m_lastIsNew = false;
    Traffic m_traffic;
    QSortFilterProxyModel m_shown;
    QString m_shownLink;
    QTimer m_timer;
};

} // namespace simulator

#endif // SIMULATOR_PANEL_H
