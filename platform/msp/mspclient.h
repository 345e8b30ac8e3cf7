// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef MSPCLIENT_H
#define MSPCLIENT_H

#include <QObject>
#include <QString>

#include <memory>

#include "mspexport.h"
#include "mspinfo.h"

/// Client of the MSP, the safety microcontroller that owns the shutter, the trigger, the light, the
/// shock detector, the high-voltage supply and the DAC.
///
/// It talks to the MSP server of the machine over a local socket, which is opened as soon as the event
/// loop of the thread that it lives on runs: an object that is moved to a worker thread right after its
/// construction does all its work there. Use it from other threads through queued connections only.
///
/// A server that is absent or lost is looked for again after a pause that grows from 0.25 s to 5 s, for as
/// long as the client lives.
class MSP_EXPORT MSPClient : public QObject
{
    Q_OBJECT
public:
    enum MSPCommand : int {
        LIGHT_ON = 0,
        LIGHT_OFF = 1,
        RESET_SHOCK = 2,
        RUN_HARD = 3,
        RUN_SOFT = 4,
        SHUT_OPEN = 5,
        SHUT_CLOSE = 6,
        ABORT = 7,
        SET_DAC = 8,
        ACK_ERROR = 9,
        MEAS_DONE = 10,
        NB_COMMANDS = 11
    };
    Q_ENUM(MSPCommand)

    /// An event that is not in the list is carried with the number that the microcontroller gave.
    enum MSPEvent : int {
        SYS_ERR = 0, ///< with a code that tells which error
        SHUT_OPENED = 1,
        SHUT_CLOSED = 2,
        PROBE_OFF = 3,
        PROBE_ON = 4,
        TRIG_OFF = 5
    };
    Q_ENUM(MSPEvent)

    explicit MSPClient(QObject *parent = nullptr);
    ~MSPClient() override;

    /// Registers MSPInfo, MSPClient::MSPCommand and MSPClient::MSPEvent under these names, so that they
    /// cross threads in queued signals. The constructor does it too; call this where such a connection is
    /// made before any client exists.
    static void registerMetaTypes();

    /// How long the link waits for what, in milliseconds. To be set in the thread of the client, or before
    /// that thread runs.
    struct Times
    {
        int reply = 2000; ///< for the answer to a command or a request
        int firstPause = 250; ///< before the first attempt to find a lost server again
        int longestPause = 5000; ///< the pause doubles up to this
    };
    void setTimes(const Times &times);

public slots:
    /// Asks the MSP for its state; msp_info() brings the answer. The request is never dropped: without a
    /// server it waits for one, and what a server leaves unanswered (Times::reply, or until it is lost) is
    /// asked again. Requests that wait for the same connection share one answer.
    void info();
    /// Sends one command with its parameters (none: a null string). Each command is followed by exactly one
    /// msp_success(), in the order of the commands: false when the MSP refuses it, when there is no server,
    /// when the server is lost first or does not answer within Times::reply. A command is never sent twice.
    void send(MSPClient::MSPCommand command, QString const &params);

signals:
    void msp_info(MSPInfo info);
    /// Outcome of one command. Never emitted from within send().
    void msp_success(bool ok);
    /// Unsolicited event; \p code means something for SYS_ERR only.
    void msp_event(MSPClient::MSPEvent event, short code);

private:
    class Private;
    const std::unique_ptr<Private> d;
};

#endif // MSPCLIENT_H
