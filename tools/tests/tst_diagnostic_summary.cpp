// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <summary.h>

class TstDiagnosticSummary : public QObject
{
    Q_OBJECT
private slots:
    void columns_areAsWideAsTheirWidestCell();
    void summary_showsEverythingThatWasRecorded();
    void summaryOfABlankDiagnostic_saysSo();
};

void TstDiagnosticSummary::columns_areAsWideAsTheirWidestCell()
{
    Table table({QStringLiteral("Room"), QStringLiteral("x")});
    table.add({QStringLiteral("Entrée"), QStringLiteral("1\n22")});
    table.add({QStringLiteral("Hall")});
    QCOMPARE(table.text(),
             QStringLiteral("Room    x\n"
                            "──────────\n"
                            "Entrée  1\n"
                            "        22\n"
                            "Hall\n"));
}

void TstDiagnosticSummary::summary_showsEverythingThatWasRecorded()
{
    MeasureRecord positive;
    positive.idNAP = 4;
    positive.concentration = 12.345;
    positive.sigma = 0.126;
    positive.decision = QStringLiteral("POSITIVE");
    MeasureRecord negative;
    negative.concentration = 0.1;
    negative.sigma = 0.05;
    negative.decision = QStringLiteral("NEGATIVE");

    UnitRecord measured;
    measured.room = QStringLiteral("Entrée");
    measured.zone = QLatin1Char('A');
    measured.element = QStringLiteral("Porte");
    measured.substrate = QStringLiteral("Bois");
    measured.coating = QStringLiteral("Peinture");
    measured.measures = {negative, positive};
    measured.decision = QStringLiteral("POSITIVE");
    measured.statut = QStringLiteral("POSITIVE");
    UnitRecord skipped = measured;
    skipped.zone = QLatin1Char('B');
    skipped.measures.clear();
    skipped.observation = QStringLiteral("Inaccessible");
    skipped.statut = QStringLiteral("SKIPPED");
    UnitRecord raw = skipped;
    raw.observation.clear();
    raw.statut = QStringLiteral("RAW");

    DiagnosticRecord diagnostic;
    diagnostic.name = QStringLiteral("Maison");
    diagnostic.localization = QStringLiteral("Nîmes");
    diagnostic.damp = true;
    diagnostic.collapse = true;
    diagnostic.accuracies = {{QStringLiteral("ACCURACY_INIT"), 1, QStringLiteral("ACCURACY_OK")},
                             {QStringLiteral("ACCURACY_INTERRUPT"), -1, QStringLiteral("NOT_DETERMINED")},
                             {QStringLiteral("ACCURACY_FINAL"), 9, QStringLiteral("ACCURACY_ERROR")}};
    diagnostic.units = {measured, skipped, raw};

    const QStringList expected{
        QStringLiteral("Maison, Nîmes"),
        QStringLiteral(""),
        QStringLiteral(
            "Unit  Room    Zone  Element  Substrate / coating  Measures                Decision  Statut"),
        QStringLiteral("─────────────────────────────────────────────────────────────────────────────────────"
                       "──────────"),
        QStringLiteral(
            "1     Entrée  A     Porte    Bois / Peinture       0.10 ± 0.05  Négative  Positive  Positive"),
        QStringLiteral("                                                  12.35 ± 0.13  Positive"),
        QStringLiteral("2     Entrée  B     Porte    Bois / Peinture      Inaccessible                      "
                       "Non Mesurée"),
        QStringLiteral(
            "3     Entrée  B     Porte    Bois / Peinture                                        —"),
        QStringLiteral(""),
        QStringLiteral("Direct measures:  12.35 ± 0.13 Positive; 0.10 ± 0.05 Négative"),
        QStringLiteral("Accuracy checks:  init Confirmée (measure 1), final Non Confirmée (measure 9)"),
        QStringLiteral("Building:         effondrement, humidité"),
        QString()};
    QCOMPARE(summary(diagnostic, {positive, negative}).split(QLatin1Char('\n')), expected);
}

void TstDiagnosticSummary::summaryOfABlankDiagnostic_saysSo()
{
    const QString text = summary(DiagnosticRecord(), {});
    QVERIFY(text.contains(QStringLiteral("Direct measures:  none\n")));
    QVERIFY(text.contains(QStringLiteral("Accuracy checks:  none\n")));
    QVERIFY(text.contains(QStringLiteral("Building:         nothing noted\n")));
}

QTEST_GUILESS_MAIN(TstDiagnosticSummary)
#include "tst_diagnostic_summary.moc"
