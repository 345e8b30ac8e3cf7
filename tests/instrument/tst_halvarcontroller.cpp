// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Assembly and settings of the controller, without its links.
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "battery.h"
#include "calibration.h"
#include "controllerfixture.h"
#include "date.h"
#include "halvar-error.h"
#include "logrecorder.h"
#include "measurelistmodel.h"
#include "pin.h"
#include "signallog.h"
#include "ud.h"
#include "udlistmodel.h"

using Acquisition = AcquisitionModeEnumClass;
using Mode = MeasureModeEnumClass;
using Stage = AccuracyStageEnumClass;
using Statut = UDStatutEnumClass;

namespace {

/// The commands that the library gave to the system, oldest first.
QStringList systemCommands()
{
    QFile record(QString::fromLocal8Bit(qgetenv("HALVAR_INSTRUMENT_COMMANDS")));
    if (!record.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(record.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class TstHalvarController : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
                 "Run through simulator/instrument: this test would drive the machine's own GPIO and shell.");
    }

    void construction_setsTheInitialState()
    {
        TestHome home;
        ControllerFixture controller(home);
        QCOMPARE(controller->accuracyStage(), Stage::ACCURACY_INIT);
        QCOMPARE(controller->currentAccuracy(), controller->accuracyInit);
        QCOMPARE(controller->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(controller->branchMode(), BranchModeEnumClass::NONE);
        QCOMPARE(controller->measureMode(), Mode::TRIGGER);
        QCOMPARE(controller->nbMeasures(), 3);
        QCOMPARE(controller->measureTime(), 1);
        QCOMPARE(controller->property("home").toString(), home.path());
        QCOMPARE(controller->property("editionMode").toBool(), false);
        QCOMPARE(controller->udIndex(), -1);
        QCOMPARE(controller->udIndexEdition(), -1);
        QCOMPARE(controller->udLocal(), QString());
        QCOMPARE(controller->light(), false);
        QCOMPARE(controller->fileName(), QString());
        QCOMPARE(controller->localization(), QString());
        for (const char *observation : {"effondrement", "coulures", "humidite"})
            QCOMPARE(controller->property(observation).toBool(), false);
        QCOMPARE(controller->property("temperature").toInt(), 0);
        QCOMPARE(controller->property("voltage").toInt(), 0);
        QCOMPARE(controller->property("lastCalibrationDate").toString(), QString());
        QCOMPARE(controller->property("waitingForGo").toBool(), true);
        QCOMPARE(controller->ackErrorNb(), 1);
        QCOMPARE(controller->getLibControllerVersion(), QStringLiteral("v4.0.9"));
        QCOMPARE(controller->getMSPFwVersion(), QString());
        QCOMPARE(controller->getMSPVersion(), QString());
        const QObjectList children = controller->children();
        for (const QObject *companion : std::initializer_list<const QObject *>{
                 controller->pin, controller->battery, controller->date, controller->error,
                 controller->accuracyLive, controller->accuracyInit, controller->accuracyInterrupt,
                 controller->accuracyFinal, controller->calibration, controller->uds,
                 controller->directMeasures})
            QVERIFY(children.contains(const_cast<QObject *>(companion)));
    }

    void construction_logsInItsOrder()
    {
        TestHome home;
        LogRecorder log(QsLogging::InfoLevel);
        // cppcheck-suppress unreadVariable ; what its construction does is what is tested
        ControllerFixture controller(home);
        const QStringList lines = log.lines();
        const QStringList expected{
            QStringLiteral("INFO [Halvar Controller]: Halvar Controller data creation."),
            QStringLiteral("INFO [Halvar Controller]: Halvar Controller data configutation."),
            QStringLiteral("INFO [Halvar Controller]: Launching  napssid HV-0042 secret"),
            QStringLiteral(
                "INFO [Halvar Controller][Date]: Date End Source from config =  QDate(\"2099-12-31\")"),
            QStringLiteral("INFO [Halvar Controller][Date]: Warn before from config =  2"),
            QStringLiteral("INFO [Halvar Controller][Date]: Warning check!!"),
            QStringLiteral("INFO [Halvar Controller]: Time before measure =  10"),
            QStringLiteral("INFO [Halvar Controller]: Measure TimeMode changed to  1"),
            QStringLiteral("INFO [Halvar Controller]: Measure Mode changed to  TRIGGER"),
        };
        QStringList found;
        for (const QString &line : lines) {
            if (expected.contains(line))
                found.append(line);
        }
        QCOMPARE(found, expected);
    }

    void construction_startsTheAccessPoint()
    {
        TestHome home;
        home.setConfig(QStringLiteral("SN_Analyzer"), QStringLiteral("HV 1; halt"));
        home.setConfig(QStringLiteral("Wifi_Password"), QStringLiteral("$(halt)"));
        const int before = systemCommands().size();
        LogRecorder log;
        // cppcheck-suppress unreadVariable ; what its construction does is what is tested
        ControllerFixture controller(home);
        QCOMPARE(systemCommands().mid(before), QStringList{QStringLiteral("napssid 'HV 1; halt' '$(halt)'")});
        QVERIFY(log.contains(
            QStringLiteral("INFO [Halvar Controller]: Launching  napssid 'HV 1; halt' '$(halt)'")));
    }

    void endOfMeasure_choosesTheMeasureMode_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Mode::MeasureMode>("mode");
        QTest::newRow("defini") << QStringLiteral("defini") << Mode::DEFINED;
        QTest::newRow("gachette") << QStringLiteral("gachette") << Mode::TRIGGER;
        QTest::newRow("auto") << QStringLiteral("auto") << Mode::AUTO;
        QTest::newRow("capital letter") << QStringLiteral("Defini") << Mode::AUTO;
        QTest::newRow("empty") << QString() << Mode::AUTO;
    }
    void endOfMeasure_choosesTheMeasureMode()
    {
        QFETCH(QString, text);
        TestHome home;
        home.setConfig(QStringLiteral("Type_End_Measure"), text);
        ControllerFixture controller(home);
        QTEST(controller->measureMode(), "mode");
    }

    void missingConfiguration_isFatalAndQuitsThroughTheEventLoop()
    {
        TestHome home;
        Database database(nullptr);
        LogRecorder log;
        HalvarController controller(home.path(), nullptr, &database);
        QVERIFY(log.contains(
            QStringLiteral("FATAL [Halvar Controller]: The application needs a configuration file.")));
        QTimer limit;
        connect(&limit, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
        limit.start(10000);
        QCOMPARE(QCoreApplication::exec(), 0);

        for (int i = 0; i < 5; ++i)
            controller.pin->enterDigit(QStringLiteral("0"));
        QVERIFY(!controller.pin->checkSecret());
        controller.setLight(true);
        controller.setLight(false);
        controller.requestUpdate();
        QCOMPARE(controller.measureMode(), Mode::AUTO);
    }

    void everySlotWorksWithoutLinks()
    {
        TestHome home;
        ControllerFixture controller(home);
        controller->startAccuracyCheck();
        QCOMPARE(controller->acquisitionMode(), Acquisition::ACCURACY);
        controller->stopAccuracyCheck();
        QCOMPARE(controller->acquisitionMode(), Acquisition::NONE);
        controller->startCalibration();
        QCOMPARE(controller->acquisitionMode(), Acquisition::CALIBRATION);
        controller->stopCalibration();
        controller->requestUpdate();
        controller->ackError();
        controller->resetShock();
        for (Mode::MeasureMode mode : {Mode::AUTO, Mode::DEFINED, Mode::TRIGGER}) {
            controller->setMeasureMode(mode);
            QMetaObject::invokeMethod(controller.controller.get(), "startMeasure");
            QCOMPARE(controller->acquisitionMode(), Acquisition::MEASURE);
            controller->stopMeasure();
            controller->stopMeasureProperly();
            QMetaObject::invokeMethod(controller.controller.get(), "delayedStopMeasure");
            controller->nap_AcqStatus(com::halvar::nap::NOT_STARTED);
            QCOMPARE(controller->acquisitionMode(), Acquisition::NONE);
        }
    }

    void waitingForGo_endsOnce()
    {
        TestHome home;
        home.setConfig(QStringLiteral("Waiting_For_Go"), QStringLiteral("0"));
        ControllerFixture controller(home);
        QSignalSpy updated(controller.controller.get(), &HalvarController::waitingForGoUpdated);
        LogRecorder log;
        QVERIFY(updated.wait());
        QCOMPARE(controller->property("waitingForGo").toBool(), false);
        QCOMPARE(updated.count(), 1);
        QCOMPARE(log.lines(QStringLiteral("INFO")),
                 QStringList{QStringLiteral("[Halvar Controller]: Waiting for go done!")});
    }

    void timers_haveTheirIntervals()
    {
        TestHome home;
        home.setConfig(QStringLiteral("Waiting_For_Go"), QStringLiteral("90"));
        home.setConfig(QStringLiteral("Led_Light_Off"), QStringLiteral("45"));
        home.setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("350"));
        home.setConfig(QStringLiteral("Time_Measure"), QStringLiteral("2"));
        ControllerFixture controller(home);
        // In creation order: hold-off, light, information, before the shutter, to stop, measure.
        QList<int> intervals;
        QList<bool> singleShots;
        for (const QTimer *timer :
             controller->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly)) {
            intervals.append(timer->interval());
            singleShots.append(timer->isSingleShot());
        }
        QCOMPARE(intervals, (QList<int>{90000, 45000, 5000, 350, 2000, 2000}));
        QCOMPARE(singleShots, (QList<bool>{true, true, false, true, true, true}));
        const auto timers = controller->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(timers[0]->isActive());
        for (int i = 1; i < timers.size(); ++i)
            QVERIFY(!timers[i]->isActive());
    }

    void oversizedTimes_saturate()
    {
        TestHome home;
        home.setConfig(QStringLiteral("Waiting_For_Go"), QStringLiteral("2147483647"));
        home.setConfig(QStringLiteral("Led_Light_Off"), QStringLiteral("-5"));
        home.setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("-1"));
        home.setConfig(QStringLiteral("Time_Measure"), QStringLiteral("2147484"));
        ControllerFixture controller(home);
        const auto timers = controller->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(timers[0]->interval(), std::numeric_limits<int>::max());
        QCOMPARE(timers[1]->interval(), 0);
        QCOMPARE(timers[3]->interval(), 0);
        QCOMPARE(timers[5]->interval(), std::numeric_limits<int>::max());
        controller->setMeasureTime(-3);
        QCOMPARE(timers[5]->interval(), 0);
        QCOMPARE(controller->measureTime(), -3);
    }

    void measureMode_changesWithoutSignal()
    {
        TestHome home;
        ControllerFixture controller(home);
        QSignalSpy changed(controller.controller.get(), &HalvarController::measureModeChanged);
        LogRecorder log;
        controller->setMeasureMode(Mode::DEFINED);
        controller->setMeasureMode(Mode::DEFINED);
        QCOMPARE(controller->measureMode(), Mode::DEFINED);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("TRACE [Halvar Controller]: setMeasureMode()"),
                     QStringLiteral("INFO [Halvar Controller]: Measure Mode changed to  DEFINED"),
                     QStringLiteral("TRACE [Halvar Controller]: setMeasureMode()"),
                 }));
    }

    void measureSettings_areRefusedDuringAnAcquisition_data()
    {
        QTest::addColumn<Acquisition::AcquisitionMode>("mode");
        QTest::newRow("start") << Acquisition::START_MEASURE;
        QTest::newRow("measure") << Acquisition::MEASURE;
        QTest::newRow("accuracy") << Acquisition::ACCURACY;
        QTest::newRow("calibration") << Acquisition::CALIBRATION;
    }
    void measureSettings_areRefusedDuringAnAcquisition()
    {
        QFETCH(Acquisition::AcquisitionMode, mode);
        TestHome home;
        ControllerFixture controller(home);
        controller->setAcquisitionMode(mode);
        QSignalSpy changed(controller.controller.get(), &HalvarController::measureTimeChanged);
        LogRecorder log;
        controller->setMeasureMode(Mode::AUTO);
        controller->setMeasureTime(7);
        QCOMPARE(controller->measureMode(), Mode::TRIGGER);
        QCOMPARE(controller->measureTime(), 1);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(
            log.lines(),
            (QStringList{
                QStringLiteral("TRACE [Halvar Controller]: setMeasureMode()"),
                QStringLiteral("ERROR [Halvar Controller]: Cannot change Measure Mode during a measure."),
                QStringLiteral("TRACE [Halvar Controller]: setMeasureTime()"),
                QStringLiteral("ERROR [Halvar Controller]: Cannot change Measure Time during a measure."),
            }));
    }

    void measureTime_isAnnouncedBeforeItIsLogged()
    {
        TestHome home;
        ControllerFixture controller(home);
        QStringList order;
        LogRecorder log;
        connect(controller.controller.get(), &HalvarController::measureTimeChanged, this,
                [&] { order = log.lines(); });
        controller->setMeasureTime(7);
        QCOMPARE(order, QStringList{QStringLiteral("TRACE [Halvar Controller]: setMeasureTime()")});
        QCOMPARE(log.lines().last(),
                 QStringLiteral("INFO [Halvar Controller]: Measure TimeMode changed to  7"));
    }

    void measureTime_setAgainByItsOwnSignal_keepsTheTimerInStep()
    {
        TestHome home;
        ControllerFixture controller(home);
        HalvarController *const c = controller.controller.get();
        connect(c, &HalvarController::measureTimeChanged, this, [c] { c->setMeasureTime(5); });
        c->setMeasureTime(10);
        QCOMPARE(c->measureTime(), 5);
        QCOMPARE(c->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly)[5]->interval(), 5000);
    }

    void currentAccuracy_isNeverNull()
    {
        TestHome home;
        ControllerFixture controller(home);
        controller->setCurrentAccuracy(nullptr);
        QCOMPARE(controller->currentAccuracy(), controller->accuracyInit);
    }

    void plainSetters_emitOnlyOnChange()
    {
        TestHome home;
        ControllerFixture controller(home);
        HalvarController *const c = controller.controller.get();
        SignalLog signalLog;
        signalLog.watch(c, &HalvarController::nbMeasuresChanged, QStringLiteral("nb"));
        signalLog.watch(c, &HalvarController::fileNameChanged, QStringLiteral("file"));
        signalLog.watch(c, &HalvarController::localizationChanged, QStringLiteral("place"));
        signalLog.watch(c, &HalvarController::acquisitionModeChanged, QStringLiteral("acquisition"));
        signalLog.watch(c, &HalvarController::branchModeChanged, QStringLiteral("branch"));
        signalLog.watch(c, &HalvarController::currentAccuracyChanged, QStringLiteral("accuracy"));
        LogRecorder log;
        for (int i = 0; i < 2; ++i) {
            c->setNbMeasures(5);
            c->setFileName(QStringLiteral("a"));
            c->setLocalization(QStringLiteral("b"));
            c->setAcquisitionMode(Acquisition::MEASURE);
            c->setBranchMode(BranchModeEnumClass::BRANCH_DIRECT);
            c->setCurrentAccuracy(c->accuracyFinal);
        }
        QCOMPARE(signalLog.text(), QStringLiteral("nb file place acquisition branch accuracy"));
        QCOMPARE(log.lines(), QStringList());
    }

    void accuracyStage_movesTheCurrentAccuracyFirst()
    {
        TestHome home;
        ControllerFixture controller(home);
        HalvarController *const c = controller.controller.get();
        SignalLog signalLog;
        signalLog.watch(c, &HalvarController::currentAccuracyChanged, QStringLiteral("current"));
        signalLog.watch(c, &HalvarController::accuracyStageChanged, QStringLiteral("stage"));
        LogRecorder log;
        const QList<QPair<Stage::AccuracyStage, Measure *>> stages{
            {Stage::ACCURACY_LIVE, c->accuracyLive},
            {Stage::ACCURACY_INTERRUPT, c->accuracyInterrupt},
            {Stage::ACCURACY_FINAL, c->accuracyFinal},
            {Stage::ACCURACY_INIT, c->accuracyInit}};
        for (const auto &stage : stages) {
            signalLog.clear();
            c->setAccuracyStage(stage.first);
            QCOMPARE(c->currentAccuracy(), stage.second);
            QCOMPARE(signalLog.text(), QStringLiteral("current stage"));
        }
        QCOMPARE(log.lines(QStringLiteral("INFO")),
                 (QStringList{QStringLiteral("[Halvar Controller]: Setting ACCURACY LIVE"),
                              QStringLiteral("[Halvar Controller]: Setting ACCURACY INTERRUPT"),
                              QStringLiteral("[Halvar Controller]: Setting ACCURACY FINAL"),
                              QStringLiteral("[Halvar Controller]: Setting ACCURACY INIT")}));
        QCOMPARE(log.lines(QStringLiteral("DEBUG"))
                     .count(QStringLiteral("[Halvar Controller]: setAccuracyStage()")),
                 4);
    }

    void sameAccuracyStage_stillBringsItsResultBack()
    {
        TestHome home;
        ControllerFixture controller(home);
        HalvarController *const c = controller.controller.get();
        c->setCurrentAccuracy(c->accuracyLive);
        QSignalSpy changed(c, &HalvarController::accuracyStageChanged);
        c->setAccuracyStage(Stage::ACCURACY_INIT);
        QCOMPARE(c->currentAccuracy(), c->accuracyInit);
        QCOMPARE(changed.count(), 0);
    }

    void stageOutsideTheEnumeration_keepsTheResultAndReadsNoName()
    {
        TestHome home;
        ControllerFixture controller(home);
        LogRecorder log;
        controller->setAccuracyStage(Stage::NB_ACCURACYSTAGE);
        controller->setAccuracyStage(static_cast<Stage::AccuracyStage>(-1));
        controller->setMeasureMode(static_cast<Mode::MeasureMode>(900));
        QCOMPARE(controller->currentAccuracy(), controller->accuracyInit);
        QCOMPARE(log.lines(QStringLiteral("INFO")),
                 (QStringList{QStringLiteral("[Halvar Controller]: Setting ACCURACY"),
                              QStringLiteral("[Halvar Controller]: Setting ACCURACY"),
                              QStringLiteral("[Halvar Controller]: Measure Mode changed to")}));
    }

    void udIndex_logsWithoutPrefixAndSignals()
    {
        TestHome home;
        ControllerFixture controller(home);
        QSignalSpy changed(controller.controller.get(), &HalvarController::udIndexChanged);
        LogRecorder log;
        controller->setUdIndex(4);
        controller->setUdIndex(4);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(log.lines(), QStringList{QStringLiteral("DEBUG Index changed!!!")});
    }

    void udIndexEdition_followsTheStatutOfTheUnit()
    {
        TestHome home;
        ControllerFixture controller(home);
        HalvarController *const c = controller.controller.get();
        c->uds->add(-1);
        c->uds->add(-1);
        c->uds->at(1)->setStatut(Statut::NEGATIVE);
        SentCommands sent(c);
        SignalLog signalLog;
        signalLog.watch(c, &HalvarController::udIndexEditionChanged, QStringLiteral("index"));
        signalLog.watch(c, &HalvarController::msp_send_request, QStringLiteral("msp"));
        LogRecorder log;

        c->setUdIndexEdition(1); // has a result, measures were never enabled: nothing to forbid
        QCOMPARE(sent.commands, QList<int>());
        c->setUdIndexEdition(0);
        QCOMPARE(sent.commands, QList<int>{MSPClient::RUN_HARD});
        c->setUdIndexEdition(0);
        c->setUdIndexEdition(1);
        QCOMPARE(sent.commands, (QList<int>{MSPClient::RUN_HARD, MSPClient::ABORT}));
        QVERIFY(sent.allNull);
        QCOMPARE(signalLog.text(), QStringLiteral("index index msp index msp"));
        QCOMPARE(c->uds->measures(), c->uds->at(1)->measures());
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("DEBUG [Halvar Controller][CurrentIndex]:  1"),
                     QStringLiteral("DEBUG [Halvar Controller][UDListModel]: currentIndex =  1"),
                     QStringLiteral("DEBUG [Halvar Controller][Measures]: Disabled. Négative"),
                     QStringLiteral("DEBUG [Halvar Controller][CurrentIndex]:  0"),
                     QStringLiteral("DEBUG [Halvar Controller][UDListModel]: currentIndex =  0"),
                     QStringLiteral("DEBUG [Halvar Controller][Measures]: Enabled!"),
                     QStringLiteral("INFO [Halvar Controller]: Asking the MSP the HARD mode."),
                     QStringLiteral("DEBUG [Halvar Controller][CurrentIndex]:  1"),
                     QStringLiteral("DEBUG [Halvar Controller][UDListModel]: currentIndex =  1"),
                     QStringLiteral("DEBUG [Halvar Controller][Measures]: Disabled. Négative"),
                     QStringLiteral("INFO [Halvar Controller]: Asking the MSP the STANDBY mode."),
                 }));
    }

    void udLocal_isLoggedInQuotes()
    {
        TestHome home;
        ControllerFixture controller(home);
        QSignalSpy changed(controller.controller.get(), &HalvarController::udLocalChanged);
        LogRecorder log;
        controller->setUdLocal(QStringLiteral("Séjour"));
        controller->setUdLocal(QStringLiteral("Séjour"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("DEBUG [Halvar Controller][CurrentLocal]:  \"Séjour\"")});
    }

    void light_isSwitchedOffByItsTimer()
    {
        TestHome home;
        home.setConfig(QStringLiteral("Led_Light_Off"), QStringLiteral("1"));
        ControllerFixture controller(home);
        HalvarController *const c = controller.controller.get();
        QTimer *const timer = c->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly)[1];
        SentCommands sent(c);
        SignalLog signalLog;
        signalLog.watch(c, &HalvarController::lightChanged, QStringLiteral("light"));
        signalLog.watch(c, &HalvarController::msp_send_request, QStringLiteral("msp"));
        LogRecorder log;
        c->setLight(true);
        c->setLight(true);
        QVERIFY(timer->isActive());
        QTRY_VERIFY(!c->light());
        QCOMPARE(sent.commands, (QList<int>{MSPClient::LIGHT_ON, MSPClient::LIGHT_OFF}));
        QCOMPARE(signalLog.text(), QStringLiteral("light msp light msp"));
        QCOMPARE(
            log.lines(QStringLiteral("INFO")).filter(QStringLiteral("the light")),
            (QStringList{QStringLiteral("[Halvar Controller]: Asking the MSP to switch ON the light."),
                         QStringLiteral("[Halvar Controller]: Asking the MSP to switch OFF the light.")}));
        c->setLight(true);
        c->setLight(false);
        QVERIFY(!timer->isActive());
    }

    void light_staysOnWithoutATime_data()
    {
        QTest::addColumn<QString>("seconds");
        QTest::newRow("none") << QStringLiteral("0");
        QTest::newRow("negative counts as none") << QStringLiteral("-5");
    }
    void light_staysOnWithoutATime()
    {
        QFETCH(QString, seconds);
        TestHome home;
        home.setConfig(QStringLiteral("Led_Light_Off"), seconds);
        ControllerFixture controller(home);
        QTimer *const timer = controller->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly)[1];
        QCOMPARE(timer->interval(), 0);
        controller->setLight(true);
        QVERIFY(!timer->isActive());
    }

    void switchLight_leavesThePropertyAlone()
    {
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        controller->switchLight(true);
        QCOMPARE(controller->light(), false);
        QCOMPARE(sent.commands, QList<int>{MSPClient::LIGHT_ON});
    }

    void memberProperties_emitTheirCrossedSignals()
    {
        TestHome home;
        ControllerFixture controller(home);
        HalvarController *const c = controller.controller.get();
        QSignalSpy tension(c, &HalvarController::sendTension);
        QSignalSpy temperature(c, &HalvarController::sendTemperature);
        QSignalSpy calibrationDate(c, &HalvarController::sendLastCalibrationDate);
        c->setProperty("temperature", 24);
        c->setProperty("temperature", 24);
        QCOMPARE(tension.count(), 1);
        QCOMPARE(tension[0][0].toInt(), 24);
        QCOMPARE(temperature.count(), 0);
        c->setProperty("voltage", 40000);
        QCOMPARE(temperature.count(), 1);
        QCOMPARE(temperature[0][0].toInt(), 40000);
        QCOMPARE(tension.count(), 1);
        c->setProperty("lastCalibrationDate", QStringLiteral("01-02-2026"));
        QCOMPARE(calibrationDate.count(), 1);
        QCOMPARE(calibrationDate[0][0].toString(), QStringLiteral("01-02-2026"));
        QVERIFY(c->setProperty("home", QStringLiteral("/elsewhere/")));
        QVERIFY(c->setProperty("editionMode", true));
        QVERIFY(c->editionMode);
    }

    void wifiAndHalt_areSystemCommands()
    {
        TestHome home;
        ControllerFixture controller(home);
        const int before = systemCommands().size();
        LogRecorder log;
        controller->switchWifi(true);
        controller->switchWifi(false);
        controller->shutdown();
        QCOMPARE(systemCommands().mid(before),
                 (QStringList{QStringLiteral("napwifi start"), QStringLiteral("napwifi stop"),
                              QStringLiteral("halt")}));
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("INFO [Halvar Controller]: Asking the system to switch ON the Wifi."),
                     QStringLiteral("INFO [Halvar Controller]: Asking the system to switch OFF the Wifi."),
                 }));
    }
};

QTEST_GUILESS_MAIN(TstHalvarController)
#include "tst_halvarcontroller.moc"
