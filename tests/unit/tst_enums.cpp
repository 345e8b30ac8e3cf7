// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QMetaEnum>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <limits>
#include <memory>
#include <type_traits>

#include "enums.h"
#include "labels.h"

namespace {

/// "KEY=value KEY=value ..." of every enumeration that the class itself declares, in order.
QString published(const QMetaObject &holder)
{
    QStringList result;
    for (int i = holder.enumeratorOffset(); i < holder.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = holder.enumerator(i);
        result.append(QString::fromLatin1(enumeration.name()) + QLatin1Char(':'));
        for (int key = 0; key < enumeration.keyCount(); ++key)
            result.append(QStringLiteral("%1=%2")
                              .arg(QString::fromLatin1(enumeration.key(key)))
                              .arg(enumeration.value(key)));
    }
    return result.join(QLatin1Char(' '));
}

template <std::size_t N>
QStringList labels(const char *const (&table)[N])
{
    QStringList result;
    for (const char *label : table)
        result.append(QString::fromUtf8(label));
    return result;
}

void declareAll()
{
    AccuracyStageEnumClass::declareQML();
    AcquisitionModeEnumClass::declareQML();
    BranchModeEnumClass::declareQML();
    MeasureModeEnumClass::declareQML();
    DetectionDecisionEnumClass::declareQML();
    UDStatutEnumClass::declareQML();
    DegradationStateEnumClass::declareQML();
    LocalisationEnumClass::declareQML();
    CalibrationEnumClass::declareQML();
    BatteryLevelsEnumClass::declareQML();
}

template <class Holder>
void checkConstructors()
{
    QObject parent;
    const Holder plain;
    QCOMPARE(plain.parent(), nullptr);
    auto *child = new Holder(&parent);
    QCOMPARE(child->parent(), &parent);
    const Holder copy(*child);
    QCOMPARE(copy.parent(), nullptr);
    QVERIFY((std::has_virtual_destructor<Holder>::value));
    QVERIFY((std::is_base_of<QObject, Holder>::value));
    QVERIFY((!std::is_convertible<QObject *, Holder>::value));
}

const QMetaObject *const holders[] = {
    &AccuracyStageEnumClass::staticMetaObject,     &AcquisitionModeEnumClass::staticMetaObject,
    &BranchModeEnumClass::staticMetaObject,        &MeasureModeEnumClass::staticMetaObject,
    &DetectionDecisionEnumClass::staticMetaObject, &UDStatutEnumClass::staticMetaObject,
    &DegradationStateEnumClass::staticMetaObject,  &LocalisationEnumClass::staticMetaObject,
    &CalibrationEnumClass::staticMetaObject,       &BatteryLevelsEnumClass::staticMetaObject,
};

} // namespace

class TstEnums : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { declareAll(); }

    void holder_publishesItsOneEnumeration_data()
    {
        QTest::addColumn<QString>("found");
        QTest::addColumn<QString>("expected");
        const char *const expected[] = {
            "AccuracyStage: ACCURACY_LIVE=0 ACCURACY_INIT=1 ACCURACY_INTERRUPT=2 ACCURACY_FINAL=3 "
            "NB_ACCURACYSTAGE=4",
            "AcquisitionMode: NONE=0 START_MEASURE=1 MEASURE=2 ACCURACY=3 CALIBRATION=4 NB_ACQUISITIONMODE=5",
            "BranchMode: NONE=0 BRANCH_DIRECT=1 BRANCH_INDEXED=2 NB_BRANCHMODE=3",
            "MeasureMode: TRIGGER=0 AUTO=1 DEFINED=2 NB_MEASUREMODE=3",
            "DetectionDecision: POSITIVE=0 NEGATIVE=1 NOT_DETERMINED=2 INSUFFICIENT_ACQTIME=3 "
            "COMPTON_ERROR=4 ACCURACY_OK=5 ACCURACY_ERROR=6 UNCALIBRATED=7 NO_DECISION=8",
            "UDStatut: RAW=0 POSITIVE=1 NEGATIVE=2 SKIPPED=3",
            "DegradationState: NON_DEGRADE=0 NON_VISIBLE=1 ETAT_USAGE=2 DEGRADE=3",
            "Localisation: LEFT=0 UP=1 CENTER=2 DOWN=3 RIGHT=4 NOT_DETERMINED=5",
            "CalibrationStatut: NOT_STARTED=0 IN_PROGRESS=1 ERROR=2 TOO_MANY_ERRORS=3 DONE=4",
            "BatteryLevels: LEVEL_UNKNOW=0 LEVEL_CRITICAL=3300000 LEVEL_VERY_LOW=3500000 LEVEL_LOW=3700000 "
            "LEVEL_GOOD=3900000 LEVEL_FULL=3900001",
        };
        for (std::size_t i = 0; i < std::size(holders); ++i)
            QTest::newRow(holders[i]->className())
                << published(*holders[i]) << QString::fromUtf8(expected[i]);
    }
    void holder_publishesItsOneEnumeration()
    {
        QFETCH(QString, found);
        QTEST(found, "expected");
    }

    void holder_hasThreeConstructorsAndAVirtualDestructor()
    {
        checkConstructors<AccuracyStageEnumClass>();
        checkConstructors<AcquisitionModeEnumClass>();
        checkConstructors<BranchModeEnumClass>();
        checkConstructors<MeasureModeEnumClass>();
        checkConstructors<DetectionDecisionEnumClass>();
        checkConstructors<UDStatutEnumClass>();
        checkConstructors<DegradationStateEnumClass>();
        checkConstructors<LocalisationEnumClass>();
        checkConstructors<CalibrationEnumClass>();
        checkConstructors<BatteryLevelsEnumClass>();
    }

    void enumeration_isAMetaTypeUnderItsFullName_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const QMetaObject *holder : holders) {
            const QMetaEnum enumeration = holder->enumerator(holder->enumeratorOffset());
            QTest::newRow(holder->className()) << QByteArray(holder->className()) + "::" + enumeration.name();
        }
    }
    void enumeration_isAMetaTypeUnderItsFullName()
    {
        QFETCH(QByteArray, name);
        QVERIFY(QMetaType::type(name.constData()) != QMetaType::UnknownType);
        QCOMPARE(QByteArray(QMetaType::typeName(QMetaType::type(name.constData()))), name);
    }

    void labels_areKeptToTheLetter_data()
    {
        QTest::addColumn<QStringList>("found");
        QTest::addColumn<QString>("expected");
        QTest::newRow("localisation") << labels(LocalisationEnumClass::LocalisationNames)
                                      << QStringLiteral("Gauche|Haut|Centre|Bas|Droite|");
        QTest::newRow("degradation") << labels(DegradationStateEnumClass::DegradationStateNames)
                                     << QStringLiteral("|Non Visible|Etat d'Usage|Dégradé");
        QTest::newRow("decision") << labels(DetectionDecisionEnumClass::DetectionDecisionNames)
                                  << QStringLiteral("Positive|Négative|Indéterminée|INSUFFICIENT_ACQTIME|"
                                                    "COMPTON_ERROR|Confirmée|Non Confirmée|Non Calibrée|"
                                                    "Pas de décision");
        QTest::newRow("statut") << labels(UDStatutEnumClass::UDStatutNames)
                                << QStringLiteral("|Positive|Négative|Non Mesurée");
        QTest::newRow("measure mode")
            << labels(MeasureModeEnumClass::MeasureModeNames) << QStringLiteral("TRIGGER|AUTO|DEFINED");
        QTest::newRow("branch mode") << labels(BranchModeEnumClass::BranchModeNames)
                                     << QStringLiteral("NONE|DIRECT|INDEXED");
        QTest::newRow("acquisition mode")
            << labels(AcquisitionModeEnumClass::AcquisitionModeNames)
            << QStringLiteral("NONE|START_MEASURE|MEASURE|ACCURACY|CALIBRATION");
        QTest::newRow("accuracy stage") << labels(AccuracyStageEnumClass::AccuracyStageNames)
                                        << QStringLiteral("LIVE|INIT|INTERRUPT|FINAL");
    }
    void labels_areKeptToTheLetter()
    {
        QFETCH(QStringList, found);
        QFETCH(QString, expected);
        QCOMPARE(found.join(QLatin1Char('|')), expected);
    }

    void accentedLabel_isUtf8()
    {
        QCOMPARE(QByteArray(DetectionDecisionEnumClass::DetectionDecisionNames[1]),
                 QByteArray("N\xc3\xa9gative"));
    }

    void valueWithoutLabel_hasAnEmptyName()
    {
        const auto &names = AccuracyStageEnumClass::AccuracyStageNames;
        QCOMPARE(halvar::nameOf(names, AccuracyStageEnumClass::ACCURACY_FINAL), "FINAL");
        QCOMPARE(halvar::nameOf(names, AccuracyStageEnumClass::NB_ACCURACYSTAGE), "");
        QCOMPARE(halvar::nameOf(names, -1), "");
        QCOMPARE(halvar::nameOf(names, std::numeric_limits<int>::max()), "");
    }

    void serviceDecision_isTheSameNumber()
    {
        QCOMPARE(static_cast<DetectionDecisionEnumClass::DetectionDecision>(2),
                 DetectionDecisionEnumClass::NOT_DETERMINED);
        QCOMPARE(static_cast<DetectionDecisionEnumClass::DetectionDecision>(7),
                 DetectionDecisionEnumClass::UNCALIBRATED);
    }

    void qml_readsEveryKeyByItsHolder_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<int>("value");
        for (const QMetaObject *holder : holders) {
            const QMetaEnum enumeration = holder->enumerator(holder->enumeratorOffset());
            for (int key = 0; key < enumeration.keyCount(); ++key) {
                const QByteArray expression = QByteArray(holder->className()) + '.' + enumeration.key(key);
                QTest::newRow(expression.constData())
                    << QString::fromLatin1(expression) << enumeration.value(key);
            }
        }
    }
    void qml_readsEveryKeyByItsHolder()
    {
        QFETCH(QString, expression);
        QFETCH(int, value);
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nimport Halvar 4.0\nQtObject { property int value: "
                              + expression.toUtf8() + " }",
                          QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QCOMPARE(object->property("value").toInt(), value);
    }

    void qml_cannotCreateAHolder_data()
    {
        QTest::addColumn<QByteArray>("holder");
        for (const QMetaObject *holder : holders)
            QTest::newRow(holder->className()) << QByteArray(holder->className());
    }
    void qml_cannotCreateAHolder()
    {
        QFETCH(QByteArray, holder);
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import Halvar 4.0\n" + holder + " {}", QUrl());
        QVERIFY(component.isError());
        QVERIFY2(component.errorString().contains(QString::fromLatin1(holder)
                                                  + QStringLiteral(" only holds an enumeration")),
                 qPrintable(component.errorString()));
    }
};

QTEST_GUILESS_MAIN(TstEnums)
#include "tst_enums.moc"
