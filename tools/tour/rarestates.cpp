// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// What an operator sees on a bad day only.
#include "tour.h"

#include <QDir>
#include <QFile>

#include <calibration.h>
#include <failure.h>
#include <halvar-error.h>
#include <halvarcontroller.h>

void Tour::meetRareStates()
{
    notReady();
    failChecks();
    failShots();
    exhaustCalibration();
}

void Tour::lookAtOddLists()
{
    const auto move = [](const QDir &from, const QDir &to) {
        const QStringList names = from.entryList(QDir::Files);
        for (const QString &name : names) {
            if (!QFile::rename(from.filePath(name), to.filePath(name)))
                throw Failure{QStringLiteral("%1 cannot be moved").arg(from.filePath(name))};
        }
    };
    const QDir home(m_controller.property("home").toString());
    const QDir files(home.filePath(QStringLiteral("files")));
    const QDir aside(home.filePath(QStringLiteral("aside")));
    if (!home.mkpath(QStringLiteral("aside")))
        throw Failure{QStringLiteral("%1 cannot be made").arg(aside.path())};
    move(files, aside);
    m_hand.tap(QStringLiteral("Diagnostics"));
    m_hand.waitForScreen(QStringLiteral("DiagnosticsScreen"));
    picture(QStringLiteral("diagnostics-empty"));

    QFile sample(aside.filePath(QStringLiteral("Cave-7.xml")));
    if (!sample.open(QIODevice::ReadOnly))
        throw Failure{sample.errorString()};
    const QByteArray content = sample.readAll();
    const QString word = QStringLiteral("Résidence des Tilleuls ");
    const QStringList names{word.repeated(9).trimmed(), QString(251, QLatin1Char('W')),
                            QString::fromUtf8("تشخيص المنزل الكبير رقم ١٢"),
                            QString::fromUtf8("🏠 Séjour 👨‍👩‍👧‍👦 🧱")};
    for (const QString &name : names) {
        QFile file(files.filePath(name + QStringLiteral(".xml")));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            throw Failure{file.errorString()};
    }
    m_hand.find(names.last());
    picture(QStringLiteral("diagnostics-names"));
    m_hand.tap(QStringLiteral("Supprimer « %1 »").arg(names.first()));
    m_hand.find(QStringLiteral("yes"));
    picture(QStringLiteral("diagnostic-remove-long"));
    m_hand.tap(QStringLiteral("no"));

    for (const QString &name : names)
        QFile::remove(files.filePath(name + QStringLiteral(".xml")));
    move(aside, files);
    QDir().rmdir(aside.path());
    m_hand.find(QStringLiteral("Cave-7"));
    back(QStringLiteral("HomeScreen"));
}

void Tour::notReady()
{
    const auto waitForReadiness = [this](bool ready) {
        m_hand.waitFor([&] { return m_controller.error->property("readyForAcquisition").toBool() == ready; },
                       QStringLiteral("the readiness is to be told"), 20000);
    };
    instrument(QStringLiteral("conditions"), {{QStringLiteral("temperature"), 60}});
    waitForReadiness(false);
    m_hand.tap(QStringLiteral("Mesures directes"));
    m_hand.waitForScreen(QStringLiteral("DirectScreen"));
    picture(QStringLiteral("direct-not-ready"));
    back(QStringLiteral("HomeScreen"));
    instrument(QStringLiteral("conditions"), {{QStringLiteral("temperature"), 22}});
    waitForReadiness(true);
}

void Tour::failChecks()
{
    m_hand.tap(QStringLiteral("Contrôle de justesse"));
    m_hand.waitForScreen(QStringLiteral("AccuracyScreen"));
    m_hand.tap(QStringLiteral("Libre"));
    setSpeed(20);
    for (const char *outcome : {"error", "uncalibrated"}) {
        instrument(QStringLiteral("accuracy"), {{QStringLiteral("outcome"), QLatin1String(outcome)}});
        m_hand.tap(QStringLiteral("startAccuracy"));
        m_hand.waitFor([this] { return isIdle(); }, QStringLiteral("the accuracy check is to end"), 30000);
        m_hand.find(QStringLiteral("startAccuracy"));
        picture(QStringLiteral("accuracy-") + QLatin1String(outcome));
    }
    instrument(QStringLiteral("accuracy"), {{QStringLiteral("outcome"), QStringLiteral("measured")}});
    back(QStringLiteral("HomeScreen"));
}

void Tour::failShots()
{
    m_hand.tap(QStringLiteral("Mesures directes"));
    m_hand.waitForScreen(QStringLiteral("DirectScreen"));
    m_hand.tap(QStringLiteral("measureSettings"));
    m_hand.waitForScreen(QStringLiteral("SettingsScreen"));
    m_hand.tap(QStringLiteral("À la détente"));
    back(QStringLiteral("DirectScreen"));

    setSpeed(0.5);
    instrument(QStringLiteral("sample"),
               {{QStringLiteral("concentration"), 1.0}, {QStringLiteral("distance"), 40}});
    press();
    hold(3);
    picture(QStringLiteral("direct-too-far"));
    release();
    picture(QStringLiteral("direct-too-far-done"));
    instrument(QStringLiteral("sample"), {{QStringLiteral("distance"), 0}});

    press();
    hold(3);
    instrument(QStringLiteral("napSilent"), {{QStringLiteral("on"), true}});
    m_hand.pause(5000);
    picture(QStringLiteral("direct-silent"));
    instrument(QStringLiteral("napSilent"), {{QStringLiteral("on"), false}});
    hold(1);
    instrument(QStringLiteral("napError"), {{QStringLiteral("error"), QStringLiteral("DPP_ERROR")}});
    release();
    m_hand.find(QStringLiteral("Acquitter"));
    picture(QStringLiteral("direct-interrupted"));
    acknowledge();

    m_hand.tap(QStringLiteral("clearMeasures"));
    m_hand.find(QStringLiteral("yes"));
    picture(QStringLiteral("direct-clear"));
    m_hand.tap(QStringLiteral("yes"));
    back(QStringLiteral("HomeScreen"));
}

void Tour::exhaustCalibration()
{
    m_hand.tap(QStringLiteral("Calibrage"));
    m_hand.waitForScreen(QStringLiteral("CalibrationScreen"));
    setSpeed(1);
    m_hand.tap(QStringLiteral("startCalibration"));
    m_hand.tap(QStringLiteral("stopCalibration"));
    m_hand.find(QStringLiteral("startCalibration"));
    picture(QStringLiteral("calibration-stopped"));
    setSpeed(20);
    instrument(QStringLiteral("calibration"), {{QStringLiteral("outcome"), QStringLiteral("error")}});
    const auto isExhausted = [this] {
        return m_controller.calibration->property("calibrationState").toInt()
            == CalibrationEnumClass::TOO_MANY_ERRORS;
    };
    for (int attempt = 0; attempt < 5 && !isExhausted(); ++attempt) {
        m_hand.tap(QStringLiteral("startCalibration"));
        m_hand.waitFor([this] { return isIdle(); }, QStringLiteral("the calibration is to fail"), 30000);
        acknowledge();
        m_hand.waitFor([&] { return isExhausted() || m_hand.see(QStringLiteral("startCalibration")); },
                       QStringLiteral("the calibration is to be over"));
    }
    picture(QStringLiteral("calibration-exhausted"));
    instrument(QStringLiteral("calibration"), {{QStringLiteral("outcome"), QStringLiteral("success")}});
    setSpeed(1);
    back(QStringLiteral("HomeScreen"));
}

void Tour::acknowledge()
{
    m_hand.pause(300);
    if (m_hand.see(QStringLiteral("Acquitter")))
        m_hand.tap(QStringLiteral("Acquitter"));
}

void Tour::release()
{
    instrument(QStringLiteral("release"));
    m_hand.waitFor([this] { return isIdle(); }, QStringLiteral("the shot is to end"), 30000);
}
