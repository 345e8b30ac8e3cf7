// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef BENCH_H
#define BENCH_H

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

#include "controllerfixture.h"
#include "logrecorder.h"
#include "simulatorprocess.h"
#include "ud.h"
#include "udlistmodel.h"

/// A simulated instrument in a process of its own, and a controller on a home of its own, both switched on.
class Bench
{
public:
    /// \param speed instrument seconds per real second.
    explicit Bench(double speed = 40)
        : simulator(QStringLiteral(SIMULATOR))
        , m_speed(speed)
    {
        QObject::connect(&simulator.control, &SimulatorControl::noticeReceived, &m_context,
                         [this](const QJsonObject &notice) { notices.append(notice); });
    }

    /// Switches on; false when the links are not up in time.
    bool start(const QStringList &arguments = {})
    {
        if (!simulator.start(QStringList{QStringLiteral("--speed"), QString::number(m_speed)} + arguments))
            return false;
        fixture = std::make_unique<ControllerFixture>(home);
        HalvarController *controller = fixture->controller.get();
        QObject::connect(controller, &HalvarController::acquisitionModeChanged, &m_context,
                         [this, controller] { modes.append(controller->acquisitionMode()); });
        controller->init();
        // The MSP's first answer says that this link is up; the other one is when init() returns.
        return QTest::qWaitFor([controller] { return !controller->getMSPFwVersion().isEmpty(); });
    }
    HalvarController *operator->() const { return fixture->controller.get(); }

    /// Sends one command with one member to the simulator.
    bool set(const char *command, const char *member, const QJsonValue &value)
    {
        return simulator.control.run(QLatin1String(command), {{QLatin1String(member), value}});
    }
    /// Measures to the direct list, in hard mode.
    bool ready(MeasureModeEnumClass::MeasureMode mode)
    {
        fixture->controller->setMeasureMode(mode);
        fixture->controller->setBranchMode(BranchModeEnumClass::BRANCH_DIRECT);
        fixture->controller->setEnableMeasure(true);
        return isHard();
    }
    /// Whether the MSP goes into its measuring mode.
    bool isHard()
    {
        return QTest::qWaitFor([this] { return msp("state").toString() == QLatin1String("READY_HARD"); });
    }
    /// Adds a unit and selects it for indexed measures.
    UD *addUnit(const QString &local)
    {
        auto *unit = new UD;
        unit->setLocal(local);
        unit->setZone('A');
        unit->setElement(QStringLiteral("Mur"));
        unit->setSubstrat(QStringLiteral("Plâtre"));
        unit->setRevetement(QStringLiteral("Peinture"));
        fixture->controller->uds->append(unit);
        fixture->controller->setBranchMode(BranchModeEnumClass::BRANCH_INDEXED);
        fixture->controller->setUdIndexEdition(fixture->controller->uds->size() - 1);
        return unit;
    }

    QJsonValue msp(const char *member) { return section("msp").value(QLatin1String(member)); }
    QJsonValue nap(const char *member) { return section("nap").value(QLatin1String(member)); }
    /// How often the controller made \p call.
    int calls(const char *call) { return nap("calls").toObject().value(QLatin1String(call)).toInt(); }
    /// How often the MSP obeyed \p command.
    int commands(const char *command)
    {
        return msp("commands").toObject().value(QLatin1String(command)).toInt();
    }
    /// Waits until all that the simulator told up to the end of the last acquisition has come in.
    bool toldTheEnd()
    {
        return QTest::qWaitFor([this] {
            return lastNotice("status").value(QLatin1String("status")) == QLatin1String("NOT_STARTED");
        });
    }
    /// Detections that the service has sent, those that open a shot left out.
    QVector<QJsonObject> results() const
    {
        QVector<QJsonObject> found;
        for (const QJsonObject &notice : notices) {
            if (notice.value(QLatin1String("notice")) == QLatin1String("detection")
                && notice.contains(QLatin1String("decision")))
                found.append(notice);
        }
        return found;
    }
    QJsonObject lastNotice(const char *kind) const
    {
        for (int i = notices.size() - 1; i >= 0; --i) {
            if (notices.at(i).value(QLatin1String("notice")) == QLatin1String(kind))
                return notices.at(i);
        }
        return {};
    }

    TestHome home;
    SimulatorProcess simulator;
    std::unique_ptr<ControllerFixture> fixture; // switched off first
    QVector<QJsonObject> notices;
    QList<int> modes; ///< as acquisitionModeChanged announced them

private:
    QJsonObject section(const char *name)
    {
        return simulator.control.status().value(QLatin1String(name)).toObject();
    }
    const double m_speed;
    QObject m_context;
};

#endif // BENCH_H
