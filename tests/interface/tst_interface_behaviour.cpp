// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the screens show of what the instrument, the codes and the measures are.
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtMath>

#include <algorithm>
#include <cmath>

#include <failure.h>
#include <halvar-error.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <mspinfo.h>
#include <nap/records.h>
#include <pin.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcasetest.h"

namespace nap = com::halvar::nap;

namespace {

/// WCAG's relative luminance, and the contrast of two colours, 1 to 21.
double luminance(const QColor &color)
{
    const auto channel = [](double c) { return c <= 0.03928 ? c / 12.92 : qPow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF())
        + 0.0722 * channel(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (qMax(la, lb) + 0.05) / (qMin(la, lb) + 0.05);
}

} // namespace

class TstInterfaceBehaviour : public ShowcaseTest
{
    Q_OBJECT

private slots:
    void temperatureAndVoltage_areTrueWhicheverChanges();
    void threeWrongCodes_restTheKeypad();
    void disabledPin_takesNoDigit();
    void languageWithoutATranslation_hasTheFrenchPlurals();
    void unitWithAResult_putsTheTriggerAside();
    void unitWithSomeNegatives_tellsHowManyAreAskedFor();
    void newestMeasure_isShownBelowAWholeRow_data();
    void newestMeasure_isShownBelowAWholeRow();
    void stateOfConservation_isShownWhereverTheMeasureIs();
    void negativeConcentration_hasAMinusSign();
    void historyOfShocks_hasTheNewestOnTopWithItsZone();
    void serviceFacts_followTheLibrary();
    void uncalibratedCheck_leadsToTheCalibration();
    void tiles_endWhereWhatIsAboveThemEnds();
    void logLines_areLargeEnoughAndInColumns();
    void colours_keepTheirContrast();
};

void TstInterfaceBehaviour::temperatureAndVoltage_areTrueWhicheverChanges()
{
    Showcase &showcase = *m_showcase;
    const auto tell = [&showcase](double temperature, double voltage) {
        nap::AcqConditions conditions;
        conditions.set_readyForAcquisition(true);
        conditions.set_temperature(temperature);
        conditions.set_acceleratingVoltage(voltage);
        showcase->nap_AcqConditions(conditions);
    };
    tell(21, 1200);
    QVERIFY(isSaid(showcase.window, QStringLiteral("21 °C · 1200 V")));
    tell(27, 1200);
    QVERIFY(isSaid(showcase.window, QStringLiteral("27 °C · 1200 V")));
    tell(27, 1188);
    QVERIFY(isSaid(showcase.window, QStringLiteral("27 °C · 1188 V")));
}

void TstInterfaceBehaviour::threeWrongCodes_restTheKeypad()
try {
    Showcase &showcase = *m_showcase;
    showcase->waitingForGo();
    showcase.hand->waitForScreen(QStringLiteral("PinScreen"));
    for (int attempt = 0; attempt < 3; ++attempt) {
        for (int digit = 0; digit < 5; ++digit)
            showcase.hand->tap(QStringLiteral("9"));
        QVERIFY(
            isSaid(showcase.window, QStringLiteral("Code refusé. Essais restants : %1").arg(2 - attempt)));
        QTRY_COMPARE(showcase->pin->property("nbDigits").toInt(), 0);
    }
    QTRY_VERIFY(isSaid(showcase.window, QStringLiteral("Saisie bloquée")));
    QVERIFY(!showcase.hand->see(QStringLiteral("9")));
    showcase.hand->key(Qt::Key_9);
    QCOMPARE(showcase->pin->property("nbDigits").toInt(), 0);
    // The keypad comes back by itself, and the right code is taken.
    showcase.hand->find(QStringLiteral("9"));
    for (const char *digit : {"1", "2", "3", "4", "5"})
        showcase.hand->tap(QLatin1String(digit));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::disabledPin_takesNoDigit()
try {
    Showcase &showcase = *m_showcase;
    showcase->waitingForGo();
    showcase.hand->waitForScreen(QStringLiteral("PinScreen"));
    showcase->pin->setDisabled(true);
    QVERIFY(isSaid(showcase.window, QStringLiteral("Saisie bloquée")));
    QVERIFY(!showcase.hand->see(QStringLiteral("1")));
    showcase->pin->enable();
    showcase.hand->tap(QStringLiteral("1"));
    QCOMPARE(showcase->pin->property("nbDigits").toInt(), 1);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::languageWithoutATranslation_hasTheFrenchPlurals()
try {
    m_showcase.reset();
    m_showcase = std::make_unique<Showcase>(QLocale(QStringLiteral("de_DE")));
    m_showcase->settleAtOnce();
    m_showcase->unlock();
    m_showcase->open(QStringLiteral("DiagnosticsScreen"));
    QVERIFY(isSaid(m_showcase->window, QStringLiteral("2 unités")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::unitWithAResult_putsTheTriggerAside()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    SentCommands commands(showcase.controller.get());
    for (const UDStatutEnumClass::UDStatut statut : {UDStatutEnumClass::RAW, UDStatutEnumClass::POSITIVE}) {
        auto *unit = new UD;
        unit->setLocal(QStringLiteral("Cuisine"));
        unit->setStatut(statut);
        showcase->uds->append(unit);
    }
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    QVERIFY(isSaid(showcase.window, QStringLiteral("Pas prêt à mesurer")));
    nap::AcqConditions conditions;
    conditions.set_readyForAcquisition(true);
    showcase->nap_AcqConditions(conditions);
    QVERIFY(isSaid(showcase.window, QStringLiteral("Prêt à mesurer")));
    QCOMPARE(commands.commands, QList<int>{MSPClient::RUN_HARD});
    showcase.hand->key(Qt::Key_Escape);
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    QCOMPARE(commands.commands.last(), int(MSPClient::ABORT));
    commands.commands.clear();
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 1}});
    QVERIFY(isSaid(showcase.window, QStringLiteral("En veille")));
    QVERIFY(!commands.commands.contains(MSPClient::RUN_HARD));
    showcase.hand->tap(QStringLiteral("Remesurer"));
    QCOMPARE(commands.commands.last(), int(MSPClient::RUN_HARD));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::unitWithSomeNegatives_tellsHowManyAreAskedFor()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    QVERIFY(showcase->setProperty("nbMeasures", 3));
    auto *unit = new UD;
    for (DetectionDecisionEnumClass::DetectionDecision decision :
         {DetectionDecisionEnumClass::NEGATIVE, DetectionDecisionEnumClass::NOT_DETERMINED,
          DetectionDecisionEnumClass::NEGATIVE}) {
        auto *measure = new Measure;
        measure->setDetectionDecision(decision);
        unit->measures()->append(measure);
    }
    showcase->uds->append(unit);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    const QString count = QStringLiteral("3 mesures, la dernière en bas");
    QTRY_VERIFY(isSaid(showcase.window, count + QStringLiteral(" · il manque 1 négative")));
    // As many as are asked for, and more, leave none to come.
    QVERIFY(showcase->setProperty("nbMeasures", 2));
    QVERIFY(isSaid(showcase.window, count));
    QVERIFY(!isSaid(showcase.window, QStringLiteral("il manque")));
    // What is to be erased is named.
    unit->setElement(QStringLiteral("Mur"));
    showcase.hand->tap(QStringLiteral("removeUnit"));
    showcase.hand->find(QStringLiteral("yes"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("L'unité n° 1 (Zone A · Mur) et ses mesures")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::newestMeasure_isShownBelowAWholeRow_data()
{
    QTest::addColumn<int>("measures");
    for (const int measures : {1, 2, 3, 12})
        QTest::addRow("%d", measures) << measures;
}

void TstInterfaceBehaviour::newestMeasure_isShownBelowAWholeRow()
try {
    QFETCH(int, measures);
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    auto *unit = new UD;
    for (int i = 0; i < measures; ++i)
        unit->measures()->append(new Measure);
    showcase->uds->append(unit);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->inBothOrientations([&](const QString &appearance) {
        const auto rectOf = [](const QQuickItem *item) {
            return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        };
        const QRectF frame = rectOf(itemNamed(QStringLiteral("measureList")));
        const QString newest = QStringLiteral("measure%1").arg(measures);
        showcase.hand->waitFor(
            [&] {
                if (!frame.contains(rectOf(itemNamed(newest))))
                    return false;
                // Nothing reaches over the upper edge.
                const QList<QQuickItem *> items = visibleItems(showcase.window->contentItem());
                return std::none_of(items.begin(), items.end(), [&](const QQuickItem *item) {
                    const QRectF rect = rectOf(item);
                    return isControl(item) && rect.left() >= frame.left() && rect.top() < frame.top()
                        && rect.bottom() > frame.top();
                });
            },
            QStringLiteral("whole rows are to be shown, %1").arg(appearance));
    });
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::stateOfConservation_isShownWhereverTheMeasureIs()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    auto *unit = new UD;
    unit->setStatut(UDStatutEnumClass::POSITIVE);
    auto *measure = new Measure;
    measure->setDegradationState(DegradationStateEnumClass::DEGRADE);
    unit->measures()->append(measure);
    showcase->uds->append(unit);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->tap(QStringLiteral("measure1"));
    showcase.hand->waitForScreen(QStringLiteral("MeasureScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("rien de noté")));
    showcase.hand->tap(QStringLiteral("conservation"));
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    showcase.hand->tap(QStringLiteral("Écaillage"));
    showcase.hand->waitForScreen(QStringLiteral("MeasureScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Écaillage")));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("Dégradé · Écaillage")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::negativeConcentration_hasAMinusSign()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    auto *measure = new Measure;
    measure->setConcentration(-0.25);
    measure->setSigma(0.2);
    showcase->directMeasures->append(measure);
    showcase.open(QStringLiteral("DirectScreen"));
    QVERIFY(isSaid(showcase.window, QStringLiteral("−0,25")));
    QVERIFY(complaints(showcase.window).isEmpty());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::historyOfShocks_hasTheNewestOnTopWithItsZone()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const QString before = QDateTime::currentDateTime().toString(QStringLiteral("dd-MM-yyyy HH:mm"));
    showcase->error->setShock(true);
    showcase.open(QStringLiteral("ShocksScreen"));
    const QQuickItem *list = itemNamed(QStringLiteral("shockList"));
    QCOMPARE(list->property("count").toInt(), 4);
    const auto heading = [&](int row) {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(const_cast<QQuickItem *>(list), "itemAtIndex",
                                  Q_RETURN_ARG(QQuickItem *, item), Q_ARG(int, row));
        return item ? item->property("heading").toString() : QString();
    };
    const QString after = QDateTime::currentDateTime().toString(QStringLiteral("dd-MM-yyyy HH:mm"));
    QVERIFY2(heading(0).startsWith(before) || heading(0).startsWith(after), qUtf8Printable(heading(0)));
    QVERIFY2(heading(0).endsWith(QDateTime::currentDateTime().timeZoneAbbreviation()),
             qUtf8Printable(heading(0)));
    // As the sample home has them.
    QVERIFY2(heading(1).startsWith(QLatin1String("13-01-2026")), qUtf8Printable(heading(1)));
    QVERIFY2(heading(2).startsWith(QLatin1String("03-12-2025")), qUtf8Printable(heading(2)));
    QVERIFY2(heading(3).startsWith(QLatin1String("17-10-2025")), qUtf8Printable(heading(3)));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::serviceFacts_followTheLibrary()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("ServiceScreen"));
    showcase.hand->waitFor(
        [&] { return isSaid(showcase.window, QStringLiteral("Ce fichier n'a pas encore été écrit.")); },
        QStringLiteral("the missing information file is to be told"));
    QVERIFY(showcase->setProperty("lastCalibrationDate", QStringLiteral("02-03-2026")));
    QVERIFY(isSaid(showcase.window, QStringLiteral("02-03-2026")));
    // The MSP answers later than the screen is opened.
    MSPInfo info;
    info.fwVersion = QStringLiteral("fw 8.15");
    info.MSPVersion = QStringLiteral("server 4.2");
    showcase->msp_info_reply(info);
    showcase.hand->waitFor([&] { return isSaid(showcase.window, info.fwVersion); },
                           QStringLiteral("the firmware is to be told"));
    QVERIFY(isSaid(showcase.window, info.MSPVersion));
    showcase.hand->waitFor(
        [&] {
            return itemNamed(QStringLiteral("information"))
                ->property("text")
                .toString()
                .contains(info.fwVersion);
        },
        QStringLiteral("the information file is to be told"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::uncalibratedCheck_leadsToTheCalibration()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("AccuracyScreen"));
    showcase.hand->waitForScreen(QStringLiteral("AccuracyScreen"));
    DetectionDecisionEnumClass::DetectionDecision decision = DetectionDecisionEnumClass::UNCALIBRATED;
    showcase->currentAccuracy()->setDetectionDecision(decision);
    showcase.hand->tap(QStringLiteral("calibrate"));
    showcase.hand->waitForScreen(QStringLiteral("CalibrationScreen"));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("AccuracyScreen"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::tiles_endWhereWhatIsAboveThemEnds()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase->setFileName(QStringLiteral("Cave-7"));
    const auto rectOf = [this](const char *name) {
        const QQuickItem *item = itemNamed(QLatin1String(name));
        return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    };
    showcase.hand->inBothOrientations([&](const QString &appearance) {
        const bool isWide = showcase.window->width() > showcase.window->height();
        const QRectF last = rectOf(isWide ? "tile_accuracy" : "tile_direct");
        QVERIFY2(last.right() == rectOf("openDiagnostic").right(), qUtf8Printable(appearance));
        // Between two pixels they would be drawn a pixel too far.
        QVERIFY2(last.left() == std::floor(last.left()), qUtf8Printable(appearance));
    });
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::logLines_areLargeEnoughAndInColumns()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("LogScreen"));
    showcase->setLight(true);
    showcase->setLight(false);
    QTRY_VERIFY(isSaid(showcase.window, QStringLiteral("switch OFF the light.")));
    QList<QQuickItem *> times;
    const QList<QQuickItem *> items = visibleItems(showcase.window->contentItem());
    for (QQuickItem *item : items) {
        const bool isTime = item->objectName() == QLatin1String("when");
        if (isTime)
            times.append(item);
        if (!isTime && item->objectName() != QLatin1String("line"))
            continue;
        QVERIFY(item->property("font").value<QFont>().pixelSize() >= 15);
        QVERIFY(!item->property("truncated").toBool());
    }
    QVERIFY(times.size() > 1);
    const QQuickItem *line = itemNamed(QStringLiteral("line"));
    for (const QQuickItem *time : qAsConst(times)) {
        QVERIFY(time->property("contentWidth").toDouble() < line->x());
        // The time, and below it the level.
        QCOMPARE(time->property("text").toString().indexOf(QLatin1Char('\n')), 12);
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceBehaviour::colours_keepTheirContrast()
{
    QVector<QPair<const char *, const char *>> pairs{{"primaryInk", "primary"}, {"signInk", "positive"},
                                                     {"signInk", "negative"},   {"signInk", "undecided"},
                                                     {"signInk", "neutral"},    {"alarmInk", "alarm"},
                                                     {"warningInk", "warning"}, {"text", "surfacePressed"}};
    for (const char *ink :
         {"text", "textSecondary", "primary", "positive", "negative", "undecided", "alarm"}) {
        for (const char *paper : {"background", "surface"})
            pairs.append(qMakePair(ink, paper));
    }
    using Pair = QPair<const char *, const char *>;
    pairs << Pair{"primary", "surfacePressed"};
    const int texts = pairs.size();
    pairs << Pair{"disabledInk", "disabled"};
    const int words = pairs.size();
    // Rings, edges and lines.
    pairs << Pair{"primaryInk", "primary"} << Pair{"focus", "background"} << Pair{"focus", "surface"}
          << Pair{"outline", "background"} << Pair{"outline", "surface"} << Pair{"outline", "neutralSoft"}
          << Pair{"text", "surface"};
    for (const bool night : {false, true}) {
        m_showcase->window->setProperty("night", night);
        for (int i = 0; i < pairs.size(); ++i) {
            const auto &[ink, paper] = pairs[i];
            const double least = i < texts ? 7 : i < words ? 4.5 : 3;
            const double found =
                contrast(m_showcase->colour(QLatin1String(ink)), m_showcase->colour(QLatin1String(paper)));
            QVERIFY2(found >= least,
                     qPrintable(QStringLiteral("%1 on %2 has %3 by %4")
                                    .arg(QLatin1String(ink), QLatin1String(paper))
                                    .arg(found)
                                    .arg(night ? QStringLiteral("night") : QStringLiteral("day"))));
        }
    }
}

QTEST_MAIN(TstInterfaceBehaviour)
#include "tst_interface_behaviour.moc"
