// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Accuracy checks and calibrations, what the service reports besides, and the observer it reports to.
#include <QSignalSpy>
#include <QTest>

#include "calibration.h"
#include "halvar-error.h"
#include "measurelistmodel.h"
#include "servicefixture.h"

namespace nap = com::halvar::nap;
using Acquisition = AcquisitionModeEnumClass;
using Branch = BranchModeEnumClass;
using Decision = DetectionDecisionEnumClass;

class TstHalvarControllerChecks : public QObject, protected ServiceFixture
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"), "Run through simulator/instrument.");
        QVERIFY(publishService());
    }
    void init() { startController(); }
    void cleanup() { endController(); }

    void accuracyCheck_resetsItsResultAndTakesTheServices()
    {
        m_service->nap().setLastMeasureId(5);
        c->currentAccuracy()->setConcentration(3.0);
        QSignalSpy changed(c, &HalvarController::acquisitionModeChanged);
        LogRecorder log(QsLogging::InfoLevel);
        c->startAccuracyCheck();
        QCOMPARE(c->acquisitionMode(), Acquisition::ACCURACY);
        QCOMPARE(c->currentAccuracy()->concentration(), 0.0);
        QCOMPARE(calls(), QStringList{QStringLiteral("startAccuracyCheck")});
        QCOMPARE(infoLines(log),
                 (QStringList{line(": Starting ACCURACY INIT"), line("[Measure]: New concentration sent.")}));
        c->nap_AcqStatus(nap::IN_PROGRESS);
        c->nap_DetectionResult(startOfShot);
        c->nap_DetectionResult(result(1.04, 0.02, Decision::ACCURACY_OK));
        QCOMPARE(changed.count(), 1);
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(changed.count(), 1); // by design without its signal
        QCOMPARE(calls().mid(1), QStringList{QStringLiteral("getLastMeasure")});
        QCOMPARE(c->accuracyInit->idNAP(), 5);
        QCOMPARE(c->accuracyInit->detectionDecision(), Decision::ACCURACY_OK);
        QCOMPARE(c->accuracyInit->concentration(), 1.04);
        QVERIFY(infoLines(log).contains(line(": AccuracyCheck...")));
        QVERIFY(infoLines(log).contains(line("[Accuracy]: STARTED")));
        QCOMPARE(infoLines(log).last(), line("[Accuracy]: FINISHED"));
    }

    void accuracyCheck_isAbortedByStopAndByError()
    {
        QSignalSpy changed(c, &HalvarController::acquisitionModeChanged);
        c->startAccuracyCheck();
        LogRecorder log(QsLogging::InfoLevel);
        c->stopAccuracyCheck();
        QCOMPARE(infoLines(log), QStringList{line(": Stopping ACCURACY INIT")});
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(changed.count(), 2);
        c->startAccuracyCheck();
        log.clear();
        c->nap_AcqStatus(nap::ERROR);
        QCOMPARE(infoLines(log),
                 (QStringList{line(": AccuracyCheck..."), line(": Stopping ACCURACY INIT"),
                              line("[Accuracy]: ERROR")}));
        QCOMPARE(changed.count(), 4);
        QCOMPARE(calls(),
                 (QStringList{QStringLiteral("startAccuracyCheck"), QStringLiteral("abort"),
                              QStringLiteral("startAccuracyCheck"), QStringLiteral("abort")}));
    }

    void calibration_followsTheStatus()
    {
        QSignalSpy changed(c, &HalvarController::acquisitionModeChanged);
        LogRecorder log(QsLogging::InfoLevel);
        c->startCalibration();
        QCOMPARE(calls(), QStringList{QStringLiteral("startCalibration")});
        QCOMPARE(infoLines(log), QStringList{line(": Starting CALIBRATION")});
        c->nap_AcqStatus(nap::IN_PROGRESS);
        QCOMPARE(c->calibration->calibrationState(), CalibrationEnumClass::IN_PROGRESS);
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->calibration->calibrationState(), CalibrationEnumClass::NOT_STARTED);
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(changed.count(), 1); // by design without its signal
        QCOMPARE(infoLines(log).mid(1),
                 (QStringList{line(": Calibration..."), line("[Calibration]: STARTED"),
                              line(": Calibration..."), line("[Calibration]: FINISHED")}));
    }

    void calibration_isAbortedByStopAndByError()
    {
        c->startCalibration();
        c->stopCalibration();
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
        c->startCalibration();
        c->nap_AcqStatus(nap::IN_PROGRESS);
        LogRecorder log(QsLogging::InfoLevel);
        QSignalSpy changed(c, &HalvarController::acquisitionModeChanged);
        c->nap_AcqStatus(nap::ERROR);
        QCOMPARE(c->calibration->calibrationState(), CalibrationEnumClass::ERROR);
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(infoLines(log).last(), line("[Calibration]: ERROR"));
        QCOMPARE(calls(),
                 (QStringList{QStringLiteral("startCalibration"), QStringLiteral("abort"),
                              QStringLiteral("startCalibration"), QStringLiteral("abort")}));
    }

    void serviceError_isLoggedAndShown_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("notReady");
        QTest::newRow("0") << 0 << "UNKNOWN_ERROR"
                           << "Erreur C0" << false;
        QTest::newRow("1") << 1 << "INVALID_TEMPERATURE" << QString() << true;
        QTest::newRow("2") << 2 << "INVALID_ACCELERATING_VOLTAGE" << QString() << true;
        QTest::newRow("3") << 3 << "DPP_ERROR"
                           << "DPP - Erreur C3" << false;
        QTest::newRow("4") << 4 << "DATA_MANAGER_ERROR" << QStringLiteral("Gestion des données - Erreur C4")
                           << false;
        QTest::newRow("5") << 5 << "TIMEOUT_ERROR"
                           << "Erreur C5" << false;
        QTest::newRow("6") << 6 << QString() << QString() << false;
    }
    void serviceError_isLoggedAndShown()
    {
        QFETCH(int, code);
        QFETCH(QString, name);
        QFETCH(QString, message);
        QFETCH(bool, notReady);
        c->error->setReadyForAcquisition(true);
        LogRecorder log;
        c->nap_AcqError(static_cast<nap::AcqError>(code));
        QStringList expected;
        if (!name.isEmpty())
            expected.append(line(": NAP error - ") + name);
        if (notReady)
            expected.append(line("[Error]: readyForAcquisition is  false"));
        QCOMPARE(infoLines(log), expected);
        QCOMPARE(log.lines(QStringLiteral("TRACE")), QStringList{line(": nap_AcqError()")});
        QCOMPARE(c->error->errorMessage(), message);
        QCOMPARE(c->error->readyForAcquisition(), !notReady);
    }

    void serviceError_namesTheRunningAcquisition_data()
    {
        QTest::addColumn<Acquisition::AcquisitionMode>("mode");
        QTest::addColumn<QString>("during");
        QTest::newRow("accuracy") << Acquisition::ACCURACY << "AccuracyCheck";
        QTest::newRow("calibration") << Acquisition::CALIBRATION << "Calibration";
        QTest::newRow("measure") << Acquisition::MEASURE << "Measure";
    }
    void serviceError_namesTheRunningAcquisition()
    {
        QFETCH(Acquisition::AcquisitionMode, mode);
        QFETCH(QString, during);
        c->setAcquisitionMode(mode);
        LogRecorder log;
        c->nap_AcqError(nap::TIMEOUT_ERROR);
        QCOMPARE(infoLines(log).first(), line(": ACQ ERROR received during ") + during);
        QCOMPARE(c->acquisitionMode(), mode);
        QCOMPARE(calls(), QStringList());
    }

    void conditions_signalEachUnderItsOwnName()
    {
        nap::AcqConditions conditions;
        conditions.set_temperature(-3.9);
        conditions.set_acceleratingVoltage(40123.7);
        conditions.set_readyForAcquisition(true);
        QSignalSpy temperature(c, &HalvarController::sendTemperature);
        QSignalSpy tension(c, &HalvarController::sendTension);
        LogRecorder log;
        c->nap_AcqConditions(conditions);
        c->nap_AcqConditions(conditions);
        QCOMPARE(temperature.count(), 1);
        QCOMPARE(temperature[0][0].toInt(), -3);
        QCOMPARE(tension.count(), 1);
        QCOMPARE(tension[0][0].toInt(), 40123);
        QCOMPARE(c->property("temperature").toInt(), -3);
        QCOMPARE(c->property("voltage").toInt(), 40123);
        QVERIFY(c->error->readyForAcquisition());
        QCOMPARE(log.lines().mid(0, 4),
                 (QStringList{QStringLiteral("DEBUG [Halvar Controller]: nap_AcqConditions()"),
                              QStringLiteral("INFO [Halvar Controller][Error]: readyForAcquisition is  true"),
                              QStringLiteral("DEBUG [Halvar Controller]:  -3"),
                              QStringLiteral("DEBUG [Halvar Controller]:  40123")}));
        c->nap_AcqConditions(nap::AcqConditions());
        QVERIFY(!c->error->readyForAcquisition());
        QCOMPARE(temperature.last()[0].toInt(), 0);
    }

    void calibrationDate_isSignalledWhenItChanges()
    {
        QSignalSpy sent(c, &HalvarController::sendLastCalibrationDate);
        LogRecorder log;
        c->nap_CalibrationDate(tessel::TimeDate(0));
        QCOMPARE(sent.count(), 0); // the date of a service without one is known since the start
        c->nap_CalibrationDate(tessel::TimeDate(2026, 2, 3));
        c->nap_CalibrationDate(tessel::TimeDate(2026, 2, 3));
        QCOMPARE(sent.count(), 1);
        QCOMPARE(sent[0][0].toString(), QStringLiteral("03-02-2026"));
        QCOMPARE(infoLines(log).last(), line(": new calibration date  \"03-02-2026\""));
        QCOMPARE(infoLines(log).size(), 3);
    }

    void requestUpdate_asksForTheDateThenForTheStatus()
    {
        QSignalSpy sent(c, &HalvarController::sendLastCalibrationDate);
        m_service->nap().setCalibrationDate(tessel::TimeDate(2025, 12, 31));
        c->requestUpdate();
        c->requestUpdate();
        QCOMPARE(sent.count(), 1);
        QCOMPARE(c->property("lastCalibrationDate").toString(), QStringLiteral("31-12-2025"));
        m_service->nap().setStatus(QStringLiteral("getLastCalibrationDate"), -1);
        m_service->nap().setCalibrationDate(tessel::TimeDate(2024, 1, 1));
        c->requestUpdate();
        QCOMPARE(sent.count(), 1);
        QCOMPARE(c->property("lastCalibrationDate").toString(), QStringLiteral("31-12-2025"));
        QStringList expected;
        for (int i = 0; i < 3; ++i)
            expected << QStringLiteral("getLastCalibrationDate") << QStringLiteral("sendLastStatus");
        QCOMPARE(calls(), expected);
    }

    void observer_isGoneWithItsController()
    {
        const QString description = QStringLiteral("nap_server@TCPIP:localhost:3556");
        QCOMPARE(m_service->nap().observers(), QStringList{description});
        const tessel::AString observer(QLatin1String("com.halvar.nap.NotificationObserver:") + description);
        QVERIFY(tessel::Service::bind(observer));
        m_fixture.reset();
        QCOMPARE(m_service->nap().observers(), QStringList());
        QVERIFY(!tessel::Service::bind(observer));
        QCOMPARE(calls(), QStringList{QStringLiteral("unregisterObserver")});
    }

    void notifications_reachTheControllerFromTheService()
    {
        c->setBranchMode(Branch::BRANCH_DIRECT);
        QVERIFY(startMeasure());
        m_service->nap().notifyDetection(startOfShot);
        m_service->nap().notifyDetection(result(1.25, 0.05, Decision::POSITIVE));
        m_service->nap().notifyStatus(nap::NOT_STARTED);
        QTRY_COMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(c->directMeasures->size(), 1);
        QCOMPARE(c->directMeasures->first()->concentration(), 1.25);
    }
};

QTEST_GUILESS_MAIN(TstHalvarControllerChecks)
#include "tst_halvarcontroller_checks.moc"
