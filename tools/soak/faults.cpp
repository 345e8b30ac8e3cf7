// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What goes wrong in a long day, one thing after the other.
#include "soak.h"

#include <QEventLoop>
#include <QTimer>

#include <halvar-error.h>
#include <halvarcontroller.h>

namespace {

void pause(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

void Soak::fault()
{
    static const QVector<QPair<QString, void (Soak::*)()>> faults{
        {QStringLiteral("shocks"), &Soak::shock},
        {QStringLiteral("jammed shutters"), &Soak::jammedShutter},
        {QStringLiteral("failing acquisitions"), &Soak::failingService},
        {QStringLiteral("lost microcontrollers"), &Soak::lostMicrocontroller},
        {QStringLiteral("slow services"), &Soak::slowService},
        {QStringLiteral("early releases"), &Soak::earlyRelease},
    };
    const auto &[name, happen] = faults.at(m_nextFault++ % faults.size());
    (this->*happen)();
    ++m_faults[name];
}

void Soak::shock()
{
    command("mspEvent", {{QStringLiteral("event"), QStringLiteral("SYS_ERR")}, {QStringLiteral("code"), 0}});
    waitFor([this] { return m_controller->error->shock(); }, QStringLiteral("the shock is to be shown"));
    m_controller->resetShock();
    waitFor([this] { return !m_controller->error->shock(); },
            QStringLiteral("the shock is to be taken back"));
}

void Soak::jammedShutter()
{
    command("mspShutter", {{QStringLiteral("failures"), 1}});
    press();
    waitFor([this] { return !m_controller->error->errorMessage().isEmpty(); },
            QStringLiteral("the shutter's fault is to be shown"));
    release();
    m_controller->ackError();
    m_controller->error->resetErrorMessage();
    waitFor([this] { return msp().value(QLatin1String("state")) == QLatin1String("STANDBY"); },
            QStringLiteral("the fault is to be acknowledged"));
    rearm();
}

void Soak::failingService()
{
    press();
    waitFor([this] { return m_detections >= 1; }, QStringLiteral("a result is to come"));
    command("napError", {{QStringLiteral("error"), QStringLiteral("DPP_ERROR")}});
    waitFor([this] { return !m_controller->error->errorMessage().isEmpty(); },
            QStringLiteral("the service's error is to be shown"));
    release();
    m_controller->error->resetErrorMessage();
    rearm();
}

void Soak::lostMicrocontroller()
{
    command("mspDie");
    command("mspReturn");
    waitFor([this] { return msp().value(QLatin1String("clients")).toInt() == 1; },
            QStringLiteral("the microcontroller is to be found again"));
    m_commandsSent = commandsReceived(); // a new one has obeyed none
    rearm();
}

void Soak::slowService()
{
    command("napDelay", {{QStringLiteral("ms"), 50}});
    m_controller->requestUpdate();
    command("napDelay", {{QStringLiteral("ms"), 0}});
    // The status that was asked for says that nothing runs; it must not come while the next shot does.
    pause(1000);
}

void Soak::earlyRelease()
{
    // Before the second result the library keeps measuring for two seconds more.
    command("speed", {{QStringLiteral("value"), 5}});
    press();
    waitFor([this] { return m_detections >= 1; }, QStringLiteral("a result is to come"));
    command("release");
    waitFor([this] { return m_finishedId >= 0 && isIdle(); }, QStringLiteral("the measure is to end"));
    command("speed", {{QStringLiteral("value"), m_options.speed}});
}
