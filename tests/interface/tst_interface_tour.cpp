// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The whole job by the screens: from the code to the saved file and back, with real mouse and key events on
// the simulated instrument; each state is looked at in every appearance.
#include <QFile>
#include <QTest>

#include <failure.h>
#include <tour.h>

#include "eye.h"
#include "showcase.h"
#include "simulatorprocess.h"

class TstInterfaceTour : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fromTheCodeToTheSavedFile_showsEveryStateRight();
    void inEnglishWithAnExpiredSource_showsEveryScreenRight();
};

void TstInterfaceTour::init()
{
    Showcase::fillHome();
    // A file that a power cut left behind.
    const QString damaged = Showcase::home() + QStringLiteral("files/Coupure-de-courant.xml");
    QVERIFY(QFile::copy(QStringLiteral(HALVAR_SOURCE_DIR "/simulator/home/files/Cave-7.xml"), damaged));
    QVERIFY(QFile::resize(damaged, 2500));
}

void TstInterfaceTour::fromTheCodeToTheSavedFile_showsEveryStateRight()
{
    Showcase::setConfig(QStringLiteral("Time_Before_Open_Shutter"), QStringLiteral("2000"));
    Showcase::setConfig(QStringLiteral("Waiting_For_Go"), QStringLiteral("4"));

    SimulatorProcess simulator(QStringLiteral(SIMULATOR));
    QVERIFY(simulator.start(
        {QStringLiteral("--seed"), QStringLiteral("7"), QStringLiteral("--home"), Showcase::home()}));
    QStringList found;
    int states = 0;
    try {
        Showcase showcase;
        showcase->init();
        Tour tour(showcase.window, *showcase.controller, simulator.control, [&](const QString &state) {
            ++states;
            // A name of 255 bytes is shortened.
            const Strictness strictness =
                state == QLatin1String("diagnostics-names") ? Strictness::LongTexts : Strictness::Everything;
            showcase.hand->inEveryAppearance([&](const QString &appearance) {
                const QStringList seen = complaints(showcase.window, strictness);
                for (const QString &complaint : seen)
                    found.append(QStringLiteral("%1, %2: %3").arg(state, appearance, complaint));
            });
            for (const QString &warning : showcase.watch.warnings())
                found.append(QStringLiteral("%1: %2").arg(state, warning));
            showcase.watch.clear();
        });
        tour.run();
        found += showcase.watch.warnings();
    } catch (const Failure &failure) {
        found.append(failure.text);
    }
    QVERIFY2(found.isEmpty(), qUtf8Printable(QLatin1Char('\n') + found.join(QLatin1Char('\n'))));
    QVERIFY(states > 40);

    // The last thing was to shut down.
    QFile commands(qEnvironmentVariable("HALVAR_INSTRUMENT_COMMANDS"));
    QVERIFY(commands.open(QIODevice::ReadOnly));
    QVERIFY(commands.readAll().trimmed().endsWith("halt"));
}

void TstInterfaceTour::inEnglishWithAnExpiredSource_showsEveryScreenRight()
{
    Showcase::setConfig(QStringLiteral("DateEndSource"), QStringLiteral("01/03/2024"));
    SimulatorProcess simulator(QStringLiteral(SIMULATOR));
    QVERIFY(simulator.start({QStringLiteral("--home"), Showcase::home()}));
    QStringList found;
    int screens = 0;
    try {
        Showcase showcase(QLocale(QStringLiteral("en_GB")));
        showcase->init();
        Tour tour(showcase.window, *showcase.controller, simulator.control, [&](const QString &state) {
            ++screens;
            if (!isSaid(showcase.window, QStringLiteral("Source expired")))
                found.append(QStringLiteral("%1: the expired source is not told").arg(state));
            if (state == QLatin1String("diagnostics")
                && !isSaid(showcase.window, QStringLiteral("Damaged: the file ends at line 57")))
                found.append(QStringLiteral("%1: the damage is not told in English").arg(state));
            showcase.hand->inBothOrientations([&](const QString &appearance) {
                const QStringList seen = complaints(showcase.window);
                for (const QString &complaint : seen)
                    found.append(QStringLiteral("%1, %2: %3").arg(state, appearance, complaint));
            });
        });
        tour.lookAround();
        found += showcase.watch.warnings();
    } catch (const Failure &failure) {
        found.append(failure.text);
    }
    QVERIFY2(found.isEmpty(), qUtf8Printable(QLatin1Char('\n') + found.join(QLatin1Char('\n'))));
    QVERIFY(screens >= 12);
}

QTEST_MAIN(TstInterfaceTour)
#include "tst_interface_tour.moc"
