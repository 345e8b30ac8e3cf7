// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Accuracy checks and calibrations.
#include <QSignalSpy>

#include "bench.h"
#include "calibration.h"
#include "measure.h"

using Mode = AcquisitionModeEnumClass;
using Decision = DetectionDecisionEnumClass;

class TstChecks : public QObject
{
    Q_OBJECT
private slots:
    void accuracy_endsWithItsResultAndWithoutASignal_data();
    void accuracy_endsWithItsResultAndWithoutASignal();
    void accuracyStopped_isAborted();
    void accuracyError_isAborted();
    void accuracyRefused_whileTheServiceIsBusy();
    void calibration_endsWithItsDateAndWithoutASignal();
    void calibrationStopped_isAborted();
    void calibrationError_countsUpToTheLastAttempt();
};

void TstChecks::accuracy_endsWithItsResultAndWithoutASignal_data()
{
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<int>("decision");
    QTest::newRow("measured") << QStringLiteral("measured") << int(Decision::ACCURACY_OK);
    QTest::newRow("ok") << QStringLiteral("ok") << int(Decision::ACCURACY_OK);
    QTest::newRow("error") << QStringLiteral("error") << int(Decision::ACCURACY_ERROR);
    QTest::newRow("uncalibrated") << QStringLiteral("uncalibrated") << int(Decision::UNCALIBRATED);
}

void TstChecks::accuracy_endsWithItsResultAndWithoutASignal()
{
    QFETCH(QString, outcome);
    QFETCH(int, decision);
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.set("accuracy", "outcome", outcome));
    LogRecorder log;
    bench->startAccuracyCheck();
    QCOMPARE(bench->acquisitionMode(), Mode::ACCURACY);
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench.modes, QList<int>({Mode::ACCURACY}));
    QCOMPARE(int(bench->currentAccuracy()->detectionDecision()), decision);
    QCOMPARE(bench->currentAccuracy(), bench->accuracyInit);
    QCOMPARE(bench->currentAccuracy()->idNAP(), 1);
    QCOMPARE(bench->currentAccuracy()->concentration(),
             bench.nap("last").toObject().value(QLatin1String("value")).toDouble());
    QVERIFY(log.contains(QStringLiteral("INFO [Halvar Controller][Accuracy]: FINISHED")));
    QCOMPARE(bench.calls("abort"), 0);
}

void TstChecks::accuracyStopped_isAborted()
{
    Bench bench(1);
    QVERIFY(bench.start());
    bench->startAccuracyCheck();
    QCOMPARE(bench.nap("acquisition").toString(), QStringLiteral("accuracy"));
    bench->stopAccuracyCheck();
    QCOMPARE(bench.modes, QList<int>({Mode::ACCURACY, Mode::NONE}));
    QCOMPARE(bench.nap("acquisition").toString(), QStringLiteral("none"));
    QCOMPARE(bench.calls("abort"), 1);
}

void TstChecks::accuracyError_isAborted()
{
    Bench bench(1);
    QVERIFY(bench.start());
    bench->startAccuracyCheck();
    QVERIFY(bench.set("napError", "error", QStringLiteral("TIMEOUT_ERROR")));
    QTRY_COMPARE(bench.modes, QList<int>({Mode::ACCURACY, Mode::NONE}));
    QCOMPARE(bench.calls("abort"), 1);
    QCOMPARE(bench.nap("acquisition").toString(), QStringLiteral("none"));
}

void TstChecks::accuracyRefused_whileTheServiceIsBusy()
{
    Bench bench(1);
    QVERIFY(bench.start());
    bench->startCalibration();
    bench->startAccuracyCheck();
    QCOMPARE(bench.calls("startAccuracyCheck"), 1);
    QCOMPARE(bench.nap("acquisition").toString(), QStringLiteral("calibration"));
    bench->stopAccuracyCheck();
    QTRY_COMPARE(bench.nap("acquisition").toString(), QStringLiteral("none"));
}

void TstChecks::calibration_endsWithItsDateAndWithoutASignal()
{
    Bench bench;
    QVERIFY(bench.start());
    QCOMPARE(bench->property("lastCalibrationDate").toString(), QStringLiteral("12-01-2026"));
    QSignalSpy state(bench->calibration, &Calibration::calibrationStateChanged);
    bench->startCalibration();
    QCOMPARE(bench->acquisitionMode(), Mode::CALIBRATION);
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench.modes, QList<int>({Mode::CALIBRATION}));
    QVERIFY(!state.isEmpty());
    bench->requestUpdate();
    // The scenario's day.
    QCOMPARE(bench->property("lastCalibrationDate").toString(), QStringLiteral("15-06-2026"));
}

void TstChecks::calibrationStopped_isAborted()
{
    Bench bench(1);
    QVERIFY(bench.start());
    bench->startCalibration();
    bench->stopCalibration();
    QCOMPARE(bench.modes, QList<int>({Mode::CALIBRATION, Mode::NONE}));
    QCOMPARE(bench.calls("abort"), 1);
    QCOMPARE(bench.nap("acquisition").toString(), QStringLiteral("none"));
}

void TstChecks::calibrationError_countsUpToTheLastAttempt()
{
    Bench bench;
    QVERIFY(bench.start({QStringLiteral("--scenario"), QStringLiteral("calibration-failing")}));
    QCOMPARE(bench->property("lastCalibrationDate").toString(), QStringLiteral("01-01-1970"));
    for (int attempt = 1; attempt <= 3; ++attempt) {
        bench.modes.clear();
        bench->startCalibration();
        QTRY_COMPARE(bench.modes, QList<int>({Mode::CALIBRATION, Mode::NONE}));
        QTRY_COMPARE(bench.nap("acquisition").toString(), QStringLiteral("none"));
        QCOMPARE(bench.calls("abort"), attempt);
    }
    QCOMPARE(bench->calibration->calibrationState(), CalibrationEnumClass::TOO_MANY_ERRORS);
}

QTEST_GUILESS_MAIN(TstChecks)
#include "tst_checks.moc"
