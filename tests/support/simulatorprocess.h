// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATORPROCESS_H
#define SIMULATORPROCESS_H

#include <QProcess>
#include <QStringList>

#include "simulatorcontrol.h"

/// A real halvar-simulator beside the test, and the hand on its control socket. Inside a private instrument
/// only.
class SimulatorProcess
{
public:
    /// \param program path of the simulator.
    explicit SimulatorProcess(const QString &program)
        : m_program(program)
    { }
    ~SimulatorProcess() { stop(); }

    /// Starts it with \p arguments and waits until it answers; false when it does not.
    bool start(const QStringList &arguments = {})
    {
        stop();
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(m_program, arguments);
        return m_process.waitForStarted() && control.connectTo() && control.subscribe();
    }
    /// Ends it in order; its exit status, or -1 when it had to be killed.
    int stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return m_process.exitCode();
        control.run(QStringLiteral("quit"));
        control.close();
        if (!m_process.waitForFinished(10000)) {
            m_process.kill();
            m_process.waitForFinished();
            return -1;
        }
        return m_process.exitCode();
    }
    /// Ends it as a crash does.
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
        control.close();
    }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    QProcess &process() { return m_process; }

    SimulatorControl control;

private:
    const QString m_program;
    QProcess m_process;
};

#endif // SIMULATORPROCESS_H
