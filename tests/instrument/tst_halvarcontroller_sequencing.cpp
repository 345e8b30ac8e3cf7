// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// How measures, accuracy checks and calibrations run: the calls made to a recording analysis service, the
// state, the results. The service stands in this process but is reached over TCP, as on the instrument; its
// notifications are handed to the controller's slots directly, so that each test decides their order.
#include <QFile>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include "calibration.h"
#include "controllerfixture.h"
#include "halvar-error.h"
#include "logrecorder.h"
#include "measurelistmodel.h"
#include "recordingnap.h"
#include "signallog.h"
#include "ud.h"
#include "udlistmodel.h"

namespace nap = com::halvar::nap;
using Acquisition = AcquisitionModeEnumClass;
using Branch = BranchModeEnumClass;
using Decision = DetectionDecisionEnumClass;
using Mode = MeasureModeEnumClass;
using Statut = UDStatutEnumClass;

namespace {

nap::DetectionResult result(double value, double sigma, int decision)
{
    nap::DetectionResult detection;
    detection.set_value(value);
    detection.set_sigma(sigma);
    detection.set_decision(static_cast<nap::DetectionDecision>(decision));
    return detection;
}

const nap::DetectionResult startOfShot;

QStringList infoLines(const LogRecorder &log)
{
    return log.lines(QStringLiteral("INFO"));
}

QString line(const char *text)
{
    return QLatin1String("[Halvar Controller]") + QString::fromUtf8(text);
}

} // namespace

class TstHalvarControllerSequencing : public QObject
{
    Q_OBJECT

private:
    // One service for all tests: its port is fixed. Each test starts with an empty record.
    std::unique_ptr<RecordingNap::Published> m_service;
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<ControllerFixture> m_fixture;
    HalvarController *c = nullptr;

    QStringList calls() const { return m_service->nap().calls(); }
    QTimer *timerAt(int index) const
    {
        return c->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly)[index];
    }
    void startMeasure() { QVERIFY(QMetaObject::invokeMethod(c, "startMeasure")); }
    UD *addUnit()
    {
        c->uds->add(-1);
        return c->uds->last();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"), "Run through simulator/instrument.");
        m_service = std::make_unique<RecordingNap::Published>();
        QVERIFY(m_service->isListening());
    }

    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_home->setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("60000"));
        m_fixture = std::make_unique<ControllerFixture>(*m_home);
        c = m_fixture->controller.get();
        c->init();
        m_service->nap().reset();
    }

    void cleanup()
    {
        m_fixture.reset();
        m_home.reset();
    }

    void startMeasure_asksForAutoStopOnlyInModeAuto_data()
    {
        QTest::addColumn<Mode::MeasureMode>("mode");
        QTest::addColumn<bool>("autoStop");
        QTest::addColumn<bool>("timed");
        QTest::newRow("trigger") << Mode::TRIGGER << false << false;
        QTest::newRow("auto") << Mode::AUTO << true << false;
        QTest::newRow("defined") << Mode::DEFINED << false << true;
    }
    void startMeasure_asksForAutoStopOnlyInModeAuto()
    {
        QFETCH(Mode::MeasureMode, mode);
        QFETCH(bool, autoStop);
        QFETCH(bool, timed);
        c->setMeasureMode(mode);
        QSignalSpy changed(c, &HalvarController::acquisitionModeChanged);
        LogRecorder log;
        startMeasure();
        QCOMPARE(calls(), QStringList{QStringLiteral("startMeasure")});
        QCOMPARE(m_service->nap().lastAutoStop(), autoStop);
        QCOMPARE(m_service->nap().lastCustomDataClass(),
                 QStringLiteral("com::halvar::nap::MeasureCustomData"));
        QCOMPARE(timerAt(5)->isActive(), timed);
        QCOMPARE(c->acquisitionMode(), Acquisition::MEASURE);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(infoLines(log), QStringList{line(": Starting MEASURE")});
    }

    void definedMeasure_isStoppedProperlyByItsTimer()
    {
        c->setMeasureMode(Mode::DEFINED);
        startMeasure();
        timerAt(5)->start(1);
        QTRY_COMPARE(calls(),
                     (QStringList{QStringLiteral("startMeasure"), QStringLiteral("requestStopMeasure")}));
        QCOMPARE(c->acquisitionMode(), Acquisition::MEASURE);
    }

    void stops_doNothingOutsideTheirState()
    {
        LogRecorder log;
        c->stopMeasure();
        c->stopMeasureProperly();
        c->stopAccuracyCheck();
        c->stopCalibration();
        QCOMPARE(calls(), QStringList());
        QCOMPARE(log.lines(), QStringList());
        c->setAcquisitionMode(Acquisition::START_MEASURE);
        c->stopMeasure();
        c->stopMeasureProperly();
        QCOMPARE(calls(), QStringList());
    }

    void stopMeasure_abortsAndKeepsTheMode()
    {
        startMeasure();
        LogRecorder log;
        c->stopMeasure();
        QCOMPARE(calls().last(), QStringLiteral("abort"));
        QCOMPARE(c->acquisitionMode(), Acquisition::MEASURE);
        QCOMPARE(infoLines(log),
                 QStringList{QStringLiteral("[TODO][Halvar Controller]: Remove last measure!")});
    }

    void triggerReleased_stopsByMode_data()
    {
        QTest::addColumn<Mode::MeasureMode>("mode");
        QTest::addColumn<QString>("call");
        QTest::newRow("trigger") << Mode::TRIGGER << QStringLiteral("requestStopMeasure");
        QTest::newRow("auto") << Mode::AUTO << QStringLiteral("abort");
        QTest::newRow("defined") << Mode::DEFINED << QStringLiteral("abort");
    }
    void triggerReleased_stopsByMode()
    {
        QFETCH(Mode::MeasureMode, mode);
        QFETCH(QString, call);
        c->setMeasureMode(mode);
        c->setBranchMode(Branch::BRANCH_DIRECT);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        c->nap_DetectionResult(result(1, 0.1, Decision::NEGATIVE));
        c->msp_event(MSPClient::TRIG_OFF);
        QCOMPARE(calls().mid(1), QStringList{call});
    }

    void delayedStop_stopsByMode_data() { triggerReleased_stopsByMode_data(); }
    void delayedStop_stopsByMode()
    {
        QFETCH(Mode::MeasureMode, mode);
        QFETCH(QString, call);
        c->setMeasureMode(mode);
        startMeasure();
        c->msp_event(MSPClient::TRIG_OFF);
        QCOMPARE(timerAt(4)->interval(), 2000);
        timerAt(4)->setInterval(1);
        QTRY_COMPARE(calls().mid(1), QStringList{call});
    }

    void shutterOpened_leadsToTheMeasure()
    {
        timerAt(3)->setInterval(1);
        SignalLog signalLog;
        signalLog.watch(c, &HalvarController::acquisitionModeChanged, QStringLiteral("mode"));
        c->msp_event(MSPClient::SHUT_OPENED);
        QCOMPARE(c->acquisitionMode(), Acquisition::START_MEASURE);
        QTRY_COMPARE(c->acquisitionMode(), Acquisition::MEASURE);
        QCOMPARE(calls(), QStringList{QStringLiteral("startMeasure")});
        QCOMPARE(signalLog.text(), QStringLiteral("mode mode"));
    }

    void directResults_goToTheFrontAndAreCounted()
    {
        c->setBranchMode(Branch::BRANCH_DIRECT);
        startMeasure();
        LogRecorder log;
        c->nap_DetectionResult(startOfShot);
        c->nap_DetectionResult(result(1.5, 0.2, Decision::NOT_DETERMINED));
        c->nap_DetectionResult(result(1.6, 0.1, Decision::POSITIVE));
        c->nap_DetectionResult(startOfShot);
        QCOMPARE(c->directMeasures->size(), 2);
        QCOMPARE(c->directMeasures->first()->concentration(), 0.0);
        QCOMPARE(c->directMeasures->last()->concentration(), 1.6);
        QCOMPARE(c->directMeasures->last()->detectionDecision(), Decision::POSITIVE);
        QCOMPARE(log.lines(QStringLiteral("TRACE")).count(line(": nap_DetectionResult()")), 4);
        c->msp_event(MSPClient::TRIG_OFF);
        QVERIFY(infoLines(log).contains(line(": NapMeasure:  4")));
    }

    void indexedResults_goToTheBackOfTheUnitInEdition()
    {
        addUnit();
        UD *const unit = addUnit();
        c->setUdIndexEdition(1);
        c->setBranchMode(Branch::BRANCH_INDEXED);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        c->nap_DetectionResult(result(2.5, 0.3, Decision::POSITIVE));
        c->nap_DetectionResult(startOfShot);
        QCOMPARE(unit->measures()->size(), 2);
        QCOMPARE(unit->measures()->first()->concentration(), 2.5);
        QCOMPARE(c->uds->first()->measures()->size(), 0);
        QCOMPARE(c->directMeasures->size(), 0);
    }

    void results_withoutAPlaceAreNotCounted_data()
    {
        QTest::addColumn<Branch::BranchMode>("branch");
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("warns");
        QTest::newRow("no branch") << Branch::NONE << 0 << false;
        QTest::newRow("no unit in edition") << Branch::BRANCH_INDEXED << -1 << false;
        QTest::newRow("unit beyond the list") << Branch::BRANCH_INDEXED << 7 << true;
        QTest::newRow("unit before the list") << Branch::BRANCH_INDEXED << -2 << true;
    }
    void results_withoutAPlaceAreNotCounted()
    {
        QFETCH(Branch::BranchMode, branch);
        QFETCH(int, index);
        QFETCH(bool, warns);
        addUnit();
        c->setBranchMode(branch);
        c->setUdIndexEdition(index);
        startMeasure();
        LogRecorder log;
        for (int i = 0; i < 3; ++i)
            c->nap_DetectionResult(result(1, 1, 0));
        QCOMPARE(c->uds->first()->measures()->size(), 0);
        QCOMPARE(log.lines(QStringLiteral("WARN")).size(), warns ? 3 : 0);
        c->msp_event(MSPClient::TRIG_OFF);
        QVERIFY(infoLines(log).contains(line(": NapMeasure:  0")));
    }

    void results_outsideAnAcquisitionAreDropped_data()
    {
        QTest::addColumn<Acquisition::AcquisitionMode>("mode");
        QTest::newRow("none") << Acquisition::NONE;
        QTest::newRow("start") << Acquisition::START_MEASURE;
        QTest::newRow("calibration") << Acquisition::CALIBRATION;
    }
    void results_outsideAnAcquisitionAreDropped()
    {
        QFETCH(Acquisition::AcquisitionMode, mode);
        c->setBranchMode(Branch::BRANCH_DIRECT);
        c->setAcquisitionMode(mode);
        c->nap_DetectionResult(result(1, 1, 0));
        QCOMPARE(c->directMeasures->size(), 0);
        QCOMPARE(c->currentAccuracy()->concentration(), 0.0);
    }

    void endOfDirectShot_inModeTrigger_isSettledThreeBack()
    {
        m_service->nap().setLastMeasureId(42);
        c->setBranchMode(Branch::BRANCH_DIRECT);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        for (int i = 1; i <= 5; ++i)
            c->nap_DetectionResult(result(i, i / 10.0, i == 2 ? Decision::POSITIVE : Decision::NEGATIVE));
        SentCommands sent(c);
        SignalLog signalLog;
        signalLog.watch(c, &HalvarController::msp_send_request, QStringLiteral("msp"));
        signalLog.watch(c->directMeasures->first(), &Measure::idNAPChanged, QStringLiteral("id"));
        signalLog.watch(c->directMeasures->first(), &Measure::concentrationChanged,
                        QStringLiteral("settled"));
        signalLog.watch(c, &HalvarController::acquisitionModeChanged, QStringLiteral("mode"));
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(calls().mid(1), QStringList{QStringLiteral("getLastMeasure")});
        QCOMPARE(sent.commands, QList<int>{MSPClient::MEAS_DONE});
        QCOMPARE(c->directMeasures->first()->idNAP(), 42);
        QCOMPARE(c->directMeasures->first()->concentration(), 2.0);
        QCOMPARE(c->directMeasures->first()->detectionDecision(), Decision::POSITIVE);
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(signalLog.text(), QStringLiteral("msp id settled mode"));
        const QStringList lines = infoLines(log);
        QCOMPARE(lines.mid(0, 3),
                 (QStringList{line(": Measure..."), line(": STARTED"), line(": Send MSP measure done.")}));
        QCOMPARE(lines.last(), line(": FINISHED"));
    }

    void endOfDirectShot_inOtherModes_isNotSettled()
    {
        c->setMeasureMode(Mode::AUTO);
        c->setBranchMode(Branch::BRANCH_DIRECT);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        for (int i = 1; i <= 5; ++i)
            c->nap_DetectionResult(result(i, i, Decision::NEGATIVE));
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->directMeasures->first()->concentration(), 5.0);
    }

    void endOfDirectShot_withoutMeasures_warnsAndGoesOn()
    {
        c->setBranchMode(Branch::BRANCH_DIRECT);
        startMeasure();
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(log.lines(QStringLiteral("WARN")).size(), 1);
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(infoLines(log).last(), line(": FINISHED"));
    }

    void endOfIndexedShot_derivesTheStatutBeforeItSettles()
    {
        m_service->nap().setLastMeasureId(7);
        c->setNbMeasures(1);
        UD *const unit = addUnit();
        c->setUdIndexEdition(0);
        c->setBranchMode(Branch::BRANCH_INDEXED);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        // Negative until the last result: settled three back the measure is negative, the unit positive.
        for (int decision : {1, 1, 1, 0})
            c->nap_DetectionResult(result(decision + 1, 0.1, decision));
        SentCommands sent(c);
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(unit->statut(), Statut::POSITIVE);
        QCOMPARE(unit->detectionDecision(), Decision::POSITIVE);
        QCOMPARE(unit->measures()->last()->detectionDecision(), Decision::NEGATIVE);
        QCOMPARE(unit->measures()->last()->idNAP(), 7);
        // The unit has a result now: standby.
        QCOMPARE(sent.commands, (QList<int>{MSPClient::MEAS_DONE, MSPClient::ABORT}));
        const QStringList statutLines = log.lines(QStringLiteral("DEBUG")).filter(QStringLiteral("[Statut]"));
        QCOMPARE(statutLines,
                 (QStringList{line("[Statut]: Setting statut for index  0 ."),
                              line("[Statut]: The actual statut is  ."), line("[Statut]: Positive .")}));
    }

    void endOfIndexedShot_onUnitWithResult_needsOneMore()
    {
        c->setNbMeasures(2);
        UD *const unit = addUnit();
        c->setUdIndexEdition(0);
        unit->setStatut(Statut::POSITIVE);
        c->setBranchMode(Branch::BRANCH_INDEXED);
        startMeasure();
        // Two measures, both negative: enough for a new unit, one short for a unit that has its result.
        for (int i = 0; i < 2; ++i) {
            c->nap_DetectionResult(startOfShot);
            c->nap_DetectionResult(result(0.1, 0.1, Decision::NEGATIVE));
        }
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(unit->statut(), Statut::POSITIVE);
        QVERIFY(log.lines(QStringLiteral("DEBUG"))
                    .contains(line("[Statut]: The statut was already set to Positive .")));
        QVERIFY(log.lines(QStringLiteral("DEBUG"))
                    .contains(QStringLiteral("[UD][updateStatut]: Received with nbMeasures !  3")));

        startMeasure();
        c->nap_DetectionResult(startOfShot);
        c->nap_DetectionResult(result(0.1, 0.1, Decision::NEGATIVE));
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(unit->statut(), Statut::NEGATIVE);
    }

    void endOfIndexedShot_withoutANumberOfMeasures_leavesTheStatut()
    {
        c->setNbMeasures(0);
        UD *const unit = addUnit();
        c->setUdIndexEdition(0);
        c->setBranchMode(Branch::BRANCH_INDEXED);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        c->nap_DetectionResult(result(9, 0.1, Decision::POSITIVE));
        SentCommands sent(c);
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(unit->statut(), Statut::RAW);
        QCOMPARE(sent.commands, QList<int>{MSPClient::MEAS_DONE}); // still enabled
    }

    void endOfIndexedShot_withoutItsUnit_warnsOnceAndGoesOn()
    {
        c->setBranchMode(Branch::BRANCH_INDEXED);
        startMeasure();
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(log.lines(QStringLiteral("WARN")).size(), 1);
        QCOMPARE(calls().last(), QStringLiteral("getLastMeasure"));
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
    }

    void endOfIndexedShot_withoutMeasures_warnsOnceAndGoesOn()
    {
        addUnit();
        c->setUdIndexEdition(0);
        c->setBranchMode(Branch::BRANCH_INDEXED);
        startMeasure();
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(log.lines(QStringLiteral("WARN")).size(), 1);
        QCOMPARE(c->acquisitionMode(), Acquisition::NONE);
    }

    void measuresDeletedByOthers_leaveRowsThatAreSkipped()
    {
        UD *const unit = addUnit();
        c->setUdIndexEdition(0);
        c->setBranchMode(Branch::BRANCH_INDEXED);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        delete unit->measures()->last();
        QVERIFY(!unit->measures()->last());
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(log.lines(QStringLiteral("WARN")).size(), 1);
        QCOMPARE(unit->statut(), Statut::RAW);

        c->setBranchMode(Branch::BRANCH_DIRECT);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        delete c->directMeasures->first();
        c->nap_DetectionResult(result(1, 0.1, Decision::POSITIVE)); // finds no measure: a new one begins
        QCOMPARE(c->directMeasures->size(), 2);
        QVERIFY(c->directMeasures->first());
    }

    void failedGetLastMeasure_keepsTheSummaryBefore()
    {
        c->setBranchMode(Branch::BRANCH_DIRECT);
        m_service->nap().setLastMeasureId(11);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->directMeasures->first()->idNAP(), 11);
        m_service->nap().setStatus(QStringLiteral("getLastMeasure"), -5);
        m_service->nap().setLastMeasureId(12);
        startMeasure();
        c->nap_DetectionResult(startOfShot);
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->directMeasures->first()->idNAP(), 11);
    }

    void measureStatus_inProgressAndError()
    {
        startMeasure();
        LogRecorder log(QsLogging::InfoLevel);
        c->nap_AcqStatus(nap::IN_PROGRESS);
        c->nap_AcqStatus(nap::ERROR);
        c->nap_AcqStatus(static_cast<nap::AcqStatus>(3));
        QCOMPARE(calls().mid(1), QStringList{QStringLiteral("abort")});
        QCOMPARE(c->acquisitionMode(), Acquisition::MEASURE);
        QCOMPARE(infoLines(log),
                 (QStringList{line(": Measure..."), line(": STARTED"), line(": Measure..."),
                              QStringLiteral("[TODO][Halvar Controller]: Remove last measure!"),
                              line(": ERROR"), line(": Measure...")}));
    }

    void status_outsideAnAcquisition_isOnlyLogged_data()
    {
        QTest::addColumn<Acquisition::AcquisitionMode>("mode");
        QTest::newRow("none") << Acquisition::NONE;
        QTest::newRow("start") << Acquisition::START_MEASURE;
    }
    void status_outsideAnAcquisition_isOnlyLogged()
    {
        QFETCH(Acquisition::AcquisitionMode, mode);
        c->setAcquisitionMode(mode);
        SentCommands sent(c);
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(log.lines(),
                 (QStringList{QStringLiteral("TRACE [Halvar Controller]: nap_AcqStatus()"),
                              QStringLiteral("DEBUG [Halvar Controller]: AcquisitionMode::None")}));
        QCOMPARE(c->acquisitionMode(), mode);
        QCOMPARE(sent.commands, QList<int>());
    }

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
        startMeasure();
        m_service->nap().notifyDetection(startOfShot);
        m_service->nap().notifyDetection(result(1.25, 0.05, Decision::POSITIVE));
        m_service->nap().notifyStatus(nap::NOT_STARTED);
        QTRY_COMPARE(c->acquisitionMode(), Acquisition::NONE);
        QCOMPARE(c->directMeasures->size(), 1);
        QCOMPARE(c->directMeasures->first()->concentration(), 1.25);
    }
};

QTEST_GUILESS_MAIN(TstHalvarControllerSequencing)
#include "tst_halvarcontroller_sequencing.moc"
