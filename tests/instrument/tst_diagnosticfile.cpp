// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The diagnostic file: saved, loaded as it was saved, started blank.
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include <rapidcheck.h>

#include "diagnostictest.h"
#include "logrecorder.h"
#include "signallog.h"

using Decision = DetectionDecisionEnumClass;
using Degradation = DegradationStateEnumClass;
using Localisation = LocalisationEnumClass;
using Stage = AccuracyStageEnumClass;
using Statut = UDStatutEnumClass;

namespace {

UD *addUnit(UDListModel *units, const char *local, char zone, const char *element, const char *substrat,
            const char *revetement)
{
    auto *unit = new UD;
    unit->setLocal(QString::fromUtf8(local));
    unit->setZone(zone);
    unit->setElement(QString::fromUtf8(element));
    unit->setSubstrat(QString::fromUtf8(substrat));
    unit->setRevetement(QString::fromUtf8(revetement));
    units->append(unit);
    return unit;
}

Measure *addMeasure(UD *unit, int id, double concentration, double sigma,
                    Decision::DetectionDecision decision)
{
    auto *measure = new Measure;
    measure->setIdNAP(id);
    measure->setConcentration(concentration);
    measure->setSigma(sigma);
    measure->setDetectionDecision(decision);
    unit->measures()->append(measure);
    return measure;
}

} // namespace

class TstDiagnosticFile : public DiagnosticTest
{
    Q_OBJECT

private:
    /// What tests/data/diagnostic/full.xml says.
    void fillDiagnostic()
    {
        HalvarController &controller = *m->controller.controller;
        m->database().m_LocalItemsListModel->add(QStringLiteral("Cuisine"),
                                                 QStringLiteral("qrc:/cuisine.png"));
        m->database().m_LocalItemsListModel->add(QStringLiteral("Cuisine"),
                                                 QStringLiteral("qrc:/second.png"));
        m->database().m_ElementItemsListModel->add(QStringLiteral("Mur"), QStringLiteral("qrc:/mur.png"));
        controller.setFileName(QStringLiteral("Maison n°1"));
        controller.setLocalization(QStringLiteral("3, rue de l'Église & <cour>"));
        controller.effondrement = true;
        controller.humidite = true;
        controller.accuracyInit->setIdNAP(11);
        controller.accuracyInit->setDetectionDecision(Decision::ACCURACY_OK);
        controller.accuracyInterrupt->setIdNAP(12);
        controller.accuracyInterrupt->setDetectionDecision(Decision::ACCURACY_ERROR);
        UD *first = addUnit(controller.uds, "Cuisine", 'A', "Mur", "Plâtre", "Peinture");
        first->setIdentifier(77);
        first->setStatut(Statut::POSITIVE);
        first->setObservation(QStringLiteral("Écaille \"partout\""));
        Measure *shot = addMeasure(first, 101, 1.234567, 0.1, Decision::NEGATIVE);
        shot->setLocalisation(Localisation::UP);
        shot->setDegradationState(Degradation::DEGRADE);
        shot->setConservationState(QStringLiteral("Usure par friction"));
        addMeasure(first, 102, 12.0, 0.25, Decision::POSITIVE);
        addUnit(controller.uds, "Cuisine", 'B', "Porte", "Bois", "Vernis")->setIdentifier(5);
    }

private slots:
    // --- saving

    void diagnosticWithoutName_isNotSaved()
    {
        LogRecorder log;
        (*m)->saveFile();
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(m->files(), QStringList());
    }

    void blankDiagnostic_isTheReferenceDocument()
    {
        (*m)->setFileName(QStringLiteral("Vierge"));
        LogRecorder log;
        (*m)->saveFile();
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("INFO [Halvar Controller]: File \"%1\" saved.")
                                 .arg(m->path(QStringLiteral("Vierge")))});
        QCOMPARE(m->saved(QStringLiteral("Vierge")), DiagnosticFixture::reference("blank.xml"));
    }

    void fullDiagnostic_isTheReferenceDocument()
    {
        fillDiagnostic();
        (*m)->saveFile();
        QCOMPARE(m->saved(QStringLiteral("Maison n°1")), DiagnosticFixture::reference("full.xml"));
    }

    void diagnosticSavedTwice_isOneFile()
    {
        fillDiagnostic();
        (*m)->saveFile();
        (*m)->uds->remove(1);
        (*m)->saveFile();
        QCOMPARE(m->files(), QStringList{QStringLiteral("Maison n°1.xml")});
        QVERIFY(!m->saved(QStringLiteral("Maison n°1")).contains("Vernis"));
    }

    void temporaryFileOfAPowerCut_isOverwritten()
    {
        m->home.write(QStringLiteral("files/Vierge.tmp"), QByteArray(5000, 'x'));
        (*m)->setFileName(QStringLiteral("Vierge"));
        (*m)->saveFile();
        QCOMPARE(m->files(), QStringList{QStringLiteral("Vierge.xml")});
        QCOMPARE(m->saved(QStringLiteral("Vierge")), DiagnosticFixture::reference("blank.xml"));
    }

    void accuracies_areSavedByTheirDecisions_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("interrupt");
        QTest::addColumn<int>("last");
        QTest::addColumn<QString>("saved");
        const int none = Decision::NOT_DETERMINED;
        QTest::newRow("none") << none << none << none << QString();
        QTest::newRow("first confirmed")
            << int(Decision::ACCURACY_OK) << none << none << QStringLiteral("VED Confirmée");
        QTest::newRow("first not confirmed")
            << int(Decision::ACCURACY_ERROR) << none << none << QStringLiteral("VED Non Confirmée");
        QTest::newRow("uncalibrated first saves all three")
            << int(Decision::UNCALIBRATED) << none << int(Decision::NO_DECISION)
            << QStringLiteral("VED Non Calibrée, RST Indéterminée, VEF Pas de décision");
        QTest::newRow("uncalibrated interrupt alone is not saved")
            << none << int(Decision::UNCALIBRATED) << none << QString();
        QTest::newRow("uncalibrated last alone is not saved")
            << int(Decision::ACCURACY_OK) << none << int(Decision::UNCALIBRATED)
            << QStringLiteral("VED Confirmée");
        QTest::newRow("all three") << int(Decision::ACCURACY_OK) << int(Decision::ACCURACY_ERROR)
                                   << int(Decision::ACCURACY_OK)
                                   << QStringLiteral("VED Confirmée, RST Non Confirmée, VEF Confirmée");
        QTest::newRow("only the last")
            << none << none << int(Decision::ACCURACY_ERROR) << QStringLiteral("VEF Non Confirmée");
        QTest::newRow("other decisions are not saved") << int(Decision::POSITIVE) << int(Decision::NEGATIVE)
                                                       << int(Decision::COMPTON_ERROR) << QString();
    }
    void accuracies_areSavedByTheirDecisions()
    {
        QFETCH(int, first);
        QFETCH(int, interrupt);
        QFETCH(int, last);
        (*m)->setFileName(QStringLiteral("a"));
        (*m)->accuracyInit->setDetectionDecision(static_cast<Decision::DetectionDecision>(first));
        (*m)->accuracyInterrupt->setDetectionDecision(static_cast<Decision::DetectionDecision>(interrupt));
        (*m)->accuracyFinal->setDetectionDecision(static_cast<Decision::DetectionDecision>(last));
        (*m)->saveFile();
        static const QRegularExpression pattern(QStringLiteral(
            "<Justesse Id=\"-1\" Statut=\"(\\w+)\">\\s*<Resultat>([^<]*)</Resultat>\\s*</Justesse>"));
        QStringList found;
        auto match = pattern.globalMatch(QString::fromUtf8(m->saved(QStringLiteral("a"))));
        while (match.hasNext()) {
            const QRegularExpressionMatch one = match.next();
            found.append(one.captured(1) + QLatin1Char(' ') + one.captured(2));
        }
        QTEST(found.join(QStringLiteral(", ")), "saved");
        if (found.isEmpty())
            QVERIFY(m->saved(QStringLiteral("a")).contains("    <Justesses/>\n"));
    }

    void values_areSavedAsText_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("zero") << 0.0 << QByteArray("0");
        QTest::newRow("six digits") << 0.123456789 << QByteArray("0.123457");
        QTest::newRow("large") << 1234567.0 << QByteArray("1.23457e+06");
        QTest::newRow("small") << 0.000012345 << QByteArray("1.2345e-05");
        QTest::newRow("negative") << -2.5 << QByteArray("-2.5");
    }
    void values_areSavedAsText()
    {
        QFETCH(double, value);
        QFETCH(QByteArray, text);
        (*m)->setFileName(QStringLiteral("a"));
        addMeasure(addUnit((*m)->uds, "", 'A', "", "", ""), 1, value, value, Decision::POSITIVE);
        (*m)->saveFile();
        const QByteArray saved = m->saved(QStringLiteral("a"));
        QVERIFY(saved.contains("<Concentration>" + text + "</Concentration>"));
        QVERIFY(saved.contains("<Sigma>" + text + "</Sigma>"));
    }

    void rowsDeletedBySomebodyElse_areNotSaved()
    {
        fillDiagnostic();
        delete m->database().m_LocalItemsListModel->first();
        delete (*m)->uds->first()->measures()->first();
        (*m)->saveFile();
        QByteArray saved = m->saved(QStringLiteral("Maison n°1"));
        QVERIFY(!saved.contains("<Mesure Id=\"101\">"));
        QVERIFY(saved.contains("<Mesure Id=\"102\">"));
        QVERIFY(saved.contains("<Local Image=\"qrc:/second.png\">Cuisine</Local>"));
        delete (*m)->uds->first();
        (*m)->saveFile();
        saved = m->saved(QStringLiteral("Maison n°1"));
        QCOMPARE(saved.count("<Ud Id="), 1);
        QVERIFY(saved.contains("<Ud Id=\"1\">"));
        QVERIFY(saved.contains("Porte"));
    }

    void valuesOutsideTheirEnumerations_haveNoLabel()
    {
        (*m)->setFileName(QStringLiteral("a"));
        UD *added = addUnit((*m)->uds, "", 'A', "", "", "");
        added->setStatut(static_cast<Statut::UDStatut>(9));
        Measure *shot = addMeasure(added, 1, 1.0, 1.0, static_cast<Decision::DetectionDecision>(-7));
        shot->setLocalisation(static_cast<Localisation::Localisation>(99));
        shot->setDegradationState(static_cast<Degradation::DegradationState>(-1));
        (*m)->saveFile();
        const QByteArray saved = m->saved(QStringLiteral("a"));
        for (const char *element : {"Statut", "Resultat", "Localisation", "NatureDegradation"})
            QVERIFY2(saved.contains(QByteArray("<") + element + "></" + element + ">"), element);
    }

    // --- loading again

    void savedDiagnostic_isLoadedAgain()
    {
        fillDiagnostic();
        QStringList expected = m->state();
        (*m)->saveFile();
        (*m)->initFile();
        (*m)->loadFile(m->path(QStringLiteral("Maison n°1")));
        // The numbers of the units are their places in the file; the loaded ones start again at 0.
        expected.replaceInStrings(QRegularExpression(QStringLiteral("^unit\\|\\d+")),
                                  QStringLiteral("unit|0"));
        expected[0].replace(QStringLiteral("stage 1"), QStringLiteral("stage 3"));
        QCOMPARE(m->state(), expected);
        (*m)->saveFile();
        QCOMPARE(m->saved(QStringLiteral("Maison n°1")), DiagnosticFixture::reference("full.xml"));
    }

    // --- blank diagnostic

    void initFile_announcesInOrder()
    {
        fillDiagnostic();
        (*m)->setAccuracyStage(Stage::ACCURACY_FINAL);
        (*m)->effondrement = true;
        SignalLog log;
        HalvarController *controller = m->operator->();
        log.watch(controller, &HalvarController::fileNameChanged, QStringLiteral("name"));
        log.watch(controller, &HalvarController::localizationChanged, QStringLiteral("place"));
        log.watch(controller, &HalvarController::couluresChanged, QStringLiteral("coulures"));
        log.watch(controller, &HalvarController::effondrementChanged, QStringLiteral("effondrement"));
        log.watch(controller, &HalvarController::humiditeChanged, QStringLiteral("humidite"));
        log.watch(controller, &HalvarController::accuracyStageChanged, QStringLiteral("stage"));
        log.watch(controller->accuracyInit, &Measure::idNAPChanged, QStringLiteral("init"));
        log.watch(controller->accuracyInterrupt, &Measure::idNAPChanged, QStringLiteral("interrupt"));
        log.watch(controller->uds, &QAbstractItemModel::rowsRemoved, QStringLiteral("units"));
        controller->initFile();
        QCOMPARE(log.text(),
                 QStringLiteral("name place coulures effondrement humidite stage init interrupt "
                                "units"));
        QCOMPARE(m->state(),
                 (QStringList{QStringLiteral("file|||000|stage 1"), QStringLiteral("accuracy|-1|2"),
                              QStringLiteral("accuracy|-1|2"), QStringLiteral("accuracy|-1|2")}));
        log.clear();
        controller->initFile();
        QCOMPARE(log.text(), QStringLiteral("coulures effondrement humidite"));
    }

    // --- round trip

    void anyDiagnostic_isLoadedAsItWasSaved()
    {
        const auto text = [] {
            QString result;
            for (int code : *rc::gen::container<std::vector<int>>(rc::gen::oneOf(
                     rc::gen::inRange(0x20, 0x7F), rc::gen::inRange(0xA0, 0xD800),
                     rc::gen::element(int('&'), int('<'), int('\n'), int('\r'), int('\t'), int('"')))))
                result.append(QChar(code));
            return result;
        };
        QVERIFY(rc::check("save, load, save", [&] {
            m->clear();
            (*m)->setFileName(QStringLiteral("a"));
            (*m)->setLocalization(text());
            (*m)->coulures = *rc::gen::arbitrary<bool>();
            for (int i = *rc::gen::inRange(0, 4); i > 0; --i) {
                auto *added = new UD;
                added->setLocal(text());
                added->setZone(static_cast<char>(*rc::gen::inRange(0x21, 0x7F)));
                added->setElement(text());
                added->setSubstrat(text());
                added->setRevetement(text());
                added->setObservation(text());
                added->setStatut(static_cast<Statut::UDStatut>(*rc::gen::inRange(0, 4)));
                for (int shots = *rc::gen::inRange(0, 4); shots > 0; --shots) {
                    Measure *shot =
                        addMeasure(added, *rc::gen::arbitrary<int>(), *rc::gen::arbitrary<double>(),
                                   *rc::gen::arbitrary<double>(),
                                   static_cast<Decision::DetectionDecision>(*rc::gen::inRange(0, 3)));
                    shot->setLocalisation(static_cast<Localisation::Localisation>(*rc::gen::inRange(0, 6)));
                    shot->setDegradationState(
                        static_cast<Degradation::DegradationState>(*rc::gen::inRange(0, 4)));
                    shot->setConservationState(text());
                }
                (*m)->uds->append(added);
            }
            const QStringList before = m->state();
            (*m)->saveFile();
            const QByteArray saved = m->saved(QStringLiteral("a"));
            (*m)->initFile();
            LogRecorder log(QsLogging::WarnLevel);
            (*m)->loadFile(m->path(QStringLiteral("a")));
            RC_ASSERT(log.lines() == QStringList());
            RC_ASSERT(m->state() == before);
            (*m)->saveFile();
            RC_ASSERT(m->saved(QStringLiteral("a")) == saved);
        }));
    }
};

QTEST_GUILESS_MAIN(TstDiagnosticFile)
#include "tst_diagnosticfile.moc"
