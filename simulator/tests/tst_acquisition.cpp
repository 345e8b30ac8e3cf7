// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include "acquisition.h"

namespace nap = com::halvar::nap;
using namespace simulator;

namespace {

/// An acquisition that runs as fast as it can, and what it notified: "S0 C" a status with its conditions, "S2
/// E3" with an error, "D" a detection without a decision, "D1" one with, "P" a spectrum.
class Bench : public QObject
{
public:
    Bench()
    {
        acquisition.settings.speed = 500;
        acquisition.settings.today = QDate(2026, 1, 12);
        acquisition.settings.source.date = QDate(2026, 1, 12);
        connect(&acquisition, &Acquisition::notify, this, [this](const nap::NotificationMessage &message) {
            messages.append(message);
            const QByteArray id = message.get_id().toUtf8();
            if (id == "NAP_STATUS") {
                QString text = QStringLiteral("S%1").arg(message.get_status());
                if (message.is_set_error())
                    text += QStringLiteral("E%1").arg(message.get_error());
                if (!message.is_set_conditions())
                    text += QStringLiteral(" without conditions");
                course.append(text);
            } else if (id == "NAP_DETECTION") {
                const nap::DetectionResult result = message.get_detection();
                course.append(result.is_set_decision() ? QStringLiteral("D%1").arg(result.get_decision())
                                                       : QStringLiteral("D"));
            } else {
                course.append(QStringLiteral("P"));
            }
        });
    }
    int detections() const { return course.filter(QStringLiteral("D")).size(); }
    QString text() const { return course.join(QLatin1Char(' ')); }
    bool idle() const { return acquisition.kind() == Acquisition::None; }
    nap::DetectionResult lastDetection() const
    {
        for (int i = messages.size() - 1; i >= 0; --i) {
            if (messages.at(i).is_set_detection())
                return messages.at(i).get_detection();
        }
        return nap::DetectionResult();
    }

    Acquisition acquisition;
    QStringList course;
    QVector<nap::NotificationMessage> messages;
};

} // namespace

class TstAcquisition : public QObject
{
    Q_OBJECT
private slots:
    void shot_opensWithoutDecisionAndEndsWithNotStarted();
    void autoStop_endsWithTheFirstDecision();
    void autoStop_endsUndecidedAtTheTimeLimit();
    void requestStop_endsWithAResultAndANumber();
    void requestStop_beforeTheFirstPeriod_isInsufficient();
    void abort_endsWithoutResult();
    void busy_refusesEveryStart();
    void idle_refusesStopsAndLastMeasure();
    void lastMeasure_carriesWhatWasAsked();
    void seed_repeatsTheValuesOfAWholeSeries();
    void failure_waitsForAbort();
    void unready_failsAtTheStart();
    void drift_failsARunningMeasure();
    void accuracy_data();
    void accuracy();
    void calibration_setsItsDate();
    void failingCalibration_reportsAnError();
    void withoutCalibration_nothingIsDecided();
    void tooFar_isAComptonError();
    void conditionsChanged_areToldWhileIdle();
};

void TstAcquisition::shot_opensWithoutDecisionAndEndsWithNotStarted()
{
    Bench bench;
    bench.acquisition.settings.sample.concentration = 3;
    QCOMPARE(bench.acquisition.startMeasure(nap::MeasureCustomData(), false), 0);
    QCOMPARE(bench.text(), QStringLiteral("S1 D"));
    QTRY_VERIFY(bench.detections() >= 4);
    QCOMPARE(bench.acquisition.requestStopMeasure(), 0);
    const QString course = bench.text();
    QVERIFY2(course.startsWith(QLatin1String("S1 D D")), qPrintable(course));
    QVERIFY2(course.endsWith(QLatin1String("D0 P S0")), qPrintable(course));
    QCOMPARE(bench.course.count(QStringLiteral("D")), 1);
}

void TstAcquisition::autoStop_endsWithTheFirstDecision()
{
    Bench bench;
    bench.acquisition.settings.sample.concentration = 1.3;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), true);
    QTRY_VERIFY(bench.idle());
    QStringList course = bench.course;
    QCOMPARE(course.mid(0, 2), QStringList({QStringLiteral("S1"), QStringLiteral("D")}));
    QCOMPARE(course.mid(course.size() - 3),
             QStringList({QStringLiteral("D0"), QStringLiteral("P"), QStringLiteral("S0")}));
    for (const QString &between : course.mid(2, course.size() - 5))
        QCOMPARE(between, QStringLiteral("D2"));
    QCOMPARE(bench.acquisition.lastId(), 1);
}

void TstAcquisition::autoStop_endsUndecidedAtTheTimeLimit()
{
    Bench bench;
    bench.acquisition.settings.sample.concentration = 1;
    bench.acquisition.settings.detector.timeLimit = 2;
    bench.acquisition.settings.detector.k = 10;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), true);
    QTRY_VERIFY(bench.idle());
    QCOMPARE(bench.text(), QStringLiteral("S1 D D2 D2 D2 D2 P S0"));
}

void TstAcquisition::requestStop_endsWithAResultAndANumber()
{
    Bench bench;
    for (int id = 1; id <= 2; ++id) {
        bench.acquisition.startMeasure(nap::MeasureCustomData(), false);
        const int before = bench.detections();
        QTRY_VERIFY(bench.detections() >= before + 2);
        const nap::DetectionResult last = bench.lastDetection();
        bench.acquisition.requestStopMeasure();
        nap::MeasureSummary summary;
        QCOMPARE(bench.acquisition.lastMeasure(summary), 0);
        QCOMPARE(summary.get_id(), id);
        // No period is cut short: the result is what the last whole period gave.
        QCOMPARE(summary.get_detectionResult().get_value(), last.get_value());
        QVERIFY(summary.get_spectrumInformation().get_liveTime().seconds() >= Period);
    }
}

void TstAcquisition::requestStop_beforeTheFirstPeriod_isInsufficient()
{
    Bench bench;
    bench.acquisition.settings.speed = 1;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), false);
    QCOMPARE(bench.acquisition.requestStopMeasure(), 0);
    QCOMPARE(bench.text(), QStringLiteral("S1 D D3 P S0"));
}

void TstAcquisition::abort_endsWithoutResult()
{
    Bench bench;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), true);
    QCOMPARE(bench.acquisition.abort(), 0);
    QCOMPARE(bench.text(), QStringLiteral("S1 D S0"));
    QCOMPARE(bench.acquisition.lastId(), 0);
}

void TstAcquisition::busy_refusesEveryStart()
{
    Bench bench;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), false);
    bench.course.clear();
    QCOMPARE(bench.acquisition.startMeasure(nap::MeasureCustomData(), false), int(Busy));
    QCOMPARE(bench.acquisition.startAccuracyCheck(), int(Busy));
    QCOMPARE(bench.acquisition.startCalibration(), int(Busy));
    QVERIFY(bench.course.isEmpty());
    QCOMPARE(bench.acquisition.kind(), Acquisition::Measure);
    bench.acquisition.abort();
    QCOMPARE(bench.acquisition.startCalibration(), 0);
    QCOMPARE(bench.acquisition.requestStopMeasure(), int(NothingRuns));
}

void TstAcquisition::idle_refusesStopsAndLastMeasure()
{
    Bench bench;
    nap::MeasureSummary summary;
    QCOMPARE(bench.acquisition.requestStopMeasure(), int(NothingRuns));
    QCOMPARE(bench.acquisition.abort(), int(NothingRuns));
    QCOMPARE(bench.acquisition.lastMeasure(summary), int(NothingRuns));
    QVERIFY(bench.course.isEmpty());
}

void TstAcquisition::lastMeasure_carriesWhatWasAsked()
{
    Bench bench;
    nap::MeasureCustomData custom;
    custom.set_sampleType(tessel::AString("mur"));
    bench.acquisition.startMeasure(custom, true);
    QTRY_VERIFY(bench.idle());
    nap::MeasureSummary summary;
    bench.acquisition.lastMeasure(summary);
    QCOMPARE(summary.get_customData().get_sampleType().toString(), QStringLiteral("mur"));
}

void TstAcquisition::seed_repeatsTheValuesOfAWholeSeries()
{
    const auto series = [](quint32 seed, double speed) {
        Bench bench;
        bench.acquisition.settings.seed = seed;
        bench.acquisition.settings.speed = speed;
        bench.acquisition.settings.detector.timeLimit = 3;
        QVector<double> values;
        for (int shot = 0; shot < 3; ++shot) {
            bench.acquisition.startMeasure(nap::MeasureCustomData(), true);
            if (!QTest::qWaitFor([&bench] { return bench.idle(); }))
                return QVector<double>();
            values.append(bench.acquisition.lastResult().get_value());
        }
        bench.acquisition.restartDraws();
        bench.acquisition.startMeasure(nap::MeasureCustomData(), true);
        if (!QTest::qWaitFor([&bench] { return bench.idle(); }))
            return QVector<double>();
        values.append(bench.acquisition.lastResult().get_value());
        return values;
    };
    const QVector<double> first = series(5, 500);
    QCOMPARE(first.size(), 4);
    QCOMPARE(series(5, 120), first);
    QCOMPARE(first.last(), first.first());
    QVERIFY(first.at(0) != first.at(1));
    QVERIFY(series(6, 500) != first);
}

void TstAcquisition::failure_waitsForAbort()
{
    Bench bench;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), false);
    bench.acquisition.fail(nap::DPP_ERROR);
    QCOMPARE(bench.text(), QStringLiteral("S1 D S2E3"));
    QCOMPARE(bench.acquisition.status(), nap::ERROR);
    bench.acquisition.sendLastStatus();
    QCOMPARE(bench.course.last(), QStringLiteral("S2E3"));
    QCOMPARE(bench.acquisition.abort(), 0);
    QCOMPARE(bench.course.last(), QStringLiteral("S0"));

    // One that nobody aborts ends by itself.
    bench.acquisition.startMeasure(nap::MeasureCustomData(), false);
    bench.acquisition.fail(nap::TIMEOUT_ERROR);
    QTRY_VERIFY(bench.idle());
    QCOMPARE(bench.course.last(), QStringLiteral("S0"));
}

void TstAcquisition::unready_failsAtTheStart()
{
    Bench bench;
    bench.acquisition.settings.conditions.voltage = 900;
    QCOMPARE(bench.acquisition.startAccuracyCheck(), 0);
    QCOMPARE(bench.text(), QStringLiteral("S2E2"));
    QVERIFY(!bench.messages.last().get_conditions().get_readyForAcquisition());
}

void TstAcquisition::drift_failsARunningMeasure()
{
    Bench bench;
    bench.acquisition.settings.conditions.temperature = 49.9;
    bench.acquisition.settings.conditions.temperatureDrift = 6;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), false);
    QTRY_VERIFY(bench.course.contains(QStringLiteral("S2E1")));
    QCOMPARE(bench.course.first(), QStringLiteral("S1"));
    QVERIFY(bench.messages.last().get_conditions().get_temperature() > 50);
}

void TstAcquisition::accuracy_data()
{
    QTest::addColumn<int>("outcome");
    QTest::addColumn<double>("temperature");
    QTest::addColumn<int>("decision");
    QTest::newRow("what is measured is right") << -1 << 22.0 << int(nap::ACCURACY_OK);
    QTest::newRow("too warm to be right") << -1 << -10.0 << int(nap::ACCURACY_ERROR);
    QTest::newRow("ok") << int(nap::ACCURACY_OK) << -10.0 << int(nap::ACCURACY_OK);
    QTest::newRow("error") << int(nap::ACCURACY_ERROR) << 22.0 << int(nap::ACCURACY_ERROR);
    QTest::newRow("uncalibrated") << int(nap::UNCALIBRATED) << 22.0 << int(nap::UNCALIBRATED);
}

void TstAcquisition::accuracy()
{
    QFETCH(int, outcome);
    QFETCH(double, temperature);
    QFETCH(int, decision);
    Bench bench;
    Settings &settings = bench.acquisition.settings;
    settings.reference.precision = 0.05;
    settings.detector.sigma = 0.02;
    settings.detector.accuracyTime = 2;
    settings.conditions.temperature = temperature;
    if (outcome >= 0)
        settings.accuracyOutcome = static_cast<nap::DetectionDecision>(outcome);
    QCOMPARE(bench.acquisition.startAccuracyCheck(), 0);
    QTRY_VERIFY(bench.idle());
    QCOMPARE(bench.text(), QStringLiteral("S1 D D2 D2 D2 D%1 P S0").arg(decision));
    QCOMPARE(bench.acquisition.lastId(), 1);
}

void TstAcquisition::calibration_setsItsDate()
{
    Bench bench;
    bench.acquisition.settings.calibrationDate = QDate();
    bench.acquisition.startCalibration();
    QTRY_VERIFY(bench.idle());
    QCOMPARE(bench.text(), QStringLiteral("S1 S0"));
    QCOMPARE(bench.acquisition.settings.calibrationDate, QDate(2026, 1, 12));
    QCOMPARE(bench.acquisition.lastId(), 0);
}

void TstAcquisition::failingCalibration_reportsAnError()
{
    Bench bench;
    bench.acquisition.settings.calibrationFails = true;
    bench.acquisition.settings.calibrationDate = QDate();
    bench.acquisition.startCalibration();
    QTRY_COMPARE(bench.text(), QStringLiteral("S1 S2E3"));
    QVERIFY(!bench.acquisition.settings.calibrationDate.isValid());
}

void TstAcquisition::withoutCalibration_nothingIsDecided()
{
    Bench bench;
    bench.acquisition.settings.calibrationDate = QDate();
    bench.acquisition.startMeasure(nap::MeasureCustomData(), true);
    QTRY_VERIFY(bench.idle());
    QCOMPARE(bench.text(), QStringLiteral("S1 D D7 P S0"));
}

void TstAcquisition::tooFar_isAComptonError()
{
    Bench bench;
    bench.acquisition.settings.sample.distance = FarthestDistance + 1;
    bench.acquisition.startMeasure(nap::MeasureCustomData(), true);
    QTRY_VERIFY(bench.idle());
    QCOMPARE(bench.text(), QStringLiteral("S1 D D4 P S0"));
}

void TstAcquisition::conditionsChanged_areToldWhileIdle()
{
    Bench bench;
    bench.acquisition.settings.conditions.temperature = 60;
    bench.acquisition.settingsChanged();
    QCOMPARE(bench.text(), QStringLiteral("S0"));
    QVERIFY(!bench.messages.last().get_conditions().get_readyForAcquisition());
    bench.acquisition.settingsChanged();
    QCOMPARE(bench.course.size(), 1);
    bench.acquisition.settings.conditions.temperature = 20;
    bench.acquisition.settingsChanged();
    QCOMPARE(bench.text(), QStringLiteral("S0 S0"));
}

QTEST_GUILESS_MAIN(TstAcquisition)
#include "tst_acquisition.moc"
