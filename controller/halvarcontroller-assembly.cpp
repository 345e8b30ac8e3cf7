// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// How the controller is put together, started and taken down.
#include "halvarcontroller.h"

#include <QCoreApplication>
#include <QTimer>

#include <QsLog.h>

#include "battery.h"
#include "buzzer.h"
#include "calibration.h"
#include "config.h"
#include "database.h"
#include "date.h"
#include "filereplace.h"
#include "halvar-error.h"
#include "infofile.h"
#include "measurelistmodel.h"
#include "napclient.h"
#include "pin.h"
#include "scaling.h"
#include "shellcommand.h"
#include "udlistmodel.h"

namespace {

constexpr int BatteryPeriod = 1000; // ms
constexpr int InfoPeriod = 5000; // ms
constexpr int TimeToStopMeasure = 2000; // ms

MeasureModeEnumClass::MeasureMode measureModeFromConfig(const QString &endOfMeasure)
{
    if (endOfMeasure == QLatin1String("defini"))
        return MeasureModeEnumClass::DEFINED;
    if (endOfMeasure == QLatin1String("gachette"))
        return MeasureModeEnumClass::TRIGGER;
    return MeasureModeEnumClass::AUTO;
}

} // namespace

HalvarController::HalvarController(QString const &home, Config const *config, Database *database,
                                   QObject *parent)
    : QObject(parent)
    , m_home(home)
    , m_config(config)
    , m_database(database)
{
    QLOG_TRACE() << "[Halvar Controller]: HalvarController()";
    // Without a configuration every value is read from an empty one, until the quit takes effect.
    const Config empty(nullptr);
    const Config &values = config ? *config : empty;

    m_waitingForGoTimer = newTimer(halvar::scaledInterval(values.getWaiting_For_Go(), 1000), true);
    connect(m_waitingForGoTimer, &QTimer::timeout, this, &HalvarController::waitingForGo);
    m_waitingForGoTimer->start();

    m_buzzer = new Buzzer(this);
    m_buzzer->setBeep_time(halvar::scaledInterval(values.Beep_Time(), 1000000));

    m_lightTimer = newTimer(halvar::scaledInterval(values.Led_Light_Off(), 1000), true);
    connect(m_lightTimer, &QTimer::timeout, this, &HalvarController::switchOffLight);

    QLOG_INFO() << "[Halvar Controller]: Halvar Controller data creation.";
    pin = new PIN(this);
    battery = new Battery(this);
    date = new Date(this);
    error = new Error(m_home, this);
    accuracyLive = new Measure(this);
    accuracyInit = new Measure(this);
    accuracyInterrupt = new Measure(this);
    accuracyFinal = new Measure(this);
    m_currentAccuracy = accuracyInit;
    directMeasures = new MeasureListModel(this);
    uds = new UDListModel(database ? database->m_LocalItemsListModel : nullptr, this);

    QLOG_INFO() << "[Halvar Controller]: Halvar Controller data configutation.";
    if (!config) {
        QLOG_FATAL() << "[Halvar Controller]: The application needs a configuration file.";
        // Queued: a quit before the event loop runs would be lost.
        if (QCoreApplication *application = QCoreApplication::instance())
            QMetaObject::invokeMethod(application, &QCoreApplication::quit, Qt::QueuedConnection);
    }

    calibration = new Calibration(this);
    calibration->setNbMaxCalibration(values.Nbr_Energy_Adj_Test());

    const QString accessPoint = QLatin1String("napssid ") + halvar::shellWord(values.getSN_Analyzer())
        + QLatin1Char(' ') + halvar::shellWord(values.getWifiPassword());
    // Letter for letter what is run: quotes and escapes of the stream would show another command.
    QLOG_INFO().noquote() << "[Halvar Controller]: Launching " << accessPoint;
    halvar::runShellCommand(accessPoint);

    // An unset code would be 00000, which anybody guesses: without a configuration nothing is accepted.
    if (config)
        pin->setSecret(values.Password());
    QLOG_INFO() << "[Halvar Controller][Date]: Date End Source from config = " << values.DateEndSource();
    QLOG_INFO() << "[Halvar Controller][Date]: Warn before from config = "
                << values.Remaining_Time_Before_EndSource();
    date->setEndDate(values.DateEndSource());
    date->setNbWarningMonths(values.Remaining_Time_Before_EndSource());

    // Not started: the service reports by itself, and the interface asks when it opens the service page.
    m_infoTimer = newTimer(InfoPeriod, false);
    connect(m_infoTimer, &QTimer::timeout, this, &HalvarController::requestUpdate);

    m_timeBeforeOpenShutter = values.Time_Before_Open_Shutter();
    QLOG_INFO() << "[Halvar Controller]: Time before measure = " << m_timeBeforeOpenShutter;
    m_timeBeforeOpenShutterTimer = newTimer(halvar::scaledInterval(m_timeBeforeOpenShutter, 1), true);
    connect(m_timeBeforeOpenShutterTimer, &QTimer::timeout, this, &HalvarController::startMeasure);

    m_timeToStopMeasureTimer = newTimer(TimeToStopMeasure, true);
    connect(m_timeToStopMeasureTimer, &QTimer::timeout, this, &HalvarController::delayedStopMeasure);

    m_measureTimer = newTimer(halvar::scaledInterval(m_measureTime, 1000), true);
    setMeasureTime(values.Time_Measure());
    setNbMeasures(values.Nbr_Measure());
    setMeasureMode(measureModeFromConfig(values.Type_End_Measure()));
    connect(m_measureTimer, &QTimer::timeout, this, &HalvarController::stopMeasureProperly);
}

HalvarController::~HalvarController()
{
    workerThread.quit();
    workerThread.wait();
    if (m_napServer)
        m_napServer.unregisterObserver(m_observerDescription);
    // A service that has not heard of it finds nobody, instead of an observer without a controller.
    if (m_napObserver) {
        m_napObserver->unpublish();
        // Who answers the service just now may be the last to hold the observer. It must not end in that
        // thread while this object, ending, still looks at it as the sender of its signals.
        disconnect(m_nap_client, nullptr, this, nullptr);
    }
}

void HalvarController::init()
{
    initNAP();
    initMSP();
    battery->init(BatteryPeriod);
    m_buzzer->beep();
    emit msp_info_request();
}

QTimer *HalvarController::newTimer(int interval, bool singleShot)
{
    auto *timer = new QTimer(this);
    timer->setInterval(interval);
    timer->setSingleShot(singleShot);
    return timer;
}

void HalvarController::writeInfoFile(const Config *config)
{
    const halvar::InstrumentVersions versions{config ? config->getSN_Analyzer() : QString(),
                                              getLibControllerVersion(), getMSPFwVersion(), getMSPVersion()};
    // A device without the directory has no service tool that reads the file: no message.
    halvar::replaceFile(QStringLiteral("/data/lambrik/info.txt"), halvar::infoFileContent(versions), nullptr,
                        QString(), halvar::Readers::Everybody);
}
