// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// How measures run: the calls made to the analysis service, the state, where results go and how a shot ends.
#include <QSignalSpy>
#include <QTest>

#include "measurelistmodel.h"
#include "servicefixture.h"
#include "signallog.h"

namespace nap = com::halvar::nap;
using Acquisition = AcquisitionModeEnumClass;
using Branch = BranchModeEnumClass;
using Decision = DetectionDecisionEnumClass;
using Mode = MeasureModeEnumClass;
using Statut = UDStatutEnumClass;

class TstHalvarControllerSequencing : public QObject, protected ServiceFixture
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
        c->nap_DetectionResult(startOfShot);
        for (int i = 1; i <= 5; ++i)
            c->nap_DetectionResult(result(i, i, Decision::NEGATIVE));
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->directMeasures->first()->concentration(), 5.0);
    }

    void endOfDirectShot_withoutMeasures_warnsAndGoesOn()
    {
        c->setBranchMode(Branch::BRANCH_DIRECT);
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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

        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
        c->nap_DetectionResult(startOfShot);
        delete unit->measures()->last();
        QVERIFY(!unit->measures()->last());
        LogRecorder log;
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(log.lines(QStringLiteral("WARN")).size(), 1);
        QCOMPARE(unit->statut(), Statut::RAW);

        c->setBranchMode(Branch::BRANCH_DIRECT);
        QVERIFY(startMeasure());
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
        QVERIFY(startMeasure());
        c->nap_DetectionResult(startOfShot);
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->directMeasures->first()->idNAP(), 11);
        m_service->nap().setStatus(QStringLiteral("getLastMeasure"), -5);
        m_service->nap().setLastMeasureId(12);
        QVERIFY(startMeasure());
        c->nap_DetectionResult(startOfShot);
        c->nap_AcqStatus(nap::NOT_STARTED);
        QCOMPARE(c->directMeasures->first()->idNAP(), 11);
    }

    void measureStatus_inProgressAndError()
    {
        QVERIFY(startMeasure());
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
};

QTEST_GUILESS_MAIN(TstHalvarControllerSequencing)
#include "tst_halvarcontroller_sequencing.moc"
