// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What the operator does reaches the library and the files, and what the library says is on the screen.
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>

#include <QsLog.h>

#include <date.h>
#include <failure.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <ud.h>
#include <udlistmodel.h>

#include "eye.h"
#include "showcasetest.h"

namespace {

Measure *newMeasure(double concentration, DetectionDecisionEnumClass::DetectionDecision decision, int id)
{
    auto *measure = new Measure;
    measure->setConcentration(concentration);
    measure->setSigma(0.11);
    measure->setDetectionDecision(decision);
    measure->setIdNAP(id);
    return measure;
}

QByteArray fileOf(const QString &name)
{
    QFile file(Showcase::home() + QStringLiteral("files/%1.xml").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray commands()
{
    QFile file(qEnvironmentVariable("HALVAR_INSTRUMENT_COMMANDS"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TstInterfaceOperations : public ShowcaseTest
{
    Q_OBJECT

private slots:
    void holdOff_countsDown();
    void statusBar_hasDateTimeAndZone();
    void wifi_isSwitchedOnTheInstrument();
    void theme_isChangedByItsButton();
    void choices_showTheirPictures();
    void accuracyStages_showTheirOwnResults();
    void accuracyCheck_canBeStopped();
    void calibration_canBeStoppedAndTellsTheLastOne();
    void settings_reachTheLibrary();
    void directMeasures_haveTheNewestOnTop();
    void diagnosticsList_tellsTheFreeSpace();
    void diagnostic_isRemovedOnlyWhenConfirmed();
    void placeAndBuilding_areInTheFile();
    void unit_isDescribedAndContinued();
    void measure_isNotedInTheFile();
    void measureFiles_areRemovedOnlyWhenConfirmed();
    void logLines_comeLiveWithTheirLevelAndFilter();
    void wifiPassword_isShownOnRequestOnly();

private:
    bool says(const QString &words) const { return isSaid(m_showcase->window, words); }
};

void TstInterfaceOperations::holdOff_countsDown()
try {
    // Longer than any machine needs to show it.
    constexpr int HoldOff = 30;
    m_showcase.reset();
    Showcase::setConfig(QStringLiteral("Waiting_For_Go"), QString::number(HoldOff));
    m_showcase = std::make_unique<Showcase>();
    Showcase &showcase = *m_showcase;
    showcase.hand->waitForScreen(QStringLiteral("HoldOffScreen"));
    const auto told = [&] {
        int seconds = HoldOff;
        while (seconds > 1 && !says(QStringLiteral("%1 secondes").arg(seconds)))
            --seconds;
        return seconds;
    };
    const int before = told();
    QVERIFY(before > 1);
    showcase.hand->waitFor([&] { return told() < before; }, QStringLiteral("the wait is to become shorter"));
    QVERIFY(told() > 1);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::statusBar_hasDateTimeAndZone()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const auto *date = showcase.object(QStringLiteral("date")).value<QObject *>();
    const auto isTold = [&] {
        return says(date->property("current").toString()) && says(date->property("time").toString())
            && says(date->property("zone").toString());
    };
    const QString before = date->property("time").toString();
    QVERIFY(!before.isEmpty());
    QVERIFY(isTold());
    showcase.hand->waitFor([&] { return date->property("time").toString() != before; },
                           QStringLiteral("the clock is to go on"));
    QVERIFY(isTold());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::wifi_isSwitchedOnTheInstrument()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    QVERIFY(!commands().contains("napwifi stop"));
    showcase.hand->tap(QStringLiteral("wifiButton"));
    showcase.hand->waitFor([] { return commands().contains("napwifi stop"); },
                           QStringLiteral("the Wi-Fi is to be switched off"));
    showcase.hand->touch(QStringLiteral("toast"));
    showcase.hand->tap(QStringLiteral("wifiButton"));
    showcase.hand->waitFor(
        [] {
            const QByteArray record = commands();
            return record.lastIndexOf("napwifi start") > record.lastIndexOf("napwifi stop");
        },
        QStringLiteral("the Wi-Fi is to be switched on"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::theme_isChangedByItsButton()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const auto brightness = [&] { return showcase.colour(QStringLiteral("background")).lightness(); };
    QVERIFY(brightness() > 200);
    showcase.hand->tap(QStringLiteral("Affichage de nuit"));
    showcase.hand->pause(50);
    QVERIFY(brightness() < 50);
    showcase.hand->tap(QStringLiteral("Affichage de jour"));
    showcase.hand->pause(50);
    QVERIFY(brightness() > 200);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::choices_showTheirPictures()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    for (const char *list : {"rooms", "elements", "substrates", "coatings"}) {
        showcase.open(QStringLiteral("PickScreen"),
                      {{QStringLiteral("items"), showcase.object(QLatin1String(list))}});
        const auto isDrawn = [this] {
            const QList<QQuickItem *> items = visibleItems(itemNamed(QStringLiteral("pickList")));
            const auto drawn = std::count_if(items.begin(), items.end(), [](const QQuickItem *item) {
                return item->inherits("QQuickImage") && item->property("paintedWidth").toDouble() > 30;
            });
            return drawn >= 5;
        };
        showcase.hand->waitFor(isDrawn,
                               QStringLiteral("the pictures of %1 are to be drawn").arg(QLatin1String(list)));
        showcase.hand->key(Qt::Key_Escape);
        showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::accuracyStages_showTheirOwnResults()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase->setFileName(QStringLiteral("Cave-7"));
    showcase->loadFile(Showcase::home() + QStringLiteral("files/Cave-7.xml"));
    showcase.open(QStringLiteral("AccuracyScreen"));
    QVERIFY(says(QStringLiteral("référence 1,04 ± 0,15")));
    const QList<Measure *> stages{showcase->accuracyLive, showcase->accuracyInit, showcase->accuracyInterrupt,
                                  showcase->accuracyFinal};
    for (int stage = 0; stage < stages.size(); ++stage) {
        stages[stage]->setIdNAP(40 + stage);
        stages[stage]->setConcentration(1.2 + 0.1 * stage);
        stages[stage]->setSigma(0.05);
        DetectionDecisionEnumClass::DetectionDecision decision =
            stage == 2 ? DetectionDecisionEnumClass::ACCURACY_ERROR : DetectionDecisionEnumClass::ACCURACY_OK;
        stages[stage]->setDetectionDecision(decision);
    }
    for (int stage = 0; stage < stages.size(); ++stage) {
        showcase.hand->tap(QStringLiteral("stage%1").arg(stage));
        QCOMPARE(int(showcase->accuracyStage()), stage);
        showcase.hand->pause(20);
        QCOMPARE(itemNamed(QStringLiteral("checkedValue"))->property("text").toString(),
                 QStringLiteral("1,%1 ± 0,05").arg(20 + 10 * stage));
        QCOMPARE(itemNamed(QStringLiteral("verdict"))->property("word").toString(),
                 stage == 2 ? QStringLiteral("Non confirmée") : QStringLiteral("Confirmée"));
    }
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::accuracyCheck_canBeStopped()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("AccuracyScreen"));
    showcase.hand->tap(QStringLiteral("startAccuracy"));
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::ACCURACY);
    const QString progress = QStringLiteral("Contrôle en cours : ");
    showcase.hand->waitFor([&] { return says(progress) && !says(progress + QStringLiteral("0 s")); },
                           QStringLiteral("the seconds are to go on"));
    showcase.hand->tap(QStringLiteral("stopAccuracy"));
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::NONE);
    QVERIFY(says(QStringLiteral("Contrôle arrêté, sans résultat.")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::calibration_canBeStoppedAndTellsTheLastOne()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("CalibrationScreen"));
    QVERIFY(says(QStringLiteral("Essais restants : 3 sur 3")));
    QVERIFY(showcase->setProperty("lastCalibrationDate", QStringLiteral("02-03-2026")));
    QVERIFY(says(QStringLiteral("02-03-2026")));
    showcase.hand->tap(QStringLiteral("startCalibration"));
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::CALIBRATION);
    QVERIFY(says(QStringLiteral("Calibrage en cours")));
    showcase.hand->tap(QStringLiteral("stopCalibration"));
    QCOMPARE(showcase->acquisitionMode(), AcquisitionModeEnumClass::NONE);
    QVERIFY(says(QStringLiteral("Calibrage arrêté")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::settings_reachTheLibrary()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("DirectScreen"));
    showcase.hand->tap(QStringLiteral("measureSettings"));
    showcase.hand->waitForScreen(QStringLiteral("SettingsScreen"));
    for (const MeasureModeEnumClass::MeasureMode mode :
         {MeasureModeEnumClass::AUTO, MeasureModeEnumClass::DEFINED, MeasureModeEnumClass::TRIGGER,
          MeasureModeEnumClass::DEFINED}) {
        showcase.hand->tap(QStringLiteral("mode%1").arg(mode));
        QCOMPARE(showcase->measureMode(), mode);
    }
    const int time = showcase->property("measureTime").toInt();
    const int number = showcase->property("nbMeasures").toInt();
    showcase.hand->tap(QStringLiteral("measureTimeMore"));
    showcase.hand->tap(QStringLiteral("nbMeasuresMore"));
    QCOMPARE(showcase->property("measureTime").toInt(), time + 1);
    QCOMPARE(showcase->property("nbMeasures").toInt(), number + 1);
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("DirectScreen"));
    QVERIFY(says(QStringLiteral("Durée fixe")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::directMeasures_haveTheNewestOnTop()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("DirectScreen"));
    for (int id = 1; id <= 3; ++id) {
        showcase->directMeasures->insert(0,
                                         newMeasure(0.5 * id, DetectionDecisionEnumClass::NEGATIVE, 70 + id));
        showcase.hand->pause(30);
    }
    const double first = itemNamed(QStringLiteral("measure1"))->mapToScene(QPointF()).y();
    const double last = itemNamed(QStringLiteral("measure3"))->mapToScene(QPointF()).y();
    QVERIFY(last < first);
    QVERIFY(says(QStringLiteral("Mesure 3 · tir n° 73")));
    // A measure grows where it stands.
    showcase->directMeasures->at(0)->setConcentration(2.34);
    QVERIFY(says(QStringLiteral("2,34")));
    QCOMPARE(complaints(showcase.window), QStringList());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::diagnosticsList_tellsTheFreeSpace()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    const double free = showcase.object(QStringLiteral("diagnosticFiles"))
                            .value<QObject *>()
                            ->property("freeBytes")
                            .toDouble();
    QVERIFY(free > 0);
    QVERIFY(says(QStringLiteral("Place libre : ")));
    const QString number = QLocale(QStringLiteral("fr_FR"))
                               .toString(free < 1e9 ? free / 1e6 : free / 1e9, 'f', free < 1e9 ? 0 : 1);
    QVERIFY2(says(number), qUtf8Printable(number));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::diagnostic_isRemovedOnlyWhenConfirmed()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("DiagnosticsScreen"));
    showcase.hand->tap(QStringLiteral("Supprimer « Cave-7 »"));
    showcase.hand->tap(QStringLiteral("no"));
    QVERIFY(!fileOf(QStringLiteral("Cave-7")).isEmpty());
    showcase.hand->tap(QStringLiteral("Supprimer « Cave-7 »"));
    showcase.hand->tap(QStringLiteral("yes"));
    QVERIFY(fileOf(QStringLiteral("Cave-7")).isEmpty());
    QVERIFY(says(QStringLiteral("« Cave-7 » est supprimé.")));
    QVERIFY(!fileOf(QStringLiteral("Studio-en-cours")).isEmpty());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::placeAndBuilding_areInTheFile()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("NewDiagnosticScreen"));
    showcase.hand->fill(QStringLiteral("name"), QStringLiteral("Grange"));
    showcase.hand->fill(QStringLiteral("place"), QStringLiteral("3 place du Puits"));
    showcase.hand->tap(QStringLiteral("create"));
    showcase.hand->waitForScreen(QStringLiteral("DiagnosticScreen"));
    QVERIFY(fileOf(QStringLiteral("Grange")).contains("3 place du Puits"));
    showcase.hand->fill(QStringLiteral("place"), QStringLiteral("4 place du Puits"));
    for (const char *box : {"effondrement", "humidite"})
        showcase.hand->tap(QLatin1String(box));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("HomeScreen"));
    showcase->initFile();
    QVERIFY(!showcase->property("effondrement").toBool());
    showcase->loadFile(Showcase::home() + QStringLiteral("files/Grange.xml"));
    QCOMPARE(showcase->property("localization").toString(), QStringLiteral("4 place du Puits"));
    QVERIFY(showcase->property("effondrement").toBool());
    QVERIFY(!showcase->property("coulures").toBool());
    QVERIFY(showcase->property("humidite").toBool());
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::unit_isDescribedAndContinued()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase->setFileName(QStringLiteral("Grange"));
    showcase.open(QStringLiteral("UnitsScreen"), {{QStringLiteral("room"), QStringLiteral("Cuisine")}});
    showcase.hand->tap(QStringLiteral("addUnit"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    for (const auto &[row, title] :
         {std::pair{"element", "Mur"}, {"substrate", "Brique"}, {"coating", "Peinture"}}) {
        showcase.hand->tap(QLatin1String(row));
        showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
        showcase.hand->tap(QLatin1String(title));
        showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    }
    for (const char *button : {"zoneAfter", "zoneAfter", "zoneBefore"})
        showcase.hand->tap(QLatin1String(button));
    showcase.hand->fill(QStringLiteral("observation"), QStringLiteral("Derrière la porte"));
    showcase.hand->key(Qt::Key_Return);
    QVERIFY(says(QStringLiteral("Zone B · Mur")));
    QCOMPARE(itemNamed(QStringLiteral("statut"))->property("word").toString(), QStringLiteral("À mesurer"));
    showcase.hand->tap(QStringLiteral("nextZone"));
    showcase.hand->waitFor([&] { return showcase->uds->count() == 2; },
                           QStringLiteral("the unit is to go on"));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("UnitsScreen"));
    showcase->initFile();
    showcase->loadFile(Showcase::home() + QStringLiteral("files/Grange.xml"));
    QCOMPARE(showcase->uds->count(), 2);
    for (int row = 0; row < 2; ++row) {
        const UD *unit = showcase->uds->at(row);
        QCOMPARE(unit->zone(), row == 0 ? 'B' : 'C');
        QCOMPARE(unit->local(), QStringLiteral("Cuisine"));
        QCOMPARE(unit->element(), QStringLiteral("Mur"));
        QCOMPARE(unit->substrat(), QStringLiteral("Brique"));
        QCOMPARE(unit->revetement(), QStringLiteral("Peinture"));
    }
    QCOMPARE(showcase->uds->at(0)->observation(), QStringLiteral("Derrière la porte"));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::measure_isNotedInTheFile()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase->setFileName(QStringLiteral("Grange"));
    auto *unit = new UD;
    unit->setLocal(QStringLiteral("Cuisine"));
    unit->measures()->append(newMeasure(1.6, DetectionDecisionEnumClass::POSITIVE, 12));
    showcase->uds->append(unit);
    showcase.open(QStringLiteral("UnitScreen"), {{QStringLiteral("row"), 0}});
    showcase.hand->tap(QStringLiteral("measure1"));
    showcase.hand->waitForScreen(QStringLiteral("MeasureScreen"));
    showcase.hand->tap(QStringLiteral("Droite"));
    showcase.hand->tap(QStringLiteral("État d'usage"));
    showcase.hand->tap(QStringLiteral("conservation"));
    showcase.hand->waitForScreen(QStringLiteral("PickScreen"));
    const QString state = itemNamed(QStringLiteral("pickList"))
                              ->property("currentItem")
                              .value<QQuickItem *>()
                              ->property("heading")
                              .toString();
    showcase.hand->tap(state);
    showcase.hand->waitForScreen(QStringLiteral("MeasureScreen"));
    showcase.hand->tap(QStringLiteral("back"));
    showcase.hand->waitForScreen(QStringLiteral("UnitScreen"));
    showcase->initFile();
    showcase->loadFile(Showcase::home() + QStringLiteral("files/Grange.xml"));
    const Measure *measure = showcase->uds->at(0)->measures()->at(0);
    QCOMPARE(measure->localisation(), LocalisationEnumClass::RIGHT);
    QCOMPARE(measure->degradationState(), DegradationStateEnumClass::ETAT_USAGE);
    QVERIFY(!state.isEmpty());
    QCOMPARE(measure->conservationState(), state);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::measureFiles_areRemovedOnlyWhenConfirmed()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    const QDir files(Showcase::home() + QStringLiteral("files"));
    const int count = files.entryList({QStringLiteral("*.xml")}).size();
    QVERIFY(count > 3);
    showcase.open(QStringLiteral("ServiceScreen"));
    showcase.hand->tap(QStringLiteral("removeMeasureFiles"));
    showcase.hand->tap(QStringLiteral("no"));
    QCOMPARE(files.entryList({QStringLiteral("*.xml")}).size(), count);
    showcase.hand->tap(QStringLiteral("removeMeasureFiles"));
    showcase.hand->tap(QStringLiteral("yes"));
    QCOMPARE(files.entryList({QStringLiteral("*.xml")}).size(), 0);
    QVERIFY(says(QStringLiteral("Les fichiers de mesure sont effacés.")));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::logLines_comeLiveWithTheirLevelAndFilter()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("LogScreen"));
    QLOG_ERROR() << "porte ouverte";
    showcase.hand->waitFor(
        [&] { return says(QStringLiteral("porte ouverte")) && says(QStringLiteral("ERROR")); },
        QStringLiteral("the line is to come"));
    showcase.hand->fill(QStringLiteral("search"), QStringLiteral("fenêtre"));
    showcase.hand->waitFor([&] { return says(QStringLiteral("Aucune ligne.")); },
                           QStringLiteral("the lines are to be filtered"));
    QLOG_ERROR() << "fenêtre fermée";
    showcase.hand->waitFor([&] { return says(QStringLiteral("fenêtre fermée")); },
                           QStringLiteral("the line that matches is to come"));
    QVERIFY(!says(QStringLiteral("porte ouverte")));
    const QObject *lines = showcase.object(QStringLiteral("logLines")).value<QObject *>();
    const int level = lines->property("level").toInt();
    showcase.hand->tap(QStringLiteral("lessLog"));
    QCOMPARE(lines->property("level").toInt(), level + 1);
    QCOMPARE(int(QsLogging::Logger::instance().loggingLevel()), level + 1);
    showcase.hand->tap(QStringLiteral("moreLog"));
    QCOMPARE(lines->property("level").toInt(), level);
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

void TstInterfaceOperations::wifiPassword_isShownOnRequestOnly()
try {
    Showcase &showcase = *m_showcase;
    showcase.unlock();
    showcase.open(QStringLiteral("ServiceScreen"));
    const QString password = showcase.config.getWifiPassword();
    QVERIFY(!password.isEmpty());
    QVERIFY(!says(password));
    showcase.hand->tap(QStringLiteral("wifiPassword"));
    QVERIFY(says(password));
    showcase.hand->tap(QStringLiteral("wifiPassword"));
    QVERIFY(!says(password));
} catch (const Failure &failure) {
    QFAIL(qUtf8Printable(failure.text));
}

QTEST_MAIN(TstInterfaceOperations)
#include "tst_interface_operations.moc"
