// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the screens do when a file cannot be written, the service is silent or a shot goes wrong.
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QThread>

#include <atomic>

#include <failure.h>
#include <halvar-error.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <nap/records.h>
#include <recordingnap.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcase.h"

namespace nap = com::halvar::nap;

namespace {

/// A service that takes its time when it is to.
class SlowNap : public RecordingNap
{
public:
    std::atomic<int> delay{0}; ///< ms

    int getLastCalibrationDate(tessel::TimeDate &date) override
    {
        QThread::msleep(static_cast<unsigned long>(delay));
        return RecordingNap::getLastCalibrationDate(date);
    }
};

nap::DetectionResult result(double value, double sigma, nap::DetectionDecision decision)
{
    nap::DetectionResult detection;
    detection.set_value(value);
    detection.set_sigma(sigma);
    detection.set_decision(decision);
    return detection;
}

} // namespace

class TstInterfaceFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void screenInAShot_isNotLeftWithoutAQuestion();
    void failedSave_keepsWhatIsOpen();
    void reasonWhyNotMeasured_keepsTheObservation_data();
    void reasonWhyNotMeasured_keepsTheObservation();
    void unmeasuredUnit_hasTheNumberOfItsFileAndCanBeDeleted();
    void observation_isSavedWhenTheScreenIsLeftFromItsField();
    void readiness_isAskedForWhereNothingCanBegin();
    void slowService_isToldAndLeftAlone();
    void stopBeforeTheMeasureBegins_isRepeated();
    void shotWithoutAResult_isNotCalledDone_data();
    void shotWithoutAResult_isNotCalledDone();

private:
    /// Pulls the trigger, and waits until results are to come.
    void shoot();
    void tellReady();

    tessel::AutoRef<SlowNap> m_nap{new SlowNap};
    std::unique_ptr<Showcase> m_showcase;
};

void TstInterfaceFaults::initTestCase()
{
    QVERIFY(tessel::ServiceManager::auto_create().listen("TCPIP:localhost:3555"));
    m_nap->set_name("nap_server");
    m_nap->publish();
}

void TstInterfaceFaults::cleanupTestCase()
{
    m_nap->unpublish();
}

void TstInterfaceFaults::init()
try {
    Showcase::fillHome();
    m_showcase = std::make_unique<Showcase>();
    m_showcase->settleAtOnce();
    m_showcase->unlock();
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::cleanup()
{
    m_nap->delay = 0;
    const QStringList warnings = m_showcase->watch.warnings();
    m_showcase.reset();
    QVERIFY2(warnings.isEmpty(), qUtf8Printable(warnings.join(QLatin1Char('\n'))));
}

void TstInterfaceFaults::shoot()
{
    Showcase &showcase = *m_showcase;
    showcase->msp_event(MSPClient::SHUT_OPENED, 0);
    showcase.hand->waitFor([&] { return showcase->acquisitionMode() == AcquisitionModeEnumClass::MEASURE; },
                           QStringLiteral("the measure is to begin"));
}

void TstInterfaceFaults::tellReady()
{
    nap::AcqConditions conditions;
    conditions.set_readyForAcquisition(true);
    (*m_showcase)->nap_AcqConditions(conditions);
}

void TstInterfaceFaults::screenInAShot_isNotLeftWithoutAQuestion()
try {
    Showcase &showcase = *m_showcase;
    auto *unit = new UD;
    unit->measures()->append(new Measure);
    showcase->uds->append(unit);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    SentCommands commands(showcase.controller.get());
    showcase->msp_event(MSPClient::SHUT_OPENED, 0);
    for (const char *control : {"shockButton", "element", "substrate", "coating", "measure1"}) {
        showcase.hand->tap(QLatin1String(control));
        QCOMPARE(showcase.hand->screen(), QStringLiteral("UnitScreen"));
        QVERIFY(isSaid(showcase.window, QStringLiteral("Mesure en cours : relâchez d'abord la détente.")));
        showcase.hand->touch(QStringLiteral("toast"));
    }
    QVERIFY(!commands.commands.contains(MSPClient::ABORT));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->find(QStringLiteral("Continuer la mesure"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::failedSave_keepsWhatIsOpen()
try {
    Showcase &showcase = *m_showcase;
    const QString files = Showcase::home() + QStringLiteral("files/");
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->tap(QStringLiteral("Cave-7"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    const int units = showcase->uds->count();
    QVERIFY(units > 0);
    // As a full disk does, for whoever runs this: there is no place for the new file.
    const QString place = files + QStringLiteral("Cave-7.tmp/x");
    QVERIFY(QDir().mkpath(place));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("« Cave-7 » n'a pas pu être enregistré.")));
    const auto isKept = [&] {
        QVERIFY(isSaid(showcase.window, QStringLiteral("« Cave-7 » n'a pas pu être écrit.")));
        showcase.hand->tap(QStringLiteral("no"));
        // It may lie over a button.
        showcase.hand->touch(QStringLiteral("toast"));
        QCOMPARE(showcase->fileName(), QStringLiteral("Cave-7"));
        QCOMPARE(showcase->uds->count(), units);
    };
    showcase.hand->tap(QStringLiteral("Studio-en-cours"));
    isKept();
    showcase.hand->tap(QStringLiteral("newDiagnostic"));
    showcase.hand->waitForScreen(QStringLiteral("NewDiagnosticScreen"));
    showcase.hand->fill(QStringLiteral("name"), QStringLiteral("Grange"));
    showcase.hand->tap(QStringLiteral("create"));
    isKept();
    QVERIFY(!QFile::exists(files + QStringLiteral("Grange.xml")));
    showcase.open(QStringLiteral("ServiceScreen"));
    showcase.hand->tap(QStringLiteral("shutdown"));
    showcase.hand->tap(QStringLiteral("yes"));
    isKept();
    QFile commands(qEnvironmentVariable("HALVAR_INSTRUMENT_COMMANDS"));
    QVERIFY(!commands.open(QIODevice::ReadOnly) || !commands.readAll().contains("halt"));

    QVERIFY(QDir(files + QStringLiteral("Cave-7.tmp")).removeRecursively());
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->tap(QStringLiteral("Studio-en-cours"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    QCOMPARE(showcase->fileName(), QStringLiteral("Studio-en-cours"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::reasonWhyNotMeasured_keepsTheObservation_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("after");
    QTest::newRow("both") << "Derrière le radiateur"
                          << "Hors d'atteinte"
                          << "Hors d'atteinte – Derrière le radiateur";
    QTest::newRow("reason") << ""
                            << "Hors d'atteinte"
                            << "Hors d'atteinte";
    QTest::newRow("none") << "Derrière le radiateur"
                          << "none"
                          << "Derrière le radiateur";
}

void TstInterfaceFaults::reasonWhyNotMeasured_keepsTheObservation()
try {
    QFETCH(QString, before);
    QFETCH(QString, row);
    QFETCH(QString, after);
    Showcase &showcase = *m_showcase;
    auto *unit = new UD;
    unit->setObservation(before);
    showcase->uds->append(unit);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->tap(QStringLiteral("skip"));
    showcase.hand->tap(QStringLiteral("yes"));
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    showcase.hand->tap(row);
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QCOMPARE(unit->observation(), after);
    QCOMPARE(unit->statut(), UDStatutEnumClass::SKIPPED);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::unmeasuredUnit_hasTheNumberOfItsFileAndCanBeDeleted()
try {
    Showcase &showcase = *m_showcase;
    for (const char *element : {"Mur", "Porte", "Plinthe"}) {
        auto *unit = new UD;
        unit->setLocal(QStringLiteral("Cave"));
        unit->setElement(QLatin1String(element));
        showcase->uds->append(unit);
    }
    showcase.open(QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), QStringLiteral("Cave")}});
    showcase.hand->tap(QStringLiteral("Zone A · Porte"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("unité n° 2")));
    showcase.hand->tap(QStringLiteral("removeUnit"));
    showcase.hand->tap(QStringLiteral("yes"));
    showcase.hand->waitForScreen(QStringLiteral("UnitsScreen"));
    QCOMPARE(showcase->uds->count(), 2);
    showcase.hand->tap(QStringLiteral("Zone A · Plinthe"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("unité n° 2")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::observation_isSavedWhenTheScreenIsLeftFromItsField()
try {
    Showcase &showcase = *m_showcase;
    showcase->setFileName(QStringLiteral("Grange"));
    showcase->uds->append(new UD);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->fill(QStringLiteral("observation"), QStringLiteral("Au plafond"));
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QFile file(Showcase::home() + QStringLiteral("files/Grange.xml"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("<Observation>Au plafond</Observation>"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::readiness_isAskedForWhereNothingCanBegin()
try {
    Showcase &showcase = *m_showcase;
    showcase->init();
    showcase.setInstrument(QStringLiteral("askEvery"), 50);
    const auto asked = [this] { return m_nap->calls().count(QStringLiteral("sendLastStatus")); };
    // Ready or not.
    tellReady();
    int before = asked();
    QTRY_VERIFY(asked() > before + 2);
    for (const char *screen : {"DirectScreen", "AccuracyScreen", "CalibrationScreen"}) {
        showcase.open(QLatin1String(screen));
        before = asked();
        showcase.hand->pause(300);
        QCOMPARE(asked(), before);
        showcase.hand->key(Qt::Key_Escape);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
        QTRY_VERIFY(asked() > before + 2);
    }
    showcase.open(QStringLiteral("DirectScreen"));
    showcase->error->setReadyForAcquisition(false);
    before = asked();
    QTRY_VERIFY(asked() > before + 2);
    shoot();
    before = asked();
    showcase.hand->pause(300);
    QCOMPARE(asked(), before);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::slowService_isToldAndLeftAlone()
try {
    Showcase &showcase = *m_showcase;
    showcase->init();
    showcase.setInstrument(QStringLiteral("askEvery"), 50);
    m_nap->delay = 1100;
    QTRY_VERIFY(isSaid(showcase.window, QStringLiteral("Le service d'analyse ne répond pas.")));
    const auto asked = [this] { return m_nap->calls().count(QStringLiteral("sendLastStatus")); };
    const int before = asked();
    showcase.hand->pause(400);
    QCOMPARE(asked(), before);
    // Asked by the operator, and there again.
    m_nap->delay = 0;
    showcase.open(QStringLiteral("ServiceScreen"));
    QTRY_VERIFY(asked() > before + 2);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::stopBeforeTheMeasureBegins_isRepeated()
try {
    Showcase &showcase = *m_showcase;
    showcase->init();
    tellReady();
    const QVector<QPair<QString, QString>> ends{
        {QStringLiteral("Terminer avec le résultat et quitter"), QStringLiteral("requestStopMeasure")},
        {QStringLiteral("Interrompre et quitter"), QStringLiteral("abort")}};
    for (const auto &[answer, call] : ends) {
        showcase.open(QStringLiteral("DirectScreen"));
        showcase.window->property("screen").value<QQuickItem *>()->setProperty("patience", 3000);
        m_nap->reset();
        showcase->msp_event(MSPClient::SHUT_OPENED, 0);
        showcase.hand->tap(QStringLiteral("back"));
        showcase.hand->tap(answer);
        QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::START_MEASURE);
        const QStringList expected{QStringLiteral("startMeasure"), call};
        QTRY_COMPARE(m_nap->calls(), expected);
        showcase->nap_AcqStatus(nap::NOT_STARTED);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceFaults::shotWithoutAResult_isNotCalledDone_data()
{
    QTest::addColumn<int>("results");
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("told");
    const QString done = QStringLiteral("Mesure terminée");
    const QString lost = QStringLiteral("Mesure interrompue, sans résultat");
    QTest::newRow("result") << 2 << QString() << done;
    QTest::newRow("no result") << 0 << QString() << lost;
    QTest::newRow("error") << 2 << QStringLiteral("error") << lost;
    QTest::newRow("not ready any more") << 2 << QStringLiteral("ready") << lost;
    QTest::newRow("defined, let go") << 2 << QStringLiteral("defined") << lost;
}

void TstInterfaceFaults::shotWithoutAResult_isNotCalledDone()
try {
    QFETCH(int, results);
    QFETCH(QString, fault);
    QFETCH(QString, told);
    Showcase &showcase = *m_showcase;
    tellReady();
    showcase.open(QStringLiteral("DirectScreen"));
    if (fault == QLatin1String("defined"))
        showcase->setMeasureMode(MeasureModeEnumClass::DEFINED);
    shoot();
    if (results > 0) {
        nap::DetectionResult opening;
        opening.set_value(0);
        showcase->nap_DetectionResult(opening);
    }
    for (int i = 0; i < results; ++i)
        showcase->nap_DetectionResult(result(1 + 0.1 * i, 0.3, nap::UNDETERMINED));
    if (fault == QLatin1String("error"))
        showcase->nap_AcqError(nap::TIMEOUT_ERROR);
    else if (fault == QLatin1String("ready"))
        showcase->nap_AcqError(nap::INVALID_TEMPERATURE);
    showcase->nap_AcqStatus(nap::NOT_STARTED);
    QVERIFY(isSaid(showcase.window, told));
    // Nor does its card look like one of a result.
    const bool isLost = told.startsWith(QLatin1String("Mesure interrompue"));
    QTRY_COMPARE(isSaid(showcase.window, QStringLiteral("Interrompue")), isLost && results > 0);
    QTRY_COMPARE(isSaid(showcase.window, QStringLiteral("Indéterminée")), !isLost);
    QCOMPARE(isSaid(showcase.window, QStringLiteral("tir n°")), !isLost);
    showcase->msp_event(MSPClient::SHUT_OPENED, 0);
    QVERIFY(!isSaid(showcase.window, told));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstInterfaceFaults)
#include "tst_interface_faults.moc"
