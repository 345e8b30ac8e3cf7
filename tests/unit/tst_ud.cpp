// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QMetaMethod>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>

#include <algorithm>
#include <memory>
#include <string>

#include <rapidcheck.h>

#include "logrecorder.h"
#include "signallog.h"
#include "ud.h"

using Decision = DetectionDecisionEnumClass::DetectionDecision;
using Statut = UDStatutEnumClass::UDStatut;

namespace {

void watch(SignalLog &log, const UD &unit)
{
    log.watch(&unit, &UD::identifierChanged, QStringLiteral("identifier"));
    log.watch(&unit, &UD::statutChanged, QStringLiteral("statut"));
    log.watch(&unit, &UD::observationChanged, QStringLiteral("observation"));
    log.watch(&unit, &UD::detectionDecisionChanged, QStringLiteral("decision"));
    log.watch(&unit, &UD::localChanged, QStringLiteral("local"));
    log.watch(&unit, &UD::zoneChanged, QStringLiteral("zone"));
    log.watch(&unit, &UD::elementChanged, QStringLiteral("element"));
    log.watch(&unit, &UD::revetementChanged, QStringLiteral("revetement"));
    log.watch(&unit, &UD::substratChanged, QStringLiteral("substrat"));
    log.watch(&unit, &UD::measuresChanged, QStringLiteral("measures"));
}

/// Adds a measure for each letter: P positive, N negative, anything else not determined.
void measure(UD &unit, const char *letters)
{
    for (; *letters; ++letters) {
        auto *shot = new Measure;
        if (*letters == 'P')
            shot->setDetectionDecision(DetectionDecisionEnumClass::POSITIVE);
        else if (*letters == 'N')
            shot->setDetectionDecision(DetectionDecisionEnumClass::NEGATIVE);
        unit.measures()->append(shot);
    }
}

} // namespace

class TstUd : public QObject
{
    Q_OBJECT

private slots:
    void newUnit_isBlank()
    {
        QObject parent;
        auto *unit = new UD(&parent);
        QCOMPARE(unit->parent(), &parent);
        QCOMPARE(unit->identifier(), 0);
        QCOMPARE(unit->statut(), UDStatutEnumClass::RAW);
        QCOMPARE(unit->observation(), QString());
        QCOMPARE(unit->detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
        QCOMPARE(unit->local(), QString());
        QCOMPARE(unit->zone(), 'A');
        QCOMPARE(unit->element(), QString());
        QCOMPARE(unit->revetement(), QString());
        QCOMPARE(unit->substrat(), QString());
        QVERIFY(unit->measures());
        QVERIFY(unit->measures()->isEmpty());
    }

    void properties_areInOrder()
    {
        const QMetaObject &metaObject = UD::staticMetaObject;
        QStringList found;
        for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i) {
            const QMetaProperty property = metaObject.property(i);
            QVERIFY(property.isReadable());
            found.append(QStringLiteral("%1 %2 %3 %4")
                             .arg(QLatin1String(property.typeName()), QLatin1String(property.name()),
                                  property.isWritable() ? QStringLiteral("rw") : QStringLiteral("r"),
                                  QString::fromLatin1(property.notifySignal().methodSignature())));
        }
        QCOMPARE(found,
                 (QStringList{
                     QStringLiteral("int identifier rw identifierChanged()"),
                     QStringLiteral("UDStatutEnumClass::UDStatut statut rw statutChanged()"),
                     QStringLiteral("QString observation rw observationChanged()"),
                     QStringLiteral("DetectionDecisionEnumClass::DetectionDecision detectionDecision rw "
                                    "detectionDecisionChanged()"),
                     QStringLiteral("QString local rw localChanged()"),
                     QStringLiteral("char zone rw zoneChanged()"),
                     QStringLiteral("QString element rw elementChanged()"),
                     QStringLiteral("QString revetement rw revetementChanged()"),
                     QStringLiteral("QString substrat rw substratChanged()"),
                     QStringLiteral("MeasureListModel* measures r measuresChanged()"),
                 }));
    }

    void signals_areInOrder_andTheOnlyMethods()
    {
        const QMetaObject &metaObject = UD::staticMetaObject;
        QStringList found;
        for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
            QCOMPARE(metaObject.method(i).methodType(), QMetaMethod::Signal);
            found.append(QString::fromLatin1(metaObject.method(i).methodSignature()));
        }
        QCOMPARE(
            found,
            (QStringList{QStringLiteral("identifierChanged()"), QStringLiteral("statutChanged()"),
                         QStringLiteral("observationChanged()"), QStringLiteral("detectionDecisionChanged()"),
                         QStringLiteral("localChanged()"), QStringLiteral("zoneChanged()"),
                         QStringLiteral("elementChanged()"), QStringLiteral("revetementChanged()"),
                         QStringLiteral("substratChanged()"), QStringLiteral("measuresChanged()")}));
    }

    void setters_announceOnlyAChange()
    {
        UD unit;
        SignalLog log;
        watch(log, unit);
        for (int i = 0; i < 2; ++i) {
            unit.setIdentifier(3);
            unit.setStatut(UDStatutEnumClass::SKIPPED);
            unit.setObservation(QStringLiteral("Caché"));
            unit.setDetectionDecision(DetectionDecisionEnumClass::NO_DECISION);
            unit.setLocal(QStringLiteral("Cuisine"));
            unit.setZone('C');
            unit.setElement(QStringLiteral("Mur"));
            unit.setRevetement(QStringLiteral("Peinture"));
            unit.setSubstrat(QStringLiteral("Plâtre"));
        }
        QCOMPARE(log.text(),
                 QStringLiteral("identifier statut observation decision local zone element "
                                "revetement substrat"));
        QCOMPARE(unit.identifier(), 3);
        QCOMPARE(unit.statut(), UDStatutEnumClass::SKIPPED);
        QCOMPARE(unit.observation(), QStringLiteral("Caché"));
        QCOMPARE(unit.detectionDecision(), DetectionDecisionEnumClass::NO_DECISION);
        QCOMPARE(unit.local(), QStringLiteral("Cuisine"));
        QCOMPARE(unit.zone(), 'C');
        QCOMPARE(unit.element(), QStringLiteral("Mur"));
        QCOMPARE(unit.revetement(), QStringLiteral("Peinture"));
        QCOMPARE(unit.substrat(), QStringLiteral("Plâtre"));
    }

    void statut_isLoggedByItsLabel_data()
    {
        QTest::addColumn<int>("statut");
        QTest::addColumn<QString>("line");
        const QString text = QStringLiteral("INFO [Halvar Controller][UD]: Writing statut ");
        QTest::newRow("positive") << int(UDStatutEnumClass::POSITIVE) << text + QStringLiteral(" Positive");
        QTest::newRow("negative") << int(UDStatutEnumClass::NEGATIVE) << text + QStringLiteral(" Négative");
        QTest::newRow("skipped") << int(UDStatutEnumClass::SKIPPED) << text + QStringLiteral(" Non Mesurée");
        QTest::newRow("none of ours") << 4 << text.trimmed();
        QTest::newRow("negative number") << -1 << text.trimmed();
    }
    void statut_isLoggedByItsLabel()
    {
        QFETCH(int, statut);
        UD unit;
        LogRecorder log;
        unit.setStatut(static_cast<Statut>(statut));
        QCOMPARE(log.lines().size(), 1);
        QTEST(log.lines().constFirst(), "line");
    }

    void decision_isLoggedByItsLabel_data()
    {
        QTest::addColumn<int>("decision");
        QTest::addColumn<QString>("line");
        const QString text = QStringLiteral("INFO [Halvar Controller][UD]: Writing detectionDecision ");
        QTest::newRow("negative") << int(DetectionDecisionEnumClass::NEGATIVE)
                                  << text + QStringLiteral(" Négative");
        QTest::newRow("without French label")
            << int(DetectionDecisionEnumClass::COMPTON_ERROR) << text + QStringLiteral(" COMPTON_ERROR");
        QTest::newRow("none of ours") << 9 << text.trimmed();
    }
    void decision_isLoggedByItsLabel()
    {
        QFETCH(int, decision);
        UD unit;
        LogRecorder log;
        unit.setDetectionDecision(static_cast<Decision>(decision));
        QCOMPARE(log.lines().size(), 1);
        QTEST(log.lines().constFirst(), "line");
    }

    void continuedUnit_takesThePlaceAndTheNextZone()
    {
        QObject parent;
        UD source;
        source.setIdentifier(9);
        source.setStatut(UDStatutEnumClass::POSITIVE);
        source.setObservation(QStringLiteral("Caché"));
        source.setDetectionDecision(DetectionDecisionEnumClass::POSITIVE);
        source.setLocal(QStringLiteral("Cuisine"));
        source.setZone('E');
        source.setElement(QStringLiteral("Mur"));
        source.setRevetement(QStringLiteral("Peinture"));
        source.setSubstrat(QStringLiteral("Plâtre"));
        measure(source, "P");
        LogRecorder log;
        UD unit(&source, &parent);
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(unit.parent(), &parent);
        QCOMPARE(unit.local(), QStringLiteral("Cuisine"));
        QCOMPARE(unit.zone(), 'F');
        QCOMPARE(unit.element(), QStringLiteral("Mur"));
        QCOMPARE(unit.revetement(), QStringLiteral("Peinture"));
        QCOMPARE(unit.substrat(), QStringLiteral("Plâtre"));
        QCOMPARE(unit.identifier(), 0);
        QCOMPARE(unit.statut(), UDStatutEnumClass::RAW);
        QCOMPARE(unit.observation(), QString());
        QCOMPARE(unit.detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
        QVERIFY(unit.measures()->isEmpty());
    }

    void unitContinuedFromNone_isBlank()
    {
        UD unit(nullptr, nullptr);
        QCOMPARE(unit.zone(), 'A');
        QCOMPARE(unit.local(), QString());
    }

    void zoneBehindZ_isTheNextCharacter_data()
    {
        QTest::addColumn<char>("zone");
        QTest::addColumn<char>("next");
        QTest::newRow("Z") << 'Z' << '[';
        QTest::newRow("z") << 'z' << '{';
        QTest::newRow("last of all") << char(0x7F) << char(0x80);
        QTest::newRow("0xFF") << char(0xFF) << char(0);
    }
    void zoneBehindZ_isTheNextCharacter()
    {
        QFETCH(char, zone);
        UD source;
        source.setZone(zone);
        QTEST(UD(&source, nullptr).zone(), "next");
    }

    void statut_isDerived_data()
    {
        QTest::addColumn<QByteArray>("measures");
        QTest::addColumn<int>("nbMeasures");
        QTest::addColumn<int>("statut");
        QTest::addColumn<int>("decision");
        const auto positive = [](const char *name, const char *measures, int nbMeasures) {
            QTest::newRow(name) << QByteArray(measures) << nbMeasures << int(UDStatutEnumClass::POSITIVE)
                                << int(DetectionDecisionEnumClass::POSITIVE);
        };
        const auto negative = [](const char *name, const char *measures, int nbMeasures) {
            QTest::newRow(name) << QByteArray(measures) << nbMeasures << int(UDStatutEnumClass::NEGATIVE)
                                << int(DetectionDecisionEnumClass::NEGATIVE);
        };
        const auto unchanged = [](const char *name, const char *measures, int nbMeasures) {
            QTest::newRow(name) << QByteArray(measures) << nbMeasures << int(UDStatutEnumClass::RAW)
                                << int(DetectionDecisionEnumClass::NOT_DETERMINED);
        };
        positive("one positive", "P", 3);
        positive("positive before the third negative", "NNP", 3);
        negative("positive behind the second negative", "NNP", 2);
        negative("as many negatives as asked", "NNN", 3);
        negative("others between them", "xNxxNxN", 3);
        positive("others before the positive", "xxP", 1);
        unchanged("too few negatives", "NN", 3);
        unchanged("only others", "xxxx", 1);
        unchanged("no measures", "", 0);
        negative("none asked: the first negative decides", "xN", 0);
        negative("less than none asked", "N", -5);
    }
    void statut_isDerived()
    {
        QFETCH(QByteArray, measures);
        QFETCH(int, nbMeasures);
        UD unit;
        measure(unit, measures.constData());
        unit.updateStatut(nbMeasures);
        QTEST(int(unit.statut()), "statut");
        QTEST(int(unit.detectionDecision()), "decision");
    }

    void decision_isSetBeforeTheStatut()
    {
        UD unit;
        measure(unit, "P");
        SignalLog log;
        watch(log, unit);
        unit.updateStatut(1);
        QCOMPARE(log.text(), QStringLiteral("decision statut"));
    }

    void skippedUnit_isLeftAlone()
    {
        UD unit;
        unit.setStatut(UDStatutEnumClass::SKIPPED);
        measure(unit, "P");
        LogRecorder log;
        unit.updateStatut(1);
        QCOMPARE(unit.statut(), UDStatutEnumClass::SKIPPED);
        QCOMPARE(unit.detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("DEBUG [UD][updateStatut]: Received with nbMeasures !  1")});
    }

    void unitWithResult_keepsItWithoutAReasonToChange()
    {
        UD unit;
        unit.setStatut(UDStatutEnumClass::POSITIVE);
        unit.setDetectionDecision(DetectionDecisionEnumClass::POSITIVE);
        measure(unit, "xN");
        unit.updateStatut(2);
        QCOMPARE(unit.statut(), UDStatutEnumClass::POSITIVE);
        QCOMPARE(unit.detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
    }

    void everyMeasure_isLoggedBeforeTheResult()
    {
        UD unit;
        measure(unit, "xNPN");
        LogRecorder log;
        unit.updateStatut(2);
        QCOMPARE(log.lines(),
                 (QStringList{
                     QStringLiteral("DEBUG [UD][updateStatut]: Received with nbMeasures !  2"),
                     QStringLiteral("DEBUG [UD][MESURE inc]: AUTRE"),
                     QStringLiteral("DEBUG [UD][MESURE inc]: NEGATIVE"),
                     QStringLiteral("DEBUG [UD][MESURE inc]: POSITIVE"),
                     QStringLiteral("DEBUG [UD][MESURE inc]: NEGATIVE"),
                     QStringLiteral("INFO [Halvar Controller][UD]: Writing detectionDecision  Positive"),
                     QStringLiteral("INFO [Halvar Controller][UD]: Writing statut  Positive"),
                 }));
    }

    void measureDeletedBySomebodyElse_isPassedOver()
    {
        UD unit;
        measure(unit, "PN");
        delete unit.measures()->first();
        LogRecorder log(QsLogging::DebugLevel);
        unit.updateStatut(1);
        QCOMPARE(unit.statut(), UDStatutEnumClass::NEGATIVE);
        QCOMPARE(log.lines().filter(QStringLiteral("[UD][MESURE inc]")),
                 (QStringList{QStringLiteral("DEBUG [UD][MESURE inc]: AUTRE"),
                              QStringLiteral("DEBUG [UD][MESURE inc]: NEGATIVE")}));
    }

    void accuracyDecisions_countAsOthers()
    {
        for (int decision = DetectionDecisionEnumClass::NOT_DETERMINED;
             decision <= DetectionDecisionEnumClass::NO_DECISION; ++decision) {
            UD unit;
            unit.measures()->append(new Measure);
            unit.measures()->first()->setDetectionDecision(static_cast<Decision>(decision));
            unit.updateStatut(1);
            QCOMPARE(unit.statut(), UDStatutEnumClass::RAW);
        }
    }

    void derivation_isTheObviousOne()
    {
        QVERIFY(rc::check("first of: a positive, the n-th negative", [] {
            const auto letters = *rc::gen::container<std::string>(rc::gen::element('P', 'N', 'x'));
            const int wanted = *rc::gen::inRange(1, 6);
            UD unit;
            measure(unit, letters.c_str());
            unit.updateStatut(wanted);
            const std::size_t positive = letters.find('P');
            const std::string before = letters.substr(0, positive);
            const auto negatives = std::count(before.begin(), before.end(), 'N');
            const Statut expected = negatives >= wanted ? UDStatutEnumClass::NEGATIVE
                : positive != std::string::npos         ? UDStatutEnumClass::POSITIVE
                                                        : UDStatutEnumClass::RAW;
            RC_ASSERT(unit.statut() == expected);
        }));
    }

    void measures_belongToTheUnit()
    {
        QPointer<Measure> shot;
        {
            UD unit;
            measure(unit, "P");
            shot = unit.measures()->first();
            QCOMPARE(shot->parent(), unit.measures());
            QCOMPARE(unit.property("measures").value<MeasureListModel *>(), unit.measures());
        }
        QVERIFY(!shot);
    }

    void qml_readsAndWrites()
    {
        UD unit;
        measure(unit, "P");
        UDStatutEnumClass::declareQML();
        QQmlEngine engine;
        engine.rootContext()->setContextProperty(QStringLiteral("unit"), &unit);
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nimport Halvar 4.0\nQtObject {\n"
                          "  property bool skipped: unit.statut === UDStatutEnumClass.SKIPPED\n"
                          "  property int count: unit.measures.count\n"
                          "  property int zone: unit.zone\n"
                          "  Component.onCompleted: {\n"
                          "    unit.local = 'Cuisine';\n"
                          "    unit.statut = UDStatutEnumClass.SKIPPED;\n"
                          "  }\n}",
                          QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QCOMPARE(unit.local(), QStringLiteral("Cuisine"));
        QVERIFY(object->property("skipped").toBool());
        QCOMPARE(object->property("zone").toInt(), int('A'));
        measure(unit, "N");
        QCOMPARE(object->property("count").toInt(), 2);
    }
};

QTEST_GUILESS_MAIN(TstUd)
#include "tst_ud.moc"
