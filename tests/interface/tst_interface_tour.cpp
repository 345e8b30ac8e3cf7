// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The whole job by the screens: from the code to the saved file and back, with real mouse and key events on
// the simulated instrument; each state is looked at in every appearance.
#include <QFile>
#include <QtTest>

#include <failure.h>
#include <tour.h>

#include "eye.h"
#include "showcase.h"
#include "simulatorprocess.h"

class TstInterfaceTour : public QObject
{
    Q_OBJECT

private slots:
    void fromTheCodeToTheSavedFile_showsEveryStateRight();
};

void TstInterfaceTour::fromTheCodeToTheSavedFile_showsEveryStateRight()
{
    Showcase::fillHome();
    QFile::copy(QStringLiteral(HALVAR_SOURCE_DIR "/simulator/home/files/Cave-7.xml"),
                Showcase::home() + QStringLiteral("files/Coupure-de-courant.xml"));
    QVERIFY(QFile::resize(Showcase::home() + QStringLiteral("files/Coupure-de-courant.xml"), 2500));
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
            showcase.hand->inEveryAppearance([&](const QString &appearance) {
                const QStringList seen = complaints(showcase.window);
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

QTEST_MAIN(TstInterfaceTour)
#include "tst_interface_tour.moc"
