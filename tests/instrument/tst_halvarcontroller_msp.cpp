// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the controller asks of the safety microcontroller, and what it does with its replies and events.
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "controllerfixture.h"
#include "halvar-error.h"
#include "logrecorder.h"
#include "measurelistmodel.h"
#include "signallog.h"
#include "udlistmodel.h"

namespace nap = com::halvar::nap;
using Acquisition = AcquisitionModeEnumClass;
using Mode = MeasureModeEnumClass;

namespace {

MSPInfo infoInState(MSPInfo::MSPState state)
{
    MSPInfo info;
    info.fwVersion = QStringLiteral("1.7");
    info.MSPVersion = QStringLiteral("2.3.1");
    info.setState(state);
    return info;
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The timers in creation order: hold-off, light, information, before the shutter, to stop, measure.
QTimer *timerOf(const ControllerFixture &controller, int index)
{
    return controller->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly)[index];
}
QTimer *beforeShutterTimer(const ControllerFixture &controller)
{
    return timerOf(controller, 3);
}
QTimer *timeToStopTimer(const ControllerFixture &controller)
{
    return timerOf(controller, 4);
}

/// A measure that runs and has stored \p results results in the direct list.
void runMeasure(const ControllerFixture &controller, int results)
{
    controller->setBranchMode(BranchModeEnumClass::BRANCH_DIRECT);
    QVERIFY(QMetaObject::invokeMethod(controller.controller.get(), "startMeasure"));
    for (int i = 0; i < results; ++i)
        controller->nap_DetectionResult(nap::DetectionResult());
}

} // namespace

class TstHalvarControllerMsp : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"), "Run through simulator/instrument.");
    }

    void eachRequest_logsOneLineAndSendsItsCommand_data()
    {
        QTest::addColumn<QByteArray>("operation");
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("command");
        QTest::newRow("reset shock") << QByteArray("resetShock")
                                     << QStringLiteral("[Halvar Controller]: Asking the MSP a Reset Shock.")
                                     << int(MSPClient::RESET_SHOCK);
        QTest::newRow("ack error") << QByteArray("ackError")
                                   << QStringLiteral("[Halvar Controller]: Ack MSP Error.")
                                   << int(MSPClient::ACK_ERROR);
    }
    void eachRequest_logsOneLineAndSendsItsCommand()
    {
        QFETCH(QByteArray, operation);
        QFETCH(QString, line);
        QFETCH(int, command);
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        LogRecorder log;
        QVERIFY(QMetaObject::invokeMethod(controller.controller.get(), operation.constData()));
        QCOMPARE(log.lines(), QStringList{QLatin1String("INFO ") + line});
        QCOMPARE(sent.commands, QList<int>{command});
        QVERIFY(sent.allNull);
    }

    void resetShock_takesTheShockBackBeforeItTellsTheMsp()
    {
        TestHome home;
        ControllerFixture controller(home);
        controller->error->setShock(true);
        SignalLog signalLog;
        signalLog.watch(controller->error, &Error::shockSignal, QStringLiteral("shock"));
        signalLog.watch(controller.controller.get(), &HalvarController::msp_send_request,
                        QStringLiteral("msp"));
        controller->resetShock();
        QCOMPARE(signalLog.text(), QStringLiteral("shock msp"));
        QVERIFY(!controller->error->shock());
    }

    void enabling_asksForHardModeAndStandbyByAbort()
    {
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        LogRecorder log;
        controller->setEnableMeasure(false);
        controller->setEnableMeasure(true);
        controller->setEnableMeasure(true);
        controller->setEnableMeasure(false);
        QCOMPARE(sent.commands, (QList<int>{MSPClient::RUN_HARD, MSPClient::ABORT}));
        QCOMPARE(log.lines(),
                 (QStringList{QStringLiteral("INFO [Halvar Controller]: Asking the MSP the HARD mode."),
                              QStringLiteral("INFO [Halvar Controller]: Asking the MSP the STANDBY mode.")}));
    }

    void success_isOnlyLogged()
    {
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        LogRecorder log;
        controller->msp_success(true);
        controller->msp_success(false);
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("TRACE [Halvar Controller]: msp_success()"),
                     QStringLiteral("DEBUG [Halvar Controller]: * MSP Command:  \"OK\""),
                     QStringLiteral("TRACE [Halvar Controller]: msp_success()"),
                     QStringLiteral("DEBUG [Halvar Controller]: * MSP Command:  \"KO\""),
                 }));
        QCOMPARE(sent.commands, QList<int>());
    }

    void info_inStandby_isLoggedAndFillsTheVersions()
    {
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        LogRecorder log;
        controller->msp_info_reply(infoInState(MSPInfo::STANDBY));
        QCOMPARE(controller->getMSPFwVersion(), QStringLiteral("1.7"));
        QCOMPARE(controller->getMSPVersion(), QStringLiteral("2.3.1"));
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("TRACE [Halvar Controller]: msp_info_reply()"),
                     QStringLiteral("INFO [Halvar Controller]: * MSP:  \"Standby\""),
                 }));
        QCOMPARE(sent.commands, QList<int>());
    }

    void info_inHardMode_sendsExactlyOneAbort()
    {
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        LogRecorder log;
        controller->msp_info_reply(infoInState(MSPInfo::READY_HARD));
        QCOMPARE(sent.commands, QList<int>{MSPClient::ABORT});
        QVERIFY(log.contains(QStringLiteral("INFO [Halvar Controller]: * MSP:  \"Hard\"")));
    }

    void info_inAnyOtherState_isFatalInTheLogOnly_data()
    {
        QTest::addColumn<int>("state");
        for (int state : {int(MSPInfo::SHUTTER_OPEN_HARD), int(MSPInfo::ERROR), int(MSPInfo::READY_SOFT),
                          int(MSPInfo::SHUTTER_OPEN_SOFT), 0, 99})
            QTest::newRow(qPrintable(QString::number(state))) << state;
    }
    void info_inAnyOtherState_isFatalInTheLogOnly()
    {
        QFETCH(int, state);
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        const MSPInfo info = infoInState(static_cast<MSPInfo::MSPState>(state));
        QString streamed;
        QDebug(&streamed) << info;
        LogRecorder log;
        controller->msp_info_reply(info);
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("TRACE [Halvar Controller]: msp_info_reply()"),
                     QStringLiteral("INFO ") + streamed.trimmed(),
                     QStringLiteral("FATAL [Halvar Controller]: * MSP:  \"KO\""),
                 }));
        QCOMPARE(sent.commands, QList<int>());
    }

    void info_withShock_recordsOneEachTime()
    {
        TestHome home;
        ControllerFixture controller(home);
        MSPInfo info = infoInState(MSPInfo::STANDBY);
        info.setShock(true);
        QSignalSpy last(controller->error, &Error::lastShockSignal);
        controller->msp_info_reply(info);
        controller->msp_info_reply(info);
        QCOMPARE(last.count(), 2);
        QVERIFY(controller->error->shock());
        info.setShock(false);
        controller->msp_info_reply(info);
        QVERIFY(!controller->error->shock());
        QCOMPARE(last.count(), 2);
    }

    void info_writesTheInformationFileAnew()
    {
        const QString path = QStringLiteral("/data/lambrik/info.txt");
        TestHome home;
        ControllerFixture controller(home);
        controller->msp_info_reply(infoInState(MSPInfo::STANDBY));
        QCOMPARE(fileContent(path),
                 QByteArray("Zoltv1\n"
                            "Serial Number\t\tHV-0042\n"
                            "Controller version\tv4.0.9\n"
                            "MSP Firmware version\t1.7\n"
                            "MSP server version\t2.3.1\n"
                            "Marten version\t\tv1.4.0\n"));
        MSPInfo info;
        info.setState(MSPInfo::STANDBY);
        controller->msp_info_reply(info);
        QCOMPARE(fileContent(path).count('\n'), 6);
        QVERIFY(fileContent(path).contains("MSP server version\t\n"));
    }

    void info_withoutItsDirectory_isSilent()
    {
        TestHome home;
        ControllerFixture controller(home);
        QVERIFY(QFile::rename(QStringLiteral("/data/lambrik"), QStringLiteral("/data/elsewhere")));
        LogRecorder log;
        controller->msp_info_reply(infoInState(MSPInfo::STANDBY));
        QVERIFY(QFile::rename(QStringLiteral("/data/elsewhere"), QStringLiteral("/data/lambrik")));
        QCOMPARE(log.lines(QStringLiteral("ERROR")), QStringList());
        QCOMPARE(log.lines(QStringLiteral("WARN")), QStringList());
    }

    void info_withShutterFault_isShownAndSounded()
    {
        TestHome home;
        home.setConfig(QStringLiteral("Beep_Time"), QStringLiteral("1"));
        ControllerFixture controller(home);
        MSPInfo info = infoInState(MSPInfo::STANDBY);
        info.setShutter(true);
        controller->msp_info_reply(info);
        QCOMPARE(controller->error->errorMessage(), QStringLiteral("Anomalie obturateur - Erreur S2"));
        // The beep time is 0 by now: the beeper is left on.
        QCOMPARE(fileContent(QStringLiteral("/sys/class/gpio/gpio79/value")).left(1), QByteArray("1"));
    }

    void shutterOpened_startsTheDelay()
    {
        TestHome home;
        home.setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("60000"));
        ControllerFixture controller(home);
        runMeasure(controller, 3);
        LogRecorder log;
        controller->msp_event(MSPClient::SHUT_OPENED);
        QCOMPARE(controller->acquisitionMode(), Acquisition::START_MEASURE);
        QVERIFY(beforeShutterTimer(controller)->isActive());
        controller->msp_event(MSPClient::TRIG_OFF);
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("DEBUG [Halvar Controller]: msp_event()"),
                     QStringLiteral("INFO [Halvar Controller]: MSP Shutter Open"),
                     QStringLiteral("DEBUG [Halvar Controller]: msp_event()"),
                     QStringLiteral("INFO [Halvar Controller]: MSP Trigger Off"),
                     // the count began anew with the shutter
                     QStringLiteral("INFO [Halvar Controller]: NapMeasure:  0"),
                 }));
        QVERIFY(timeToStopTimer(controller)->isActive());
        QCOMPARE(controller->acquisitionMode(), Acquisition::START_MEASURE);
    }

    void triggerReleased_withOneResult_isDelayed()
    {
        TestHome home;
        ControllerFixture controller(home);
        runMeasure(controller, 1);
        controller->setFileName(QStringLiteral("d"));
        controller->msp_event(MSPClient::TRIG_OFF);
        QVERIFY(timeToStopTimer(controller)->isActive());
        QVERIFY(!QFile::exists(home.file(QStringLiteral("files/d.xml"))));
    }

    void triggerReleased_withTwoResults_savesAtOnce_data()
    {
        QTest::addColumn<Mode::MeasureMode>("mode");
        QTest::addColumn<bool>("aborts");
        QTest::newRow("trigger") << Mode::TRIGGER << false;
        QTest::newRow("auto") << Mode::AUTO << true;
        QTest::newRow("defined") << Mode::DEFINED << true;
    }
    void triggerReleased_withTwoResults_savesAtOnce()
    {
        QFETCH(Mode::MeasureMode, mode);
        QFETCH(bool, aborts);
        TestHome home;
        ControllerFixture controller(home);
        controller->setMeasureMode(mode);
        runMeasure(controller, 2);
        controller->setFileName(QStringLiteral("d"));
        LogRecorder log;
        controller->msp_event(MSPClient::TRIG_OFF);
        QVERIFY(!timeToStopTimer(controller)->isActive());
        QVERIFY(QFile::exists(home.file(QStringLiteral("files/d.xml"))));
        QCOMPARE(log.contains(QStringLiteral("INFO [TODO][Halvar Controller]: Remove last measure!")),
                 aborts);
        QCOMPARE(controller->acquisitionMode(), Acquisition::MEASURE);
    }

    void triggerReleased_withTwoResultsOutsideAMeasure_cancelsTheStart()
    {
        TestHome home;
        home.setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("60000"));
        ControllerFixture controller(home);
        runMeasure(controller, 2);
        controller->nap_AcqStatus(nap::NOT_STARTED);
        beforeShutterTimer(controller)->start();
        controller->setFileName(QStringLiteral("d"));
        LogRecorder log;
        controller->msp_event(MSPClient::TRIG_OFF);
        QVERIFY(!beforeShutterTimer(controller)->isActive());
        QVERIFY(log.contains(QStringLiteral("INFO [Halvar Controller]: STOP before START")));
        QVERIFY(!QFile::exists(home.file(QStringLiteral("files/d.xml"))));
    }

    void delayedStop_savesAfterItsTime_data() { triggerReleased_withTwoResults_savesAtOnce_data(); }
    void delayedStop_savesAfterItsTime()
    {
        QFETCH(Mode::MeasureMode, mode);
        QFETCH(bool, aborts);
        TestHome home;
        ControllerFixture controller(home);
        controller->setMeasureMode(mode);
        runMeasure(controller, 0);
        controller->setFileName(QStringLiteral("d"));
        controller->msp_event(MSPClient::TRIG_OFF);
        timeToStopTimer(controller)->setInterval(1);
        LogRecorder log;
        QTRY_VERIFY(QFile::exists(home.file(QStringLiteral("files/d.xml"))));
        QStringList expected{QStringLiteral("[Halvar Controller]: delayedStopMeasure...")};
        if (aborts)
            expected.append(QStringLiteral("[TODO][Halvar Controller]: Remove last measure!"));
        QCOMPARE(log.lines(QStringLiteral("INFO")).mid(0, expected.size()), expected);
    }

    void systemError_isLoggedAndShown_data()
    {
        QTest::addColumn<short>("code");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("shock");
        const auto row = [](short code, const char *line, const char *message, bool shock) {
            QTest::newRow(line) << code << QString::fromUtf8(line) << QString::fromUtf8(message) << shock;
        };
        row(0, "Choc détecté durant la veille", "", true);
        row(1, "Choc détecté en cours de fonctionnement", "", true);
        row(2, "Anomalie obturateur", "Anomalie obturateur - Erreur S2", false);
        row(3, "Problème de gestion du détecteur de choc", "Anomalie capteur de chocs - Erreur S3", false);
        row(4, "Problème de gestion du DAC", "Anomalie DAC - Erreur S4", false);
        row(5, "Problème haute tension", "Problème de Haute Tension - Erreur S5", false);
    }
    void systemError_isLoggedAndShown()
    {
        QFETCH(short, code);
        QFETCH(QString, line);
        QFETCH(QString, message);
        QFETCH(bool, shock);
        TestHome home;
        ControllerFixture controller(home);
        LogRecorder log;
        controller->msp_event(MSPClient::SYS_ERR, code);
        QCOMPARE(log.lines(),
                 (QStringList{QStringLiteral("DEBUG [Halvar Controller]: msp_event()"),
                              QLatin1String("INFO [Halvar Controller]: MSP error - ") + line}));
        QCOMPARE(controller->error->errorMessage(), message);
        QCOMPARE(controller->error->shock(), shock);
        QCOMPARE(controller->error->lastShock().isEmpty(), !shock);
    }

    void otherEvents_areOnlyTraced_data()
    {
        QTest::addColumn<int>("event");
        QTest::addColumn<short>("code");
        QTest::newRow("system error 6") << int(MSPClient::SYS_ERR) << short(6);
        QTest::newRow("system error -1") << int(MSPClient::SYS_ERR) << short(-1);
        QTest::newRow("shutter closed") << int(MSPClient::SHUT_CLOSED) << short(0);
        QTest::newRow("probe off") << int(MSPClient::PROBE_OFF) << short(0);
        QTest::newRow("probe on") << int(MSPClient::PROBE_ON) << short(0);
        QTest::newRow("unknown event") << 42 << short(2);
    }
    void otherEvents_areOnlyTraced()
    {
        QFETCH(int, event);
        QFETCH(short, code);
        TestHome home;
        ControllerFixture controller(home);
        SentCommands sent(controller.controller.get());
        LogRecorder log;
        controller->msp_event(static_cast<MSPClient::MSPEvent>(event), code);
        QCOMPARE(log.lines(), QStringList{QStringLiteral("DEBUG [Halvar Controller]: msp_event()")});
        QCOMPARE(controller->error->errorMessage(), QString());
        QCOMPARE(controller->error->shock(), false);
        QCOMPARE(controller->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(sent.commands, QList<int>());
    }
};

QTEST_GUILESS_MAIN(TstHalvarControllerMsp)
#include "tst_halvarcontroller_msp.moc"
