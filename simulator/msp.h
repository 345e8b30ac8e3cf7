// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_MSP_H
#define SIMULATOR_MSP_H

#include <QMap>
#include <QObject>
#include <QSet>
#include <QVector>

#include <mspclient.h>
#include <mspinfo.h>
#include <mspserver.h>

namespace simulator {

/// The safety microcontroller: its states, and which command it obeys in which.
///
///     STANDBY -RUN_HARD-> READY_HARD -trigger-> SHUTTER_OPEN_HARD -MEAS_DONE-> READY_HARD
///     STANDBY -RUN_SOFT-> READY_SOFT -SHUT_OPEN-> SHUTTER_OPEN_SOFT -SHUT_CLOSE-> READY_SOFT
///     any but ERROR -ABORT-> STANDBY; ERROR -ACK_ERROR-> STANDBY
///
/// A faulty part leads to ERROR with the shutter closed. Light and shock detector obey in every state.
class MspModel
{
public:
    struct Event
    {
        MSPClient::MSPEvent event;
        short code;
    };
    using Events = QVector<Event>;

    MspModel();

    MSPInfo info;
    QSet<int> refused; ///< commands that are refused whatever the state
    int shutterFailures = 0; ///< so many of the next openings fail

    bool light() const { return m_light; }
    bool pressed() const { return m_pressed; }
    bool shutterOpen() const;

    /// Whether \p command was obeyed; what it brings about is added to \p events.
    bool execute(MSPClient::MSPCommand command, const QString &params, Events &events);
    /// False when the trigger is pressed already.
    bool press(Events &events);
    /// False when it is not pressed. A press that opened no shutter ends without an event.
    bool release(Events &events);
    /// The event happens; a SYS_ERR of a known code with all that it means.
    void happen(MSPClient::MSPEvent event, short code, Events &events);

private:
    bool obey(MSPClient::MSPCommand command, const QString &params, Events &events);
    void openShutter(MSPInfo::MSPState opened, Events &events);
    void closeShutter(MSPInfo::MSPState closed, Events &events);
    void breakDown(short code, Events &events);

    bool m_light = false;
    bool m_pressed = false;
    bool m_pressOpened = false;
};

/// The microcontroller at its socket.
class Msp : public QObject
{
    Q_OBJECT
public:
    explicit Msp(QObject *parent = nullptr);

    MspModel model;

    /// False, with errorString(), when another server is there.
    bool start();
    void die();
    bool isAlive() const { return m_server.isListening(); }
    QString errorString() const { return m_server.errorString(); }
    int clientCount() const { return m_server.clientCount(); }

    bool press();
    bool release();
    void happen(MSPClient::MSPEvent event, short code);

    QMap<QString, int> commands() const { return m_commands; } ///< obeyed ones, by name
    QMap<QString, int> refusals() const { return m_refusals; }
    int infoRequests() const { return m_infoRequests; }

signals:
    void executed(const QString &command, bool accepted);
    void eventSent(int event, int code);
    void infoGiven();

private:
    void send(const MspModel::Events &events);

    MSPServer m_server;
    QMap<QString, int> m_commands;
    QMap<QString, int> m_refusals;
    int m_infoRequests = 0;
};

} // namespace simulator

#endif // SIMULATOR_MSP_H
