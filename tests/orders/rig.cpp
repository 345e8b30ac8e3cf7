// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "rig.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTimer>

#include <QsLog.h>
#include <unistd.h>

#include "battery.h"
#include "calibration.h"
#include "halvar-error.h"
#include "measurelistmodel.h"
#include "pin.h"
#include "rigservice.h"
#include "ud.h"
#include "udlistmodel.h"

namespace {

/// Told instead of slept, see usleep() below.
std::function<void(useconds_t)> tellSleep;

} // namespace

// The beeper is the only one here who sleeps: for half a second while the kernel makes the line's files, and
// as long as a beep lasts. The program's own definition comes before that of the C library, also for the
// controller. What a beep does before and after the sleep stays as it is.
extern "C" int usleep(useconds_t microseconds)
{
    if (tellSleep)
        tellSleep(microseconds);
    return 0;
}

namespace orders {

namespace {

constexpr int LinkLimit = 20000; // ms of real time

/// A row whose item somebody deleted.
template <typename Item>
Item gone()
{
    Item ret;
    ret.name = "gone";
    return ret;
}

MeasureState stateOf(const Measure &measure, const Watcher &watcher)
{
    return {watcher.nameOf(&measure),
            measure.concentration(),
            measure.sigma(),
            measure.detectionDecision(),
            measure.localisation(),
            measure.degradationState(),
            measure.conservationState().toStdString(),
            measure.idNAP()};
}

std::vector<MeasureState> stateOf(const MeasureListModel &list, const Watcher &watcher)
{
    std::vector<MeasureState> ret;
    for (int row = 0; row < list.rowCount(); ++row)
        ret.push_back(list.at(row) ? stateOf(*list.at(row), watcher) : gone<MeasureState>());
    return ret;
}

UnitState stateOf(UD &unit, const Watcher &watcher)
{
    return {watcher.nameOf(&unit),
            unit.statut(),
            unit.detectionDecision(),
            unit.zone(),
            unit.local().toStdString(),
            unit.observation().toStdString(),
            stateOf(*unit.measures(), watcher)};
}

template <typename Condition>
bool waitReally(Condition condition)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > LinkLimit)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void configure(TestHome &home, const Setup &setup)
{
    const auto set = [&home](const char *key, const QString &value) {
        home.setConfig(QLatin1String(key), value);
    };
    static const char *const ends[] = {"gachette", "auto", "defini", "Defini"};
    set("Type_End_Measure", QLatin1String(ends[setup.endOfMeasure]));
    set("Time_Before_Open_Shutter", QString::number(setup.beforeShutter));
    set("Time_Measure", QString::number(setup.measureTime));
    set("Nbr_Measure", QString::number(setup.nbMeasures));
    set("Nbr_Energy_Adj_Test", QString::number(setup.maxCalibrations));
    set("Led_Light_Off", QString::number(setup.lightOff));
    set("Beep_Time", QString::number(setup.beepTime));
    set("Waiting_For_Go", QString::number(setup.waitingForGo));
    set("Password", QString::number(setup.password));
}

} // namespace

bool Application::notify(QObject *receiver, QEvent *event)
{
    if (!m_client) {
        if (auto *client = qobject_cast<MSPClient *>(receiver))
            m_client = client;
    }
    return QCoreApplication::notify(receiver, event);
}

Rig::Rig(Application &application, VirtualClock &clock, const Sequence &sequence)
    : m_application(application)
    , m_clock(clock)
    , m_reactions(sequence.reactions)
{
    const Setup &setup = sequence.setup;
    QsLogging::Logger::instance().setLoggingLevel(setup.traced ? QsLogging::TraceLevel
                                                               : QsLogging::InfoLevel);
    configure(m_home, setup);
    QDir().mkpath(homeOf(true) + QLatin1String("files"));
    setGauge(4050000); // the sequences share it
    start();
}

void Rig::start()
{
    m_service = tessel::AutoRef<Service>(new Service);
    tessel::ServiceManager::auto_create().listen("TCPIP:localhost:3555");
    m_service->set_name("nap_server");
    m_service->publish();
    m_msp = std::make_unique<ScriptedMsp>();

    m_fixture = std::make_unique<ControllerFixture>(m_home);
    m_controller = m_fixture->controller.get();
    m_controller->init();
    if (!waitReally([this] { return !m_controller->getMSPFwVersion().isEmpty(); }))
        qFatal("The MSP's first answer did not come.");
    m_serviceThread.start();
    m_serviceSide.moveToThread(&m_serviceThread);

    m_watcher = std::make_unique<Watcher>(m_controller, m_home.path().toLocal8Bit());
    m_service->watcher = m_watcher.get();
    if (!m_reactions.empty())
        m_watcher->onSignal = [this](const std::string &signal) { answer(signal); };
    tellSleep = [this](useconds_t time) { m_watcher->add("sleeps " + std::to_string(time) + " us"); };

    // In the order of their creation, as TimerName has them.
    m_timers = m_controller->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
}

Rig::~Rig()
{
    // After a difference the controller is still there, and what it does now is of no interest.
    tellSleep = nullptr;
    m_service->watcher = nullptr;
    m_watcher.reset();
    m_fixture.reset();
    m_serviceThread.quit();
    m_serviceThread.wait();
}

void Rig::deliver()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int Rig::untilExpiry() const
{
    int ret = 60000; // the battery is looked at each second
    for (const QTimer *timer : m_timers) {
        if (timer->isActive())
            ret = std::min(ret, timer->remainingTime());
    }
    return ret;
}

State Rig::state() const
{
    const HalvarController &c = *m_controller;
    State ret;
    ret.acquisitionMode = c.acquisitionMode();
    ret.measureMode = c.measureMode();
    ret.branchMode = c.branchMode();
    ret.accuracyStage = c.accuracyStage();
    ret.currentAccuracy = m_watcher->nameOf(c.currentAccuracy());
    ret.nbMeasures = c.nbMeasures();
    ret.measureTime = c.measureTime();
    ret.udIndex = c.udIndex();
    ret.udIndexEdition = c.udIndexEdition();
    ret.udLocal = c.udLocal().toStdString();
    ret.light = c.light();
    ret.editionMode = c.editionMode;
    ret.fileName = c.fileName().toStdString();
    ret.localization = c.localization().toStdString();
    ret.effondrement = c.effondrement;
    ret.coulures = c.coulures;
    ret.humidite = c.humidite;
    ret.temperature = c.property("temperature").toInt();
    ret.voltage = c.property("voltage").toInt();
    ret.calibrationDate = c.property("lastCalibrationDate").toString().toStdString();
    ret.waitingForGo = c.property("waitingForGo").toBool();
    ret.ackErrorNb = c.ackErrorNb();
    ret.mspFirmware = m_controller->getMSPFwVersion().toStdString();
    ret.mspServer = m_controller->getMSPVersion().toStdString();
    ret.battery = c.battery->level();
    ret.otherHome = c.property("home").toString() == homeOf(true);
    ret.calibration = c.calibration->calibrationState();
    ret.pinAccepted = c.pin->accepted();
    ret.pinDisabled = c.pin->disabled();
    ret.pinDigits = c.pin->nbDigits();
    for (std::size_t i = 0; i < ret.pinFilled.size(); ++i)
        ret.pinFilled[i] = c.pin->checkDigit(int(i));
    ret.shock = c.error->shock();
    ret.anyShock = !c.error->lastShock().isEmpty();
    ret.ready = c.error->readyForAcquisition();
    ret.errorMessage = c.error->errorMessage().toStdString();
    for (int i = 0; i < TimerCount; ++i) {
        if (m_timers[i]->isActive())
            ret.timers[std::size_t(i)] = {true, m_timers[i]->remainingTime()};
    }
    const Measure *const accuracies[] = {c.accuracyLive, c.accuracyInit, c.accuracyInterrupt,
                                         c.accuracyFinal};
    for (std::size_t i = 0; i < ret.accuracies.size(); ++i)
        ret.accuracies[i] = stateOf(*accuracies[i], *m_watcher);
    ret.direct = stateOf(*c.directMeasures, *m_watcher);
    for (int row = 0; row < c.uds->rowCount(); ++row)
        ret.units.push_back(c.uds->at(row) ? stateOf(*c.uds->at(row), *m_watcher) : gone<UnitState>());
    return ret;
}

std::string Rig::finish()
{
    deliver();
    const QVector<MSPClient::MSPCommand> sent = m_watcher->commands();
    const bool arrived = waitReally([this, &sent] { return m_msp->commands().size() >= sent.size(); });
    if (!arrived || m_msp->commands() != sent)
        return "The MSP did not receive the commands that were sent, in their order.";

    fromService([this] { m_service->notifyStatus(com::halvar::nap::NOT_STARTED); });
    m_watcher->take();
    m_fixture.reset();
    const Effects last = m_watcher->take();
    QCoreApplication::sendPostedEvents(); // to nobody
    if (last != Effects{"service unregisterObserver"})
        return "Destruction:\n" + difference({"service unregisterObserver"}, last);
    m_service->unpublish();
    return {};
}

} // namespace orders
