// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_GATE_H
#define SIMULATOR_GATE_H

#include <QMutex>
#include <QObject>
#include <QWaitCondition>

#include <functional>

namespace simulator {

/// Where the service's calls pass from the middleware's thread to the simulator's, and where they are held
/// up.
class Gate : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Runs \p operation on this object's thread and waits for it. From any thread.
    /// \return its result; ERR_PEER_GONE, without running it, when the gate is or becomes closed.
    int pass(const std::function<int()> &operation);

    /// While silent, calls wait.
    void setSilent(bool silent);
    /// Real milliseconds that each call waits first.
    void setDelay(int milliseconds);
    void setOpen(bool open);
    /// Calls that wait for the end of a silence or delay.
    int held();

private:
    struct Call;

    QMutex m_mutex;
    QWaitCondition m_changed;
    bool m_silent = false;
    int m_delay = 0;
    bool m_open = true;
    int m_closings = 0;
    int m_held = 0;
};

} // namespace simulator

#endif // SIMULATOR_GATE_H
