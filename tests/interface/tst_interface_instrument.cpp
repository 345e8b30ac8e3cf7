// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the screens do when the simulated instrument does what nobody asked for, or nothing at all.
#include <QFile>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>

#include <failure.h>
#include <halvar-error.h>
#include <measurelistmodel.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcase.h"
#include "simulatorprocess.h"

namespace {

/// What a diagnostic's file holds, without the moment at which it was saved.
QString textOf(const QString &file)
{
    QFile device(file);
    if (!device.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(device.readAll())
        .remove(QRegularExpression(QStringLiteral("<Date>[^<]*</Date>")));
}

} // namespace

class TstInterfaceInstrument : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void triggerInStandby_changesNothingOnAnyScreen();
    void shutterOpenedOutsideAMeasure_isClosedAndSaid_data();
    void shutterOpenedOutsideAMeasure_isClosedAndSaid();
    void serviceDyingInAShot_isSaidAndTheScreensGoOn();
    void serviceSilentForAWhile_isSaidUntilItSpeaks();
    void mspDyingInAShot_leavesTheResultsAndTheScreens();
    void leavingAShotWithItsResult_keepsIt();
    void leavingAShotInterrupted_keepsTheUnitToBeMeasured();
    void advice_isRightInEachStateOfAShot_data();
    void advice_isRightInEachStateOfAShot();
    void faultInAShot_isSaidAndAcknowledged();

private:
    void run(const QString &command, const QJsonObject &members = {});
    QJsonObject msp() { return m_simulator->control.status().value(QLatin1String("msp")).toObject(); }
    void waitForMsp(const QString &state);
    void waitUntilIdle();
    /// Presses the trigger of an armed instrument and holds it until its measure shows a result.
    void pressUntilAResult(MeasureListModel *measures);
    /// Two units of a room in a diagnostic that is in its file; the first wants measures.
    void openDiagnostic();
    QString saved() const { return textOf(Showcase::home() + QStringLiteral("files/Essai.xml")); }

    std::unique_ptr<SimulatorProcess> m_simulator;
    std::unique_ptr<Showcase> m_showcase;
};

void TstInterfaceInstrument::init()
{
    Showcase::fillHome();
    Showcase::setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("100"));
    m_simulator = std::make_unique<SimulatorProcess>(QStringLiteral(SIMULATOR));
    QVERIFY(m_simulator->start({QStringLiteral("--seed"), QStringLiteral("7"), QStringLiteral("--home"),
                                Showcase::home(), QStringLiteral("--log-level"), QStringLiteral("off")}));
    m_showcase = std::make_unique<Showcase>();
    (*m_showcase)->init();
    m_showcase->settleAtOnce();
    try {
        m_showcase->unlock();
        (*m_showcase)->requestUpdate();
        m_showcase->hand->waitFor([this] { return (*m_showcase)->error->readyForAcquisition(); },
                                  QStringLiteral("the instrument is to be ready"));
    } catch (const Failure &failure) {
        QFAIL(qUtf8Printable(failure.text));
    }
}

void TstInterfaceInstrument::cleanup()
{
    const QStringList warnings = m_showcase->watch.warnings();
    m_showcase.reset();
    m_simulator.reset();
    QVERIFY2(warnings.isEmpty(), qUtf8Printable(warnings.join(QLatin1Char('\n'))));
}

void TstInterfaceInstrument::run(const QString &command, const QJsonObject &members)
{
    if (!m_simulator->control.run(command, members))
        throw Failure{m_simulator->control.errorString()};
}

void TstInterfaceInstrument::waitForMsp(const QString &state)
{
    m_showcase->hand->waitFor([&] { return msp().value(QLatin1String("state")).toString() == state; },
                              QStringLiteral("the MSP is to be in ") + state);
}

void TstInterfaceInstrument::pressUntilAResult(MeasureListModel *measures)
{
    waitForMsp(QStringLiteral("READY_HARD"));
    run(QStringLiteral("press"));
    m_showcase->hand->waitFor([&] { return measures->count() > 0 && measures->at(0)->sigma() > 0; },
                              QStringLiteral("a result is to come"));
}

void TstInterfaceInstrument::waitUntilIdle()
{
    m_showcase->hand->waitFor(
        [this] { return (*m_showcase)->acquisitionMode() == AcquisitionModeEnumClass::NONE; },
        QStringLiteral("the shot is to end"));
}

void TstInterfaceInstrument::openDiagnostic()
{
    Showcase &showcase = *m_showcase;
    showcase->setFileName(QStringLiteral("Essai"));
    for (const UDStatutEnumClass::UDStatut statut : {UDStatutEnumClass::RAW, UDStatutEnumClass::POSITIVE}) {
        auto *unit = new UD;
        unit->setLocal(QStringLiteral("Cuisine"));
        unit->setElement(QStringLiteral("Mur"));
        unit->setStatut(statut);
        showcase->uds->append(unit);
    }
    showcase->saveFile();
}

void TstInterfaceInstrument::triggerInStandby_changesNothingOnAnyScreen()
try {
    Showcase &showcase = *m_showcase;
    openDiagnostic();
    const QString before = saved();
    QVERIFY(before.contains(QLatin1String("Cuisine")));
    const QVector<QPair<QString, QVariantMap>> screens{
        {QStringLiteral("AccuracyScreen"), {}},
        {QStringLiteral("CalibrationScreen"), {}},
        {QStringLiteral("SettingsScreen"), {}},
        {QStringLiteral("DiagnosticsScreen"), {}},
        {QStringLiteral("NewDiagnosticScreen"), {}},
        {QStringLiteral("DiagnosticScreen"), {}},
        {QStringLiteral("RoomsScreen"), {}},
        {QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), QStringLiteral("Cuisine")}}},
        {QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 1}}},
        {QStringLiteral("PickScreen"), {{QStringLiteral("items"), showcase.object(QStringLiteral("rooms"))}}},
        {QStringLiteral("ShocksScreen"), {}},
        {QStringLiteral("ServiceScreen"), {}},
        {QStringLiteral("LogScreen"), {}}};
    for (const auto &[name, properties] : screens) {
        showcase.open(name, properties);
        const QJsonObject answer = m_simulator->control.command(QStringLiteral("press"));
        QVERIFY(answer.value(QLatin1String("ok")).toBool());
        QVERIFY2(!answer.value(QLatin1String("opened")).toBool(), qPrintable(name));
        showcase.hand->pause(50);
        run(QStringLiteral("release"));
        showcase.hand->pause(50);
        QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::NONE);
        QCOMPARE(showcase.hand->screen(), name);
        if (name == QLatin1String("UnitScreen"))
            QVERIFY(isSaid(showcase.window, QStringLiteral("La détente est sans effet.")));
        showcase.hand->key(Qt::Key_Escape);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    }
    QCOMPARE(showcase->uds->count(), 2);
    QCOMPARE(showcase->directMeasures->count(), 0);
    QCOMPARE(saved(), before);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::shutterOpenedOutsideAMeasure_isClosedAndSaid_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<int>("row");
    QTest::newRow("home") << QString() << -1;
    QTest::newRow("service") << "ServiceScreen" << -1;
    QTest::newRow("unit that has its result") << "UnitScreen" << 1;
}

void TstInterfaceInstrument::shutterOpenedOutsideAMeasure_isClosedAndSaid()
try {
    QFETCH(QString, screen);
    QFETCH(int, row);
    Showcase &showcase = *m_showcase;
    openDiagnostic();
    const QString before = saved();
    if (!screen.isEmpty())
        showcase.open(screen, row < 0 ? QVariantMap() : QVariantMap{{QStringLiteral("row"), row}});
    // The trigger is live, as after another application that did not switch it off.
    run(QStringLiteral("mspInfo"), {{QStringLiteral("state"), QStringLiteral("READY_HARD")}});
    QVERIFY(m_simulator->control.command(QStringLiteral("press")).value(QLatin1String("opened")).toBool());
    showcase.hand->waitFor(
        [&] { return isSaid(showcase.window, QStringLiteral("il est refermé, rien n'est enregistré")); },
        QStringLiteral("the open shutter is to be told"));
    waitForMsp(QStringLiteral("STANDBY"));
    QVERIFY(!msp().value(QLatin1String("shutterOpen")).toBool());
    run(QStringLiteral("release"));
    waitUntilIdle();
    QCOMPARE(showcase->uds->at(1)->measures()->count(), 0);
    QCOMPARE(showcase->uds->at(1)->statut(), UDStatutEnumClass::POSITIVE);
    QCOMPARE(showcase->directMeasures->count(), 0);
    QCOMPARE(saved(), before);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::serviceDyingInAShot_isSaidAndTheScreensGoOn()
try {
    Showcase &showcase = *m_showcase;
    openDiagnostic();
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    MeasureListModel *measures = showcase->uds->at(0)->measures();
    pressUntilAResult(measures);
    m_simulator->kill();
    showcase.hand->waitFor(
        [&] { return isSaid(showcase.window, QStringLiteral("L'instrument ne répond plus")); },
        QStringLiteral("the silence is to be told"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Relâchez la détente et quittez cet écran.")));
    QCOMPARE(complaints(showcase.window), QStringList());

    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->tap(QStringLiteral("Quitter quand même"));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::NONE);
    // What had come is kept, and the rest of the work goes on.
    QCOMPARE(measures->count(), 1);
    QVERIFY(saved().contains(QLatin1String("Concentration")));
    showcase.hand->tap(QStringLiteral("Diagnostics"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->tap(QStringLiteral("Cave-7"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    QVERIFY(showcase->uds->count() > 0);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::serviceSilentForAWhile_isSaidUntilItSpeaks()
try {
    Showcase &showcase = *m_showcase;
    showcase.open(QStringLiteral("DirectScreen"));
    MeasureListModel *measures = showcase->directMeasures;
    pressUntilAResult(measures);
    // So slow that the next result is not to be expected.
    run(QStringLiteral("speed"), {{QStringLiteral("value"), 0.01}});
    showcase.hand->waitFor(
        [&] { return isSaid(showcase.window, QStringLiteral("L'instrument ne répond plus")); },
        QStringLiteral("the silence is to be told"));
    run(QStringLiteral("speed"), {{QStringLiteral("value"), 1}});
    showcase.hand->waitFor([&] { return isSaid(showcase.window, QStringLiteral("Mesure en cours")); },
                           QStringLiteral("the next result is to end the silence"));
    QVERIFY(!isSaid(showcase.window, QStringLiteral("L'instrument ne répond plus")));
    run(QStringLiteral("release"));
    waitUntilIdle();
    QVERIFY(isSaid(showcase.window, QStringLiteral("Mesure terminée")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::mspDyingInAShot_leavesTheResultsAndTheScreens()
try {
    Showcase &showcase = *m_showcase;
    showcase.open(QStringLiteral("DirectScreen"));
    MeasureListModel *measures = showcase->directMeasures;
    pressUntilAResult(measures);
    run(QStringLiteral("mspDie"));
    // Nobody tells that the trigger is released; the operator ends the shot on the screen.
    run(QStringLiteral("release"));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->tap(QStringLiteral("Terminer avec le résultat et quitter"));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    waitUntilIdle();
    QCOMPARE(measures->count(), 1);
    QVERIFY(measures->at(0)->idNAP() >= 0);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::leavingAShotWithItsResult_keepsIt()
try {
    Showcase &showcase = *m_showcase;
    openDiagnostic();
    run(QStringLiteral("sample"), {{QStringLiteral("concentration"), 4.0}});
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    waitForMsp(QStringLiteral("READY_HARD"));
    run(QStringLiteral("press"));
    MeasureListModel *measures = showcase->uds->at(0)->measures();
    showcase.hand->waitFor(
        [&] {
            return measures->count() > 0
                && measures->at(0)->detectionDecision() == DetectionDecisionEnumClass::POSITIVE;
        },
        QStringLiteral("a decision is to come"));
    showcase.hand->key(Qt::Key_Escape);
    QVERIFY(isSaid(showcase.window, QStringLiteral("Relâchez la détente pour terminer la mesure.")));
    QCOMPARE(showcase.hand->screen(), QStringLiteral("UnitScreen"));
    showcase.hand->tap(QStringLiteral("Terminer avec le résultat et quitter"));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QCOMPARE(showcase->uds->at(0)->statut(), UDStatutEnumClass::POSITIVE);
    QVERIFY(measures->at(0)->idNAP() >= 0);
    waitForMsp(QStringLiteral("STANDBY"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::leavingAShotInterrupted_keepsTheUnitToBeMeasured()
try {
    Showcase &showcase = *m_showcase;
    openDiagnostic();
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    waitForMsp(QStringLiteral("READY_HARD"));
    run(QStringLiteral("press"));
    showcase.hand->waitFor([&] { return showcase->uds->at(0)->measures()->count() > 0; },
                           QStringLiteral("the measure is to begin"));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->tap(QStringLiteral("Interrompre et quitter"));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::NONE);
    QCOMPARE(showcase->uds->at(0)->statut(), UDStatutEnumClass::RAW);
    waitForMsp(QStringLiteral("STANDBY"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::advice_isRightInEachStateOfAShot_data()
{
    QTest::addColumn<MeasureModeEnumClass::MeasureMode>("mode");
    QTest::addColumn<bool>("isReleased"); // before the measure ends by itself
    QTest::addColumn<QString>("hold"); // while it runs
    QTest::addColumn<QString>("after");
    const QString next = QStringLiteral("Pressez de nouveau la détente pour une autre mesure.");
    const QString tooSoon = QStringLiteral("La détente a été relâchée trop tôt.");
    QTest::newRow("trigger") << MeasureModeEnumClass::TRIGGER << true << "Maintenez la détente" << next;
    QTest::newRow("automatic, held") << MeasureModeEnumClass::AUTO << false
                                     << "la mesure s'arrête d'elle-même"
                                     << QStringLiteral("La détente peut être relâchée. ") + next;
    QTest::newRow("defined, held") << MeasureModeEnumClass::DEFINED << false << "la mesure dure 3 s"
                                   << QStringLiteral("La détente peut être relâchée. ") + next;
    QTest::newRow("defined, released")
        << MeasureModeEnumClass::DEFINED << true << "la mesure dure 3 s" << tooSoon;
}

void TstInterfaceInstrument::advice_isRightInEachStateOfAShot()
try {
    QFETCH(MeasureModeEnumClass::MeasureMode, mode);
    QFETCH(bool, isReleased);
    QFETCH(QString, hold);
    QFETCH(QString, after);
    Showcase &showcase = *m_showcase;
    const auto says = [&showcase](const QString &text) { return isSaid(showcase.window, text); };
    const auto waitToRead = [&](const QString &text) {
        showcase.hand->waitFor([&] { return says(text); }, QStringLiteral("to be read: ") + text, 30000);
    };
    showcase->setMeasureTime(3);
    showcase.open(QStringLiteral("DirectScreen"));
    showcase.setMeasureMode(mode);
    // Near the threshold an automatic measure takes its time.
    run(QStringLiteral("sample"),
        {{QStringLiteral("concentration"), mode == MeasureModeEnumClass::AUTO ? 1.2 : 4.0}});
    waitToRead(QStringLiteral("Appliquez l'appareil, pressez la détente et maintenez-la."));
    MeasureListModel *measures = showcase->directMeasures;
    pressUntilAResult(measures);
    QVERIFY(says(hold));
    if (mode == MeasureModeEnumClass::TRIGGER)
        waitToRead(QStringLiteral("relâchez la détente"));
    if (isReleased)
        run(QStringLiteral("release"));
    showcase.hand->waitFor([&] { return showcase->acquisitionMode() == AcquisitionModeEnumClass::NONE; },
                           QStringLiteral("the shot is to end"), 30000);
    waitToRead(after);
    QVERIFY(!says(QStringLiteral("Relâchez")));
    QVERIFY(!says(QStringLiteral("Maintenez")));
    QCOMPARE(says(QStringLiteral("peut être relâchée")), !isReleased);
    if (!isReleased)
        run(QStringLiteral("release"));
    // What was advised works.
    waitForMsp(QStringLiteral("READY_HARD"));
    run(QStringLiteral("press"));
    showcase.hand->waitFor([&] { return measures->count() == 2; },
                           QStringLiteral("another measure is to begin"));
    run(QStringLiteral("release"));
    waitUntilIdle();
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceInstrument::faultInAShot_isSaidAndAcknowledged()
try {
    Showcase &showcase = *m_showcase;
    showcase.open(QStringLiteral("DirectScreen"));
    waitForMsp(QStringLiteral("READY_HARD"));
    run(QStringLiteral("press"));
    showcase.hand->waitFor([&] { return showcase->directMeasures->count() > 0; },
                           QStringLiteral("the measure is to begin"));
    run(QStringLiteral("mspEvent"),
        {{QStringLiteral("event"), QStringLiteral("SYS_ERR")}, {QStringLiteral("code"), 5}});
    showcase.hand->find(QStringLiteral("Acquitter"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Problème de Haute Tension")));
    run(QStringLiteral("release"));
    waitUntilIdle();
    QVERIFY(isSaid(showcase.window, QStringLiteral("Acquittez l'erreur avant une nouvelle mesure.")));
    showcase.hand->tap(QStringLiteral("Acquitter"));
    QVERIFY(!showcase.hand->see(QStringLiteral("Acquitter")));
    // The trigger is live again.
    waitForMsp(QStringLiteral("READY_HARD"));
    QVERIFY(m_simulator->control.command(QStringLiteral("press")).value(QLatin1String("opened")).toBool());
    showcase.hand->waitFor([&] { return showcase->directMeasures->count() > 1; },
                           QStringLiteral("the next measure is to begin"));
    run(QStringLiteral("release"));
    waitUntilIdle();
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstInterfaceInstrument)
#include "tst_interface_instrument.moc"
