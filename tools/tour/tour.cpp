// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "tour.h"

#include <QDate>

#include <battery.h>
#include <failure.h>
#include <halvarcontroller.h>
#include <pin.h>
#include <record.h>
#include <simulatorcontrol.h>
#include <udlistmodel.h>

Tour::Tour(QQuickWindow *window, HalvarController &controller, SimulatorControl &instrument,
           std::function<void(const QString &)> pictures)
    : m_hand(window)
    , m_controller(controller)
    , m_instrument(instrument)
    , m_pictures(std::move(pictures))
{
    m_instrument.subscribe();
}

void Tour::run()
{
    start();
    unlock();
    checkAccuracy();
    calibrate();
    measureDirectly();
    meetFaults();
    lookAtOddLists();
    lookAtFiles();
    beginDiagnostic();
    describeUnit();
    measureUnit();
    continueUnit();
    leaveOutUnit();
    finishDiagnostic();
    openAgain();
    meetRareStates();
    service();
}

void Tour::picture(const QString &name)
{
    m_pictures(name);
}

QJsonObject Tour::instrument(const QString &command, const QJsonObject &members)
{
    const QJsonObject answer = m_instrument.command(command, members);
    if (!answer.value(QLatin1String("ok")).toBool())
        throw Failure{QStringLiteral("the instrument refuses: %1")
                          .arg(answer.value(QLatin1String("error")).toString())};
    return answer;
}

void Tour::start()
{
    instrument(QStringLiteral("today"),
               {{QStringLiteral("date"), QDate::currentDate().toString(Qt::ISODate)}});
    m_hand.waitForScreen(QStringLiteral("HoldOffScreen"));
    picture(QStringLiteral("hold-off"));
    m_hand.waitForScreen(QStringLiteral("PinScreen"));
}

void Tour::unlock()
{
    picture(QStringLiteral("code"));
    for (const char *digit : {"1", "2", "3"})
        m_hand.tap(QLatin1String(digit));
    picture(QStringLiteral("code-three-digits"));
    m_hand.tap(QStringLiteral("clearDigit"));
    m_hand.tap(QStringLiteral("clearAll"));
    // Keys do as well as fingers; wrong codes first.
    for (int attempt = 0; attempt < 3; ++attempt) {
        for (const Qt::Key key : {Qt::Key_5, Qt::Key_4, Qt::Key_3, Qt::Key_2, Qt::Key_1})
            m_hand.key(key);
        if (attempt == 0)
            picture(QStringLiteral("code-refused"));
        m_hand.waitFor([this] { return m_controller.pin->property("nbDigits").toInt() == 0; },
                       QStringLiteral("a refused code is to be cleared"));
    }
    m_hand.waitFor([this] { return !m_hand.see(QStringLiteral("1")); },
                   QStringLiteral("the keypad is to rest"));
    picture(QStringLiteral("code-locked"));
    for (const char *digit : {"1", "2", "3", "4", "5"})
        m_hand.tap(QLatin1String(digit));
    m_hand.waitForScreen(QStringLiteral("HomeScreen"));
    picture(QStringLiteral("home"));
}

bool Tour::isIdle() const
{
    return m_controller.acquisitionMode() == AcquisitionModeEnumClass::NONE;
}

void Tour::back(const QString &to)
{
    m_hand.tap(QStringLiteral("back"));
    m_hand.waitForScreen(to);
}

void Tour::place(double concentration, const QString &substrate)
{
    instrument(QStringLiteral("sample"),
               {{QStringLiteral("concentration"), concentration}, {QStringLiteral("substrate"), substrate}});
}

void Tour::setSpeed(double speed)
{
    instrument(QStringLiteral("speed"), {{QStringLiteral("value"), speed}});
}

void Tour::setBattery(int microvolts, bool low)
{
    instrument(QStringLiteral("battery"), {{QStringLiteral("value"), microvolts}});
    m_hand.waitFor(
        [&] {
            return (m_controller.battery->property("level").toInt() <= BatteryLevelsEnumClass::LEVEL_VERY_LOW)
                == low;
        },
        QStringLiteral("the battery is to be looked at"), 30000);
}

void Tour::press()
{
    m_hand.waitFor(
        [this] {
            return m_instrument.status().value(QLatin1String("msp")).toObject().value(QLatin1String("state"))
                == QLatin1String("READY_HARD");
        },
        QStringLiteral("the MSP is to be in its measuring mode"));
    if (!instrument(QStringLiteral("press")).value(QLatin1String("opened")).toBool())
        throw Failure{QStringLiteral("the shutter does not open")};
    m_hand.waitFor([this] { return !isIdle(); }, QStringLiteral("the shot is to begin"));
}

void Tour::hold(int results)
{
    int seen = 0;
    const auto count = QObject::connect(
        &m_instrument, &SimulatorControl::noticeReceived, [&seen](const QJsonObject &notice) {
            seen +=
                SimulatorControl::matches(notice, {{QStringLiteral("notice"), QStringLiteral("detection")}});
        });
    m_hand.waitFor([&] { return seen >= results || isIdle(); }, QStringLiteral("results are to come"), 30000);
    QObject::disconnect(count);
}

void Tour::shoot(int results)
{
    press();
    hold(results);
    release();
}

void Tour::pick(const QString &row, const QString &title)
{
    m_hand.tap(row);
    m_hand.waitForScreen(QStringLiteral("PickScreen"));
    m_hand.fill(QStringLiteral("search"), title);
    m_hand.tap(title);
}

void Tour::checkAccuracy()
{
    m_hand.tap(QStringLiteral("Contrôle de justesse"));
    m_hand.waitForScreen(QStringLiteral("AccuracyScreen"));
    m_hand.tap(QStringLiteral("Libre"));
    picture(QStringLiteral("accuracy"));
    m_hand.tap(QStringLiteral("startAccuracy"));
    m_hand.pause(1500);
    picture(QStringLiteral("accuracy-running"));
    setSpeed(20);
    m_hand.waitFor([this] { return isIdle(); }, QStringLiteral("the accuracy check is to end"), 30000);
    setSpeed(1);
    m_hand.find(QStringLiteral("startAccuracy"));
    picture(QStringLiteral("accuracy-result"));
    back(QStringLiteral("HomeScreen"));
}

void Tour::calibrate()
{
    m_hand.tap(QStringLiteral("Calibrage"));
    m_hand.waitForScreen(QStringLiteral("CalibrationScreen"));
    picture(QStringLiteral("calibration"));
    m_hand.tap(QStringLiteral("startCalibration"));
    m_hand.pause(1500);
    picture(QStringLiteral("calibration-running"));
    setSpeed(20);
    m_hand.find(QStringLiteral("startCalibration"), 30000);
    picture(QStringLiteral("calibration-done"));
    instrument(QStringLiteral("calibration"), {{QStringLiteral("outcome"), QStringLiteral("error")}});
    m_hand.tap(QStringLiteral("startCalibration"));
    m_hand.pause(300);
    m_hand.find(QStringLiteral("startCalibration"), 30000);
    picture(QStringLiteral("calibration-failed"));
    instrument(QStringLiteral("calibration"), {{QStringLiteral("outcome"), QStringLiteral("success")}});
    setSpeed(1);
    if (m_hand.see(QStringLiteral("bannerButton")))
        m_hand.tap(QStringLiteral("Acquitter"));
    back(QStringLiteral("HomeScreen"));
}

void Tour::measureDirectly()
{
    m_hand.tap(QStringLiteral("Mesures directes"));
    m_hand.waitForScreen(QStringLiteral("DirectScreen"));
    picture(QStringLiteral("direct-ready"));
    place(3.2, QStringLiteral("bois"));
    setSpeed(0.5);
    press();
    picture(QStringLiteral("direct-shutter-open"));
    m_hand.waitFor([this] { return m_controller.acquisitionMode() == AcquisitionModeEnumClass::MEASURE; },
                   QStringLiteral("the measure is to begin"));
    picture(QStringLiteral("direct-settling"));
    hold(2);
    picture(QStringLiteral("direct-measuring"));
    hold(4);
    picture(QStringLiteral("direct-decided"));
    // Back in the middle of a shot: there is a question first.
    m_hand.tap(QStringLiteral("back"));
    m_hand.find(QStringLiteral("Continuer la mesure"));
    picture(QStringLiteral("direct-leave"));
    m_hand.tap(QStringLiteral("Continuer la mesure"));
    instrument(QStringLiteral("release"));
    m_hand.waitFor([this] { return isIdle(); }, QStringLiteral("the shot is to end"));
    setSpeed(1);
    picture(QStringLiteral("direct-done"));

    m_hand.tap(QStringLiteral("measureSettings"));
    m_hand.waitForScreen(QStringLiteral("SettingsScreen"));
    m_hand.tap(QStringLiteral("Automatique"));
    m_hand.tap(QStringLiteral("nbMeasuresLess"));
    picture(QStringLiteral("settings"));
    back(QStringLiteral("DirectScreen"));
    setSpeed(4);
    place(0.2, QStringLiteral("plâtre"));
    shoot(1000);
    place(1.0, QStringLiteral("métal"));
    shoot(1000);
    picture(QStringLiteral("direct-list"));
    back(QStringLiteral("HomeScreen"));
}

void Tour::meetFaults()
{
    m_hand.tap(QStringLiteral("lightButton"));
    setBattery(3480000, true);
    instrument(QStringLiteral("mspEvent"),
               {{QStringLiteral("event"), QStringLiteral("SYS_ERR")}, {QStringLiteral("code"), 1}});
    m_hand.find(QStringLiteral("Vu"));
    instrument(QStringLiteral("napError"), {{QStringLiteral("error"), QStringLiteral("DPP_ERROR")}});
    m_hand.find(QStringLiteral("Acquitter"));
    m_hand.pause(1100);
    picture(QStringLiteral("faults"));
    m_hand.tap(QStringLiteral("Acquitter"));
    m_hand.tap(QStringLiteral("shockButton"));
    m_hand.waitForScreen(QStringLiteral("ShocksScreen"));
    m_hand.tap(QStringLiteral("Vu"));
    picture(QStringLiteral("shocks"));
    setBattery(3950000, false);
    m_hand.tap(QStringLiteral("lightButton"));
    m_hand.tap(QStringLiteral("wifiButton"));
    picture(QStringLiteral("wifi-off"));
    // What was said goes at a touch.
    m_hand.touch(QStringLiteral("toast"));
    m_hand.key(Qt::Key_Escape);
    m_hand.waitForScreen(QStringLiteral("HomeScreen"));
}

void Tour::lookAtFiles()
{
    m_hand.tap(QStringLiteral("Diagnostics"));
    m_hand.waitForScreen(QStringLiteral("DiagnosticsScreen"));
    picture(QStringLiteral("diagnostics"));
    m_hand.tap(QStringLiteral("Coupure-de-courant"));
    m_hand.find(QStringLiteral("Ouvrir ce qui est lisible"));
    picture(QStringLiteral("diagnostic-damaged"));
    m_hand.tap(QStringLiteral("no"));
    m_hand.tap(QStringLiteral("Supprimer « Cave-7 »"));
    m_hand.find(QStringLiteral("yes"));
    picture(QStringLiteral("diagnostic-remove"));
    m_hand.tap(QStringLiteral("no"));
}

void Tour::beginDiagnostic()
{
    m_hand.tap(QStringLiteral("newDiagnostic"));
    m_hand.waitForScreen(QStringLiteral("NewDiagnosticScreen"));
    m_hand.fill(QStringLiteral("name"), QStringLiteral("12/14 rue des Lilas"));
    m_hand.tap(QStringLiteral("create"));
    picture(QStringLiteral("diagnostic-refused"));
    m_hand.fill(QStringLiteral("name"), QStringLiteral("Immeuble des Lilas"));
    m_hand.fill(QStringLiteral("place"), QStringLiteral("12 rue des Lilas, 69003 Lyon"));
    m_hand.tap(QStringLiteral("create"));
    m_hand.waitForScreen(QStringLiteral("DiagnosticScreen"));
    m_hand.tap(QStringLiteral("checks"));
    m_hand.waitForScreen(QStringLiteral("AccuracyScreen"));
    m_hand.tap(QStringLiteral("Début"));
    m_hand.tap(QStringLiteral("startAccuracy"));
    m_hand.waitFor([this] { return isIdle(); }, QStringLiteral("the accuracy check is to end"), 30000);
    m_hand.find(QStringLiteral("startAccuracy"));
    back(QStringLiteral("DiagnosticScreen"));
    m_hand.tap(QStringLiteral("rooms"));
    m_hand.waitForScreen(QStringLiteral("RoomsScreen"));
    picture(QStringLiteral("rooms-empty"));
    m_hand.tap(QStringLiteral("addRoom"));
    m_hand.waitForScreen(QStringLiteral("PickScreen"));
    picture(QStringLiteral("room-pick"));
    // As people type: neither accents nor capitals.
    m_hand.fill(QStringLiteral("search"), QStringLiteral("sej"));
    m_hand.find(QStringLiteral("Séjour"));
    picture(QStringLiteral("room-search"));
    m_hand.tap(QStringLiteral("Séjour"));
    m_hand.waitForScreen(QStringLiteral("UnitsScreen"));
    picture(QStringLiteral("units-empty"));
}

void Tour::describeUnit()
{
    m_hand.tap(QStringLiteral("addUnit"));
    m_hand.waitForScreen(QStringLiteral("UnitScreen"));
    picture(QStringLiteral("unit-new"));
    m_hand.tap(QStringLiteral("element"));
    m_hand.waitForScreen(QStringLiteral("PickScreen"));
    picture(QStringLiteral("element-pick"));
    m_hand.tap(QStringLiteral("Mur"));
    m_hand.waitForScreen(QStringLiteral("UnitScreen"));
    pick(QStringLiteral("substrate"), QStringLiteral("Plâtre"));
    m_hand.waitForScreen(QStringLiteral("UnitScreen"));
    pick(QStringLiteral("coating"), QStringLiteral("Peinture"));
    m_hand.waitForScreen(QStringLiteral("UnitScreen"));
    m_hand.fill(QStringLiteral("observation"), QStringLiteral("Derrière le radiateur"));
    m_hand.key(Qt::Key_Return);
    picture(QStringLiteral("unit-described"));
}

void Tour::lookAround()
{
    m_hand.waitForScreen(QStringLiteral("HoldOffScreen"));
    m_hand.waitForScreen(QStringLiteral("PinScreen"));
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5})
        m_hand.key(key);
    m_hand.waitForScreen(QStringLiteral("HomeScreen"));
    picture(QStringLiteral("home"));
    const QVector<QPair<QString, QString>> tiles{
        {QStringLiteral("tile_direct"), QStringLiteral("DirectScreen")},
        {QStringLiteral("tile_accuracy"), QStringLiteral("AccuracyScreen")},
        {QStringLiteral("tile_calibration"), QStringLiteral("CalibrationScreen")},
        {QStringLiteral("tile_shocks"), QStringLiteral("ShocksScreen")},
        {QStringLiteral("tile_service"), QStringLiteral("ServiceScreen")}};
    for (const auto &[tile, screen] : tiles) {
        m_hand.tap(tile);
        m_hand.waitForScreen(screen);
        picture(tile.section(QLatin1Char('_'), 1));
        back(QStringLiteral("HomeScreen"));
    }
    m_hand.tap(QStringLiteral("tile_diagnostics"));
    m_hand.waitForScreen(QStringLiteral("DiagnosticsScreen"));
    picture(QStringLiteral("diagnostics"));
    m_hand.tap(QStringLiteral("Maison-rue-des-Lilas"));
    m_hand.waitForScreen(QStringLiteral("DiagnosticScreen"));
    picture(QStringLiteral("diagnostic"));
    m_hand.tap(QStringLiteral("rooms"));
    m_hand.waitForScreen(QStringLiteral("RoomsScreen"));
    picture(QStringLiteral("rooms"));
    m_hand.tap(QStringLiteral("Cuisine"));
    m_hand.waitForScreen(QStringLiteral("UnitsScreen"));
    picture(QStringLiteral("units"));
    m_hand.tap(QStringLiteral("addUnit"));
    m_hand.waitForScreen(QStringLiteral("UnitScreen"));
    picture(QStringLiteral("unit"));
    setSpeed(0.5);
    press();
    hold(2);
    picture(QStringLiteral("unit-measuring"));
    setSpeed(1);
    release();
    back(QStringLiteral("UnitsScreen"));
}

void Tour::measureUnit()
{
    // A source as strong as a new one.
    instrument(QStringLiteral("detector"), {{QStringLiteral("sigma"), 0.15}});
    instrument(QStringLiteral("seed"), {{QStringLiteral("value"), 11}});
    place(1.3, QStringLiteral("plâtre"));
    setSpeed(0.5);
    press();
    hold(2);
    picture(QStringLiteral("unit-measuring"));
    setSpeed(4);
    m_hand.waitFor([this] { return isIdle(); }, QStringLiteral("the shot is to end"), 30000);
    instrument(QStringLiteral("release"));
    picture(QStringLiteral("unit-positive"));
    m_hand.tap(QStringLiteral("measure1"));
    m_hand.waitForScreen(QStringLiteral("MeasureScreen"));
    m_hand.tap(QStringLiteral("Haut"));
    m_hand.tap(QStringLiteral("Dégradé"));
    picture(QStringLiteral("measure-degraded"));
    m_hand.tap(QStringLiteral("conservation"));
    m_hand.waitForScreen(QStringLiteral("PickScreen"));
    picture(QStringLiteral("conservation-pick"));
    m_hand.fill(QStringLiteral("search"), QStringLiteral("ecaill"));
    m_hand.tap(QStringLiteral("Écaillage"));
    m_hand.waitForScreen(QStringLiteral("MeasureScreen"));
    picture(QStringLiteral("measure-noted"));
    back(QStringLiteral("UnitScreen"));
    picture(QStringLiteral("unit-noted"));
}

void Tour::continueUnit()
{
    m_hand.tap(QStringLiteral("nextZone"));
    m_hand.pause(400);
    place(0.3, QStringLiteral("plâtre"));
    shoot(1000);
    picture(QStringLiteral("unit-first-of-two"));
    shoot(1000);
    picture(QStringLiteral("unit-negative"));
    m_hand.tap(QStringLiteral("removeUnit"));
    m_hand.find(QStringLiteral("yes"));
    picture(QStringLiteral("unit-remove"));
    m_hand.tap(QStringLiteral("no"));
}

void Tour::leaveOutUnit()
{
    m_hand.tap(QStringLiteral("nextZone"));
    m_hand.pause(400);
    m_hand.tap(QStringLiteral("skip"));
    m_hand.find(QStringLiteral("other"));
    picture(QStringLiteral("unit-why-not"));
    m_hand.tap(QStringLiteral("yes"));
    m_hand.waitForScreen(QStringLiteral("PickScreen"));
    m_hand.fill(QStringLiteral("search"), QStringLiteral("atteinte"));
    m_hand.tap(QStringLiteral("Hors d'atteinte"));
    m_hand.waitForScreen(QStringLiteral("UnitScreen"));
    picture(QStringLiteral("unit-not-measured"));
    back(QStringLiteral("UnitsScreen"));
    picture(QStringLiteral("units"));
    back(QStringLiteral("RoomsScreen"));
    // A room that no list has.
    m_hand.tap(QStringLiteral("addRoom"));
    m_hand.waitForScreen(QStringLiteral("PickScreen"));
    m_hand.fill(QStringLiteral("search"), QStringLiteral("Atelier d'été"));
    picture(QStringLiteral("room-new"));
    m_hand.tap(QStringLiteral("addNew"));
    m_hand.waitForScreen(QStringLiteral("UnitsScreen"));
    m_hand.tap(QStringLiteral("addUnit"));
    m_hand.waitForScreen(QStringLiteral("UnitScreen"));
    back(QStringLiteral("UnitsScreen"));
    back(QStringLiteral("RoomsScreen"));
    picture(QStringLiteral("rooms"));
    back(QStringLiteral("DiagnosticScreen"));
}

void Tour::finishDiagnostic()
{
    m_hand.tap(QStringLiteral("coulures"));
    m_hand.tap(QStringLiteral("humidite"));
    picture(QStringLiteral("diagnostic"));
    back(QStringLiteral("DiagnosticsScreen"));
    back(QStringLiteral("HomeScreen"));
    picture(QStringLiteral("home-open-diagnostic"));
}

void Tour::openAgain()
{
    const DiagnosticRecord measured = DiagnosticRecord::of(&m_controller, m_controller.uds);
    m_hand.tap(QStringLiteral("Diagnostics"));
    m_hand.waitForScreen(QStringLiteral("DiagnosticsScreen"));
    m_hand.tap(QStringLiteral("Maison-rue-des-Lilas"));
    m_hand.waitForScreen(QStringLiteral("DiagnosticScreen"));
    m_hand.tap(QStringLiteral("rooms"));
    m_hand.waitForScreen(QStringLiteral("RoomsScreen"));
    picture(QStringLiteral("rooms-of-a-house"));
    m_hand.tap(QStringLiteral("Cuisine"));
    m_hand.waitForScreen(QStringLiteral("UnitsScreen"));
    picture(QStringLiteral("units-of-a-kitchen"));
    back(QStringLiteral("RoomsScreen"));
    back(QStringLiteral("DiagnosticScreen"));
    back(QStringLiteral("DiagnosticsScreen"));
    m_hand.tap(measured.name);
    m_hand.waitForScreen(QStringLiteral("DiagnosticScreen"));
    const QStringList found = differences(measured, DiagnosticRecord::of(&m_controller, m_controller.uds));
    if (!found.isEmpty())
        throw Failure{
            QStringLiteral("the diagnostic that was opened again is not the one that was recorded: %1")
                .arg(found.join(QStringLiteral("; ")))};
    back(QStringLiteral("DiagnosticsScreen"));
    back(QStringLiteral("HomeScreen"));
}

void Tour::service()
{
    m_hand.tap(QStringLiteral("Service"));
    m_hand.waitForScreen(QStringLiteral("ServiceScreen"));
    m_hand.pause(200);
    picture(QStringLiteral("service"));
    m_hand.tap(QStringLiteral("wifiPassword"));
    m_hand.tap(QStringLiteral("refresh"));
    m_hand.pause(200);
    picture(QStringLiteral("service-lower"));
    m_hand.tap(QStringLiteral("removeMeasureFiles"));
    m_hand.find(QStringLiteral("yes"));
    picture(QStringLiteral("service-erase"));
    m_hand.tap(QStringLiteral("no"));
    m_hand.tap(QStringLiteral("log"));
    m_hand.waitForScreen(QStringLiteral("LogScreen"));
    m_hand.tap(QStringLiteral("moreLog"));
    m_hand.tap(QStringLiteral("lightButton"));
    m_hand.tap(QStringLiteral("lightButton"));
    m_hand.pause(300);
    picture(QStringLiteral("log"));
    back(QStringLiteral("ServiceScreen"));
    m_hand.tap(QStringLiteral("shutdown"));
    m_hand.find(QStringLiteral("yes"));
    picture(QStringLiteral("shutdown"));
    m_hand.tap(QStringLiteral("yes"));
}
