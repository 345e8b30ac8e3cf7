// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// Whole shots, from the finger on the trigger to the diagnostic's file.
#include "bench.h"
#include "halvar-error.h"
#include "measure.h"
#include "measurelistmodel.h"

using Mode = AcquisitionModeEnumClass;
using MeasureMode = MeasureModeEnumClass;

class TstShot : public QObject
{
    Q_OBJECT
private slots:
    void trigger_fromShutterToTheReloadedFile();
    void auto_endsByItselfAndMakesTheUnitPositive();
    void defined_lastsItsTimeAndGoesToTheDirectList();
    void negativeUnit_needsItsNumberOfMeasures();
    void sameSeed_givesTheSameDiagnostic();
    void shutterFault_isShownAndOvercome();
};

void TstShot::trigger_fromShutterToTheReloadedFile()
{
    Bench bench;
    QVERIFY(bench.start());
    bench->setFileName(QStringLiteral("essai"));
    bench->setMeasureMode(MeasureMode::TRIGGER);
    UD *const unit = bench.addUnit(QStringLiteral("Cuisine"));
    QVERIFY(bench.isHard());
    QVERIFY(bench.set("sample", "concentration", 4));

    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::MEASURE);
    QTRY_VERIFY(bench.results().size() >= 6);
    QVERIFY(bench.simulator.control.release());
    QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QCOMPARE(bench.calls("startMeasure"), 1);
    QCOMPARE(bench.calls("requestStopMeasure"), 1);
    QCOMPARE(bench.calls("abort"), 0);

    QCOMPARE(unit->statut(), UDStatutEnumClass::POSITIVE);
    QCOMPARE(unit->measures()->size(), 1);
    const Measure *const measure = unit->measures()->first();
    QCOMPARE(measure->idNAP(), bench.nap("lastId").toInt());
    // What came with the release is not trusted: the fourth result from the end counts.
    QVERIFY(bench.toldTheEnd());
    const QVector<QJsonObject> results = bench.results();
    const QJsonObject settled = results.at(results.size() - 4);
    QCOMPARE(measure->concentration(), settled.value(QLatin1String("value")).toDouble());
    QCOMPARE(measure->sigma(), settled.value(QLatin1String("sigma")).toDouble());

    // The release saved the diagnostic; the unit has its result, so the instrument goes to standby.
    QVERIFY(bench.home.read(QStringLiteral("files/essai.xml")).contains("Cuisine"));
    QTRY_COMPARE(bench.msp("state").toString(), QStringLiteral("STANDBY"));
    QCOMPARE(bench.commands("MEAS_DONE"), 1);
    QCOMPARE(bench.commands("ABORT"), 1);
    QVERIFY(!bench.msp("shutterOpen").toBool());

    const double concentration = measure->concentration();
    const double sigma = measure->sigma();
    const int id = measure->idNAP();
    bench->saveFile();
    bench->initFile();
    QVERIFY(bench->uds->isEmpty());
    bench->loadFile(bench.home.file(QStringLiteral("files/essai.xml")));
    QCOMPARE(bench->fileName(), QStringLiteral("essai"));
    QCOMPARE(bench->uds->size(), 1);
    const UD *const loaded = bench->uds->first();
    QCOMPARE(loaded->local(), QStringLiteral("Cuisine"));
    QCOMPARE(loaded->statut(), UDStatutEnumClass::POSITIVE);
    QCOMPARE(loaded->measures()->size(), 1);
    const Measure *const read = loaded->measures()->first();
    QCOMPARE(read->idNAP(), id);
    QCOMPARE(QString::number(read->concentration(), 'g', 6), QString::number(concentration, 'g', 6));
    QCOMPARE(QString::number(read->sigma(), 'g', 6), QString::number(sigma, 'g', 6));
    QCOMPARE(read->detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
}

void TstShot::auto_endsByItselfAndMakesTheUnitPositive()
{
    Bench bench;
    QVERIFY(bench.start());
    bench->setMeasureMode(MeasureMode::AUTO);
    UD *const unit = bench.addUnit(QStringLiteral("Salon"));
    QVERIFY(bench.isHard());
    QVERIFY(bench.set("sample", "concentration", 5));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QCOMPARE(bench.calls("requestStopMeasure"), 0);
    QCOMPARE(bench.calls("abort"), 0);
    QCOMPARE(unit->statut(), UDStatutEnumClass::POSITIVE);
    // No value is held back: nobody shook the instrument by letting go of the trigger.
    QVERIFY(bench.toldTheEnd());
    const QJsonObject last = bench.results().last();
    QCOMPARE(unit->measures()->first()->concentration(), last.value(QLatin1String("value")).toDouble());
    QCOMPARE(unit->measures()->first()->idNAP(), 1);
}

void TstShot::defined_lastsItsTimeAndGoesToTheDirectList()
{
    Bench bench;
    QVERIFY(bench.start());
    QVERIFY(bench.ready(MeasureMode::DEFINED));
    for (int shot = 1; shot <= 2; ++shot) {
        bench.modes.clear();
        QVERIFY(bench.simulator.control.press());
        QTRY_COMPARE(bench->acquisitionMode(), Mode::MEASURE);
        QElapsedTimer timer;
        timer.start();
        QTRY_COMPARE(bench->acquisitionMode(), Mode::NONE);
        // One second by the configuration; the timer may fire a twentieth early.
        QVERIFY2(timer.elapsed() >= 900, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(bench.calls("requestStopMeasure"), shot);
        QCOMPARE(bench->directMeasures->size(), shot);
        QCOMPARE(bench->directMeasures->first()->idNAP(), shot);
        QVERIFY(bench.simulator.control.release());
        QTRY_VERIFY(!bench.msp("shutterOpen").toBool());
    }
}

void TstShot::negativeUnit_needsItsNumberOfMeasures()
{
    Bench bench(200);
    QVERIFY(bench.start());
    bench->setMeasureMode(MeasureMode::AUTO);
    bench->setNbMeasures(2);
    UD *const unit = bench.addUnit(QStringLiteral("Entrée"));
    QVERIFY(bench.set("sample", "concentration", 0));
    for (int shot = 1; shot <= 2; ++shot) {
        QVERIFY(bench.isHard());
        QCOMPARE(unit->statut(), UDStatutEnumClass::RAW);
        bench.modes.clear();
        QVERIFY(bench.simulator.control.press());
        QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
        QVERIFY(bench.simulator.control.release());
    }
    QCOMPARE(unit->statut(), UDStatutEnumClass::NEGATIVE);
    QCOMPARE(unit->measures()->size(), 2);
    QCOMPARE(unit->measures()->last()->idNAP(), 2);
    QTRY_COMPARE(bench.msp("state").toString(), QStringLiteral("STANDBY"));
}

void TstShot::sameSeed_givesTheSameDiagnostic()
{
    const auto concentrations = [](const QString &seed) {
        Bench bench(200);
        QVector<double> values;
        if (!bench.start({QStringLiteral("--seed"), seed}) || !bench.ready(MeasureMode::AUTO))
            return values;
        for (int shot = 1; shot <= 3; ++shot) {
            bench.set("sample", "concentration", shot);
            bench.modes.clear();
            bench.simulator.control.press();
            if (!QTest::qWaitFor([&bench] { return bench.modes.size() == 3; }) || !bench.isHard())
                return QVector<double>();
            bench.simulator.control.release();
            values.append(bench->directMeasures->first()->concentration());
        }
        return values;
    };
    const QVector<double> first = concentrations(QStringLiteral("11"));
    QCOMPARE(first.size(), 3);
    QCOMPARE(concentrations(QStringLiteral("11")), first);
    QVERIFY(concentrations(QStringLiteral("12")) != first);
}

void TstShot::shutterFault_isShownAndOvercome()
{
    Bench bench;
    QVERIFY(bench.start({QStringLiteral("--scenario"), QStringLiteral("shutter-fault")}));
    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench->error->property("errorMessage").toString(),
                 QStringLiteral("Anomalie obturateur - Erreur S2"));
    QCOMPARE(bench->acquisitionMode(), Mode::NONE);
    QCOMPARE(bench.msp("state").toString(), QStringLiteral("ERROR"));
    QVERIFY(bench.simulator.control.release());

    bench->ackError();
    QMetaObject::invokeMethod(bench->error, "resetErrorMessage");
    QTRY_COMPARE(bench.msp("state").toString(), QStringLiteral("STANDBY"));
    bench->setEnableMeasure(false);
    QVERIFY(bench.ready(MeasureMode::AUTO));
    QVERIFY(bench.simulator.control.press());
    QTRY_COMPARE(bench.modes, QList<int>({Mode::START_MEASURE, Mode::MEASURE, Mode::NONE}));
    QVERIFY(bench->error->property("errorMessage").toString().isEmpty());
}

QTEST_GUILESS_MAIN(TstShot)
#include "tst_shot.moc"
