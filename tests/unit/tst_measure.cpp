// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QMetaMethod>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

#include <deque>
#include <limits>
#include <memory>

#include <rapidcheck.h>

#include "logrecorder.h"
#include "measure.h"
#include "signallog.h"

using Decision = DetectionDecisionEnumClass::DetectionDecision;
using com::halvar::nap::DetectionResult;

namespace {

DetectionResult result(double value, double sigma, int decision)
{
    DetectionResult ret;
    ret.set_value(value);
    ret.set_sigma(sigma);
    ret.set_decision(static_cast<com::halvar::nap::DetectionDecision>(decision));
    return ret;
}

void watch(SignalLog &log, const Measure &measure)
{
    log.watch(&measure, &Measure::concentrationChanged, QStringLiteral("concentration"));
    log.watch(&measure, &Measure::sigmaChanged, QStringLiteral("sigma"));
    log.watch(&measure, &Measure::detectionDecisionChanged, QStringLiteral("decision"));
    log.watch(&measure, &Measure::localisationChanged, QStringLiteral("localisation"));
    log.watch(&measure, &Measure::degradationStateChanged, QStringLiteral("degradation"));
    log.watch(&measure, &Measure::conservationStateChanged, QStringLiteral("conservation"));
    log.watch(&measure, &Measure::idNAPChanged, QStringLiteral("idNAP"));
}

/// What updateResult() reports: the number of concentrations received so far.
int received(Measure &measure)
{
    LogRecorder log;
    measure.updateResult();
    return log.lines().value(0).section(QLatin1Char(' '), -1).toInt();
}

const QString concentrationLine =
    QStringLiteral("INFO [Halvar Controller][Measure]: New concentration sent.");
const QString sigmaLine = QStringLiteral("INFO [Halvar Controller][Measure]: New sigma sent.");
const QString decisionLine =
    QStringLiteral("DEBUG [Halvar Controller][Measure]: New detectionDecision sent.");

} // namespace

class TstMeasure : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        LocalisationEnumClass::declareQML();
        DetectionDecisionEnumClass::declareQML();
    }

    void newMeasure_isBlank()
    {
        QObject parent;
        const auto *measure = new Measure(&parent);
        QCOMPARE(measure->parent(), &parent);
        QCOMPARE(measure->concentration(), 0.0);
        QCOMPARE(measure->sigma(), 0.0);
        QCOMPARE(measure->detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
        QCOMPARE(measure->localisation(), LocalisationEnumClass::NOT_DETERMINED);
        QCOMPARE(measure->degradationState(), DegradationStateEnumClass::NON_DEGRADE);
        QCOMPARE(measure->conservationState(), QString());
        QCOMPARE(measure->idNAP(), -1);
        QCOMPARE(Measure().parent(), nullptr);
    }

    void properties_areInOrder()
    {
        const QMetaObject &metaObject = Measure::staticMetaObject;
        QStringList found;
        for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i) {
            const QMetaProperty property = metaObject.property(i);
            QVERIFY(property.isReadable());
            found.append(QStringLiteral("%1 %2 %3 %4")
                             .arg(QLatin1String(property.typeName()), QLatin1String(property.name()),
                                  property.isWritable() ? QStringLiteral("rw") : QStringLiteral("r"),
                                  QString::fromLatin1(property.notifySignal().methodSignature())));
        }
        QCOMPARE(
            found,
            (QStringList{
                QStringLiteral("double concentration r concentrationChanged(double)"),
                QStringLiteral("double sigma r sigmaChanged()"),
                QStringLiteral("DetectionDecisionEnumClass::DetectionDecision detectionDecision r "
                               "detectionDecisionChanged(DetectionDecisionEnumClass::DetectionDecision)"),
                QStringLiteral("LocalisationEnumClass::Localisation localisation rw "
                               "localisationChanged()"),
                QStringLiteral("DegradationStateEnumClass::DegradationState degradationState rw "
                               "degradationStateChanged()"),
                QStringLiteral("QString conservationState rw conservationStateChanged()"),
                QStringLiteral("int idNAP rw idNAPChanged()"),
            }));
    }

    void signals_areInOrder_andTheOnlyMethods()
    {
        const QMetaObject &metaObject = Measure::staticMetaObject;
        QStringList found;
        for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
            QCOMPARE(metaObject.method(i).methodType(), QMetaMethod::Signal);
            found.append(QString::fromLatin1(metaObject.method(i).name()));
        }
        QCOMPARE(
            found,
            (QStringList{QStringLiteral("concentrationChanged"), QStringLiteral("sigmaChanged"),
                         QStringLiteral("detectionDecisionChanged"), QStringLiteral("localisationChanged"),
                         QStringLiteral("degradationStateChanged"),
                         QStringLiteral("conservationStateChanged"), QStringLiteral("idNAPChanged")}));
    }

    void plainSetters_announceOnlyAChange()
    {
        Measure measure;
        SignalLog log;
        watch(log, measure);
        for (int i = 0; i < 2; ++i) {
            measure.setLocalisation(LocalisationEnumClass::UP);
            measure.setDegradationState(DegradationStateEnumClass::DEGRADE);
            measure.setIdNAP(7);
        }
        QCOMPARE(log.text(), QStringLiteral("localisation degradation idNAP"));
        QCOMPARE(measure.localisation(), LocalisationEnumClass::UP);
        QCOMPARE(measure.degradationState(), DegradationStateEnumClass::DEGRADE);
        QCOMPARE(measure.idNAP(), 7);
    }

    void conservationState_isAnnouncedByDegradationStateChanged()
    {
        Measure measure;
        SignalLog log;
        watch(log, measure);
        measure.setConservationState(QStringLiteral("Usure"));
        measure.setConservationState(QStringLiteral("Usure"));
        QCOMPARE(log.text(), QStringLiteral("degradation"));
        QCOMPARE(measure.conservationState(), QStringLiteral("Usure"));
    }

    void newValues_areAnnouncedAndLogged()
    {
        Measure measure;
        SignalLog signalLog;
        watch(signalLog, measure);
        QSignalSpy concentration(&measure, &Measure::concentrationChanged);
        QSignalSpy decision(&measure, &Measure::detectionDecisionChanged);
        LogRecorder log;
        measure.setConcentration(1.25);
        measure.setSigma(0.5);
        measure.setDetectionDecision(DetectionDecisionEnumClass::POSITIVE);
        QCOMPARE(signalLog.text(), QStringLiteral("concentration sigma decision"));
        QCOMPARE(concentration.value(0).value(0).toDouble(), 1.25);
        QCOMPARE(decision.value(0).value(0).value<Decision>(), DetectionDecisionEnumClass::POSITIVE);
        QCOMPARE(log.lines(), (QStringList{concentrationLine, sigmaLine, decisionLine}));
        QCOMPARE(measure.concentration(), 1.25);
        QCOMPARE(measure.sigma(), 0.5);
        QCOMPARE(measure.detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
    }

    void listener_readsTheNewValue()
    {
        Measure measure;
        double seen = -1;
        connect(&measure, &Measure::concentrationChanged, this, [&] { seen = measure.concentration(); });
        measure.setConcentration(2.5);
        QCOMPARE(seen, 2.5);
    }

    void sameConcentrationTwice_isOneChangeAndTwoReceivedValues()
    {
        Measure measure;
        SignalLog log;
        watch(log, measure);
        measure.setConcentration(1.0);
        measure.setConcentration(1.0);
        QCOMPARE(log.text(), QStringLiteral("concentration"));
        QCOMPARE(received(measure), 2);
        // Both entered the history: with two more values the first 1.0 is the fourth newest.
        measure.setConcentration(2.0);
        measure.setConcentration(3.0);
        measure.updateResult();
        QCOMPARE(measure.concentration(), 1.0);
    }

    void onlyConcentrations_countAsReceived()
    {
        Measure measure;
        for (int i = 0; i < 10; ++i) {
            measure.setSigma(i);
            measure.setDetectionDecision(i % 2 ? DetectionDecisionEnumClass::POSITIVE
                                               : DetectionDecisionEnumClass::NEGATIVE);
        }
        QCOMPARE(received(measure), 0);
        QCOMPARE(measure.sigma(), 9.0);
    }

    void serviceResult_isTakenOverInOrder()
    {
        Measure measure;
        SignalLog log;
        watch(log, measure);
        measure.setDetectionResult(result(1.2, 0.3, com::halvar::nap::NEGATIVE));
        QCOMPARE(log.text(), QStringLiteral("concentration sigma decision"));
        QCOMPARE(measure.concentration(), 1.2);
        QCOMPARE(measure.sigma(), 0.3);
        QCOMPARE(measure.detectionDecision(), DetectionDecisionEnumClass::NEGATIVE);
    }

    void serviceResultWithoutDecision_changesNothing()
    {
        Measure measure;
        measure.setDetectionResult(result(1.2, 0.3, com::halvar::nap::NEGATIVE));
        SignalLog log;
        watch(log, measure);
        DetectionResult start;
        start.set_value(5.0);
        start.set_sigma(5.0);
        measure.setDetectionResult(start);
        QCOMPARE(log.text(), QString());
        QCOMPARE(measure.concentration(), 1.2);
        QCOMPARE(received(measure), 1);
    }

    void serviceResultWithoutValues_readsAsZero()
    {
        Measure measure;
        measure.setDetectionResult(result(1.2, 0.3, com::halvar::nap::NEGATIVE));
        DetectionResult bare;
        bare.set_decision(com::halvar::nap::POSITIVE);
        measure.setDetectionResult(bare);
        QCOMPARE(measure.concentration(), 0.0);
        QCOMPARE(measure.sigma(), 0.0);
        QCOMPARE(measure.detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
    }

    void serviceDecision_isTheSameNumber_data()
    {
        QTest::addColumn<int>("decision");
        for (int decision = 0; decision <= 8; ++decision)
            QTest::addRow("%d", decision) << decision;
        QTest::newRow("of a newer service") << 42;
        QTest::newRow("negative") << -1;
    }
    void serviceDecision_isTheSameNumber()
    {
        QFETCH(int, decision);
        Measure measure;
        measure.setDetectionResult(result(1.0, 0.1, decision));
        QCOMPARE(int(measure.detectionDecision()), decision);
        QCOMPARE(measure.property("detectionDecision").toInt(), decision);
    }

    void updateResult_withFewValues_changesNothing()
    {
        Measure measure;
        for (int i = 1; i <= 3; ++i)
            measure.setDetectionResult(result(i, 0.1 * i, com::halvar::nap::NEGATIVE));
        SignalLog signalLog;
        watch(signalLog, measure);
        LogRecorder log;
        measure.updateResult();
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("DEBUG [Halvar Controller][Measure]: updateResult:  3")});
        QCOMPARE(signalLog.text(), QString());
        QCOMPARE(measure.concentration(), 3.0);
        QCOMPARE(received(measure), 3);
    }

    void updateResult_afterFourValues_restoresTheFirst()
    {
        Measure measure;
        measure.setDetectionResult(result(1.0, 0.1, com::halvar::nap::POSITIVE));
        measure.setDetectionResult(result(2.0, 0.2, com::halvar::nap::NEGATIVE));
        measure.setDetectionResult(result(3.0, 0.3, com::halvar::nap::NEGATIVE));
        measure.setDetectionResult(result(4.0, 0.4, com::halvar::nap::NEGATIVE));
        SignalLog signalLog;
        watch(signalLog, measure);
        LogRecorder log;
        measure.updateResult();
        QCOMPARE(measure.concentration(), 1.0);
        QCOMPARE(measure.sigma(), 0.1);
        QCOMPARE(measure.detectionDecision(), DetectionDecisionEnumClass::POSITIVE);
        QCOMPARE(signalLog.text(), QStringLiteral("concentration sigma decision"));
        QCOMPARE(log.lines(),
                 (QStringList{QStringLiteral("DEBUG [Halvar Controller][Measure]: updateResult:  4"),
                              concentrationLine, sigmaLine, decisionLine}));
    }

    void updateResult_withoutDecisions_givesNoVerdict()
    {
        Measure measure;
        for (int i = 1; i <= 4; ++i)
            measure.setConcentration(i);
        measure.updateResult();
        QCOMPARE(measure.concentration(), 1.0);
        QCOMPARE(measure.sigma(), 0.0);
        QCOMPARE(measure.detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
    }

    void updateResult_entersTheHistoryItself()
    {
        Measure measure;
        for (int i = 1; i <= 5; ++i)
            measure.setDetectionResult(result(i, 0.1 * i, i % 3));
        measure.updateResult(); // 2, then the history is 2 5 4 3
        QCOMPARE(measure.concentration(), 2.0);
        QCOMPARE(measure.detectionDecision(), Decision(2));
        measure.updateResult();
        QCOMPARE(measure.concentration(), 3.0);
        QCOMPARE(measure.sigma(), 0.1 * 3);
        QCOMPARE(measure.detectionDecision(), Decision(0));
    }

    void reset_blanksInOrder()
    {
        Measure measure;
        measure.setDetectionResult(result(1.0, 0.1, com::halvar::nap::POSITIVE));
        measure.setLocalisation(LocalisationEnumClass::LEFT);
        measure.setDegradationState(DegradationStateEnumClass::DEGRADE);
        measure.setConservationState(QStringLiteral("Usure"));
        measure.setIdNAP(12);
        SignalLog log;
        watch(log, measure);
        measure.reset();
        QCOMPARE(log.text(),
                 QStringLiteral("concentration sigma decision localisation degradation degradation idNAP"));
        QCOMPARE(measure.concentration(), 0.0);
        QCOMPARE(measure.sigma(), 0.0);
        QCOMPARE(measure.detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
        QCOMPARE(measure.localisation(), LocalisationEnumClass::NOT_DETERMINED);
        QCOMPARE(measure.degradationState(), DegradationStateEnumClass::NON_DEGRADE);
        QCOMPARE(measure.conservationState(), QString());
        QCOMPARE(measure.idNAP(), -1);
        QCOMPARE(received(measure), 2);
    }

    void resetOfABlankMeasure_isSilent_butEntersTheHistories()
    {
        Measure measure;
        SignalLog log;
        watch(log, measure);
        measure.reset();
        QCOMPARE(log.text(), QString());
        QCOMPARE(received(measure), 1);
        for (int i = 1; i <= 3; ++i)
            measure.setDetectionResult(result(i, i, com::halvar::nap::NEGATIVE));
        measure.updateResult();
        QCOMPARE(measure.concentration(), 0.0);
        QCOMPARE(measure.sigma(), 0.0);
        QCOMPARE(measure.detectionDecision(), DetectionDecisionEnumClass::NOT_DETERMINED);
    }

    void lineBelowTheLevel_isNotWritten()
    {
        Measure measure;
        LogRecorder log(QsLogging::WarnLevel);
        SignalLog signalLog;
        watch(signalLog, measure);
        measure.setDetectionResult(result(1.0, 0.1, com::halvar::nap::POSITIVE));
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(signalLog.text(), QStringLiteral("concentration sigma decision"));
    }

    void valueThatIsNoNumber_isKept()
    {
        Measure measure;
        measure.setConcentration(std::numeric_limits<double>::quiet_NaN());
        QVERIFY(qIsNaN(measure.concentration()));
        measure.setSigma(std::numeric_limits<double>::infinity());
        QVERIFY(qIsInf(measure.sigma()));
    }

    void history_behavesLikeTheNaiveOne()
    {
        QVERIFY(rc::check("results and settlings in any order", [] {
            struct Received
            {
                double value;
                double sigma;
                int decision;
            };
            Measure measure;
            std::deque<Received> naive; // newest first
            Received shown{0.0, 0.0, DetectionDecisionEnumClass::NOT_DETERMINED};
            for (int step : *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 12))) {
                if (step < 9) {
                    shown = {0.5 * step, 0.25 * step, step % 9};
                    measure.setDetectionResult(result(shown.value, shown.sigma, shown.decision));
                    naive.push_front(shown);
                } else {
                    measure.updateResult();
                    if (naive.size() > 3) {
                        shown = naive[3];
                        naive.push_front(shown);
                    }
                }
                RC_ASSERT(measure.concentration() == shown.value);
                RC_ASSERT(measure.sigma() == shown.sigma);
                RC_ASSERT(int(measure.detectionDecision()) == shown.decision);
            }
        }));
    }

    void qml_bindsAndWrites()
    {
        Measure measure;
        QQmlEngine engine;
        engine.rootContext()->setContextProperty(QStringLiteral("measure"), &measure);
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nimport Halvar 4.0\nQtObject {\n"
                          "  property double value: measure.concentration\n"
                          "  property bool positive: measure.detectionDecision"
                          " === DetectionDecisionEnumClass.POSITIVE\n"
                          "  Component.onCompleted: {\n"
                          "    measure.localisation = LocalisationEnumClass.DOWN;\n"
                          "    measure.conservationState = 'Usure';\n"
                          "  }\n}",
                          QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QCOMPARE(measure.localisation(), LocalisationEnumClass::DOWN);
        QCOMPARE(measure.conservationState(), QStringLiteral("Usure"));
        measure.setDetectionResult(result(3.5, 0.1, com::halvar::nap::POSITIVE));
        QCOMPARE(object->property("value").toDouble(), 3.5);
        QVERIFY(object->property("positive").toBool());
    }
};

QTEST_GUILESS_MAIN(TstMeasure)
#include "tst_measure.moc"
