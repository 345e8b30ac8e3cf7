// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <functional>

#include <measure.h>
#include <ud.h>

#include <record.h>

Q_DECLARE_METATYPE(std::function<void(DiagnosticRecord &)>)

namespace {

DiagnosticRecord sample()
{
    MeasureRecord positive;
    positive.idNAP = 4;
    positive.concentration = 2.4123456789;
    positive.sigma = 0.123456789;
    positive.decision = QStringLiteral("POSITIVE");
    positive.localisation = QStringLiteral("CENTER");
    positive.degradation = QStringLiteral("DEGRADE");
    positive.conservation = QStringLiteral("Écaillé");
    MeasureRecord open = positive;
    open.idNAP = 5;
    open.decision = QStringLiteral("NOT_DETERMINED");

    UnitRecord unit;
    unit.room = QStringLiteral("Cuisine");
    unit.zone = QLatin1Char('B');
    unit.element = QStringLiteral("Mur");
    unit.substrate = QStringLiteral("Plâtre");
    unit.coating = QStringLiteral("Peinture");
    unit.observation = QStringLiteral("Côté fenêtre");
    unit.decision = QStringLiteral("POSITIVE");
    unit.statut = QStringLiteral("POSITIVE");
    unit.measures = {positive, open};

    DiagnosticRecord record;
    record.name = QStringLiteral("Immeuble");
    record.localization = QStringLiteral("Lyon");
    record.runs = true;
    record.accuracies = {{QStringLiteral("ACCURACY_INIT"), 1, QStringLiteral("ACCURACY_OK")}};
    record.units = {unit};
    return record;
}

} // namespace

class TstDiagnosticRecord : public QObject
{
    Q_OBJECT
private slots:
    void equalDiagnostics_haveNoDifference();
    void whatAFileDoesNotKeep_isNoDifference();
    void everyDifference_isFound_data();
    void everyDifference_isFound();
    void severalDifferences_areAllTold();
    void unit_isReadAsQmlSeesIt();
};

void TstDiagnosticRecord::equalDiagnostics_haveNoDifference()
{
    QCOMPARE(differences(sample(), sample()), QStringList());
    QCOMPARE(sample().measureCount(), 2);
}

void TstDiagnosticRecord::whatAFileDoesNotKeep_isNoDifference()
{
    DiagnosticRecord measured = sample();
    measured.units[0].measures[1].decision = QStringLiteral("COMPTON_ERROR");
    DiagnosticRecord loaded = sample();
    loaded.units[0].decision = QStringLiteral("NOT_DETERMINED");
    loaded.units[0].measures[0].concentration = 2.41235;
    loaded.units[0].measures[0].sigma = 0.123457;
    QCOMPARE(differences(measured, loaded), QStringList());
}

void TstDiagnosticRecord::everyDifference_isFound_data()
{
    QTest::addColumn<std::function<void(DiagnosticRecord &)>>("change");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, std::function<void(DiagnosticRecord &)> change,
                        const QString &line) { QTest::newRow(name) << std::move(change) << line; };
    row(
        "name", [](auto &d) { d.name.clear(); },
        QStringLiteral("diagnostic: name \"Immeuble\" came back as \"\""));
    row(
        "localization", [](auto &d) { d.localization = QStringLiteral("Nice"); },
        QStringLiteral("diagnostic: localization \"Lyon\" came back as \"Nice\""));
    row(
        "collapse", [](auto &d) { d.collapse = true; },
        QStringLiteral("diagnostic: collapse \"0\" came back as \"1\""));
    row(
        "runs", [](auto &d) { d.runs = false; },
        QStringLiteral("diagnostic: runs of paint \"1\" came back as \"0\""));
    row(
        "damp", [](auto &d) { d.damp = true; }, QStringLiteral("diagnostic: damp \"0\" came back as \"1\""));
    row(
        "accuracy number", [](auto &d) { d.accuracies[0].idNAP = 2; },
        QStringLiteral("ACCURACY_INIT: number \"1\" came back as \"2\""));
    row(
        "accuracy decision", [](auto &d) { d.accuracies[0].decision = QStringLiteral("ACCURACY_ERROR"); },
        QStringLiteral("ACCURACY_INIT: decision \"ACCURACY_OK\" came back as \"ACCURACY_ERROR\""));
    row(
        "accuracy lost", [](auto &d) { d.accuracies.clear(); },
        QStringLiteral("diagnostic: number of accuracy checks \"1\" came back as \"0\""));
    row(
        "unit lost", [](auto &d) { d.units.clear(); },
        QStringLiteral("diagnostic: number of units \"1\" came back as \"0\""));
    row(
        "unit twice", [](auto &d) { d.units.append(d.units.at(0)); },
        QStringLiteral("diagnostic: number of units \"1\" came back as \"2\""));
    row(
        "room", [](auto &d) { d.units[0].room = QStringLiteral("Salon"); },
        QStringLiteral("unit 1: room \"Cuisine\" came back as \"Salon\""));
    row(
        "zone", [](auto &d) { d.units[0].zone = QLatin1Char('A'); },
        QStringLiteral("unit 1: zone \"B\" came back as \"A\""));
    row(
        "element", [](auto &d) { d.units[0].element.clear(); },
        QStringLiteral("unit 1: element \"Mur\" came back as \"\""));
    row(
        "substrate", [](auto &d) { d.units[0].substrate = QStringLiteral("Platre"); },
        QStringLiteral("unit 1: substrate \"Plâtre\" came back as \"Platre\""));
    row(
        "coating", [](auto &d) { d.units[0].coating = QStringLiteral("Papier"); },
        QStringLiteral("unit 1: coating \"Peinture\" came back as \"Papier\""));
    row(
        "observation", [](auto &d) { d.units[0].observation.clear(); },
        QStringLiteral("unit 1: observation \"Côté fenêtre\" came back as \"\""));
    row(
        "statut", [](auto &d) { d.units[0].statut = QStringLiteral("RAW"); },
        QStringLiteral("unit 1: statut \"POSITIVE\" came back as \"RAW\""));
    row(
        "measure lost", [](auto &d) { d.units[0].measures.removeLast(); },
        QStringLiteral("unit 1: number of measures \"2\" came back as \"1\""));
    row(
        "measure's number", [](auto &d) { d.units[0].measures[1].idNAP = 6; },
        QStringLiteral("unit 1, measure 2: number \"5\" came back as \"6\""));
    row(
        "concentration", [](auto &d) { d.units[0].measures[0].concentration = 2.41236; },
        QStringLiteral("unit 1, measure 1: concentration \"2.41235\" came back as \"2.41236\""));
    row(
        "sigma", [](auto &d) { d.units[0].measures[0].sigma = 0; },
        QStringLiteral("unit 1, measure 1: sigma \"0.123457\" came back as \"0\""));
    row(
        "decision", [](auto &d) { d.units[0].measures[0].decision = QStringLiteral("NEGATIVE"); },
        QStringLiteral("unit 1, measure 1: decision \"POSITIVE\" came back as \"NEGATIVE\""));
    row(
        "localisation", [](auto &d) { d.units[0].measures[0].localisation = QStringLiteral("UP"); },
        QStringLiteral("unit 1, measure 1: localisation \"CENTER\" came back as \"UP\""));
    row(
        "degradation", [](auto &d) { d.units[0].measures[0].degradation = QStringLiteral("NON_DEGRADE"); },
        QStringLiteral("unit 1, measure 1: degradation \"DEGRADE\" came back as \"NON_DEGRADE\""));
    row(
        "conservation", [](auto &d) { d.units[0].measures[0].conservation.clear(); },
        QStringLiteral("unit 1, measure 1: conservation \"Écaillé\" came back as \"\""));
}

void TstDiagnosticRecord::everyDifference_isFound()
{
    QFETCH(const std::function<void(DiagnosticRecord &)>, change);
    QFETCH(const QString, line);
    DiagnosticRecord loaded = sample();
    change(loaded);
    QCOMPARE(differences(sample(), loaded), QStringList{line});
}

void TstDiagnosticRecord::severalDifferences_areAllTold()
{
    DiagnosticRecord loaded = sample();
    loaded.name = QStringLiteral("x");
    loaded.units[0].room = QStringLiteral("y");
    loaded.units[0].measures[1].sigma = 7;
    QCOMPARE(differences(sample(), loaded).size(), 3);
}

void TstDiagnosticRecord::unit_isReadAsQmlSeesIt()
{
    UD unit(nullptr);
    unit.setLocal(QStringLiteral("Chambre"));
    unit.setZone('C');
    unit.setStatut(UDStatutEnumClass::SKIPPED);
    auto *measure = new Measure(nullptr);
    measure->setConcentration(1.25);
    measure->setSigma(0.5);
    measure->setIdNAP(9);
    measure->setDetectionDecision(DetectionDecisionEnumClass::NEGATIVE);
    measure->setLocalisation(LocalisationEnumClass::DOWN);
    unit.measures()->append(measure);

    const UnitRecord record = UnitRecord::of(&unit);
    QCOMPARE(record.room, QStringLiteral("Chambre"));
    QCOMPARE(record.zone, QLatin1Char('C'));
    QCOMPARE(record.statut, QStringLiteral("SKIPPED"));
    QCOMPARE(record.decision, QStringLiteral("NOT_DETERMINED"));
    QCOMPARE(record.measures.size(), 1);
    QCOMPARE(record.measures.at(0).concentration, 1.25);
    QCOMPARE(record.measures.at(0).sigma, 0.5);
    QCOMPARE(record.measures.at(0).idNAP, 9);
    QCOMPARE(record.measures.at(0).decision, QStringLiteral("NEGATIVE"));
    QCOMPARE(record.measures.at(0).localisation, QStringLiteral("DOWN"));
    QCOMPARE(record.measures.at(0).degradation, QStringLiteral("NON_DEGRADE"));
}

QTEST_GUILESS_MAIN(TstDiagnosticRecord)
#include "tst_diagnostic_record.moc"
