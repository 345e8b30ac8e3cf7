// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The diagnostic's file, the configuration and the reference database.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "benchdiagnostic.h"
#include "config.h"
#include "corepath.h"
#include "database.h"
#include "measurelistmodel.h"
#include "udlistmodel.h"

namespace {

constexpr int units = 100;
const QString sampleHome = QStringLiteral(HALVAR_SOURCE_DIR "/simulator/home/");

void save()
{
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    HalvarController &controller = diagnostic.withUnits(units);
    countSecond([&] { QFile::remove(diagnostic.path()); }, [&] { controller.saveFile(); });
    expect(diagnostic.document().count("<Mesure ") == units * BenchDiagnostic::measuresOfAUnit, "not saved");
}

void load()
{
    BenchDiagnostic &diagnostic = BenchDiagnostic::shared();
    HalvarController &controller = diagnostic.withUnits(units);
    countSecond([&] { diagnostic.clear(); }, [&] { controller.loadFile(diagnostic.path()); });
    expect(controller.uds->count() == units
               && controller.uds->last()->measures()->count() == BenchDiagnostic::measuresOfAUnit,
           "not loaded");
}

void readConfig()
{
    Config config(nullptr);
    countSecond([&] { expect(config.read(sampleHome), "the configuration was not read"); });
    expect(!config.getSN_Analyzer().isEmpty(), "the configuration has no serial number");
}

void readDatabase()
{
    Database database(nullptr);
    countSecond([&] { expect(database.read(sampleHome), "the database was not read"); });
    expect(!database.m_LocalItemsListModel->isEmpty(), "the database has no rooms");
}

void writeDatabase()
{
    const QTemporaryDir home;
    expect(QDir(home.path()).mkpath(QStringLiteral("database")), "no directory");
    const QString written = home.filePath(QStringLiteral("database/database_unit.xml"));
    expect(QFile::copy(sampleHome + QStringLiteral("database/database_unit.xml"), written), "no database");
    Database database(nullptr);
    database.read(home.path() + QLatin1Char('/'));
    for (int i = 0; i < 100; ++i)
        database.m_LocalItemsListModel->add(QStringLiteral("Salon %1").arg(i), QString());
    countSecond([&] { QFile::remove(written); },
                [&] { expect(database.write(), "the database was not written"); });
    expect(QFileInfo(written).size() > 0, "the database was not written");
}

const bool registered = corePath("file-save", "a diagnostic of 100 units with 5 measures each saved", save)
    && corePath("file-load", "the same loaded into a blank diagnostic", load)
    && corePath("file-read-config", "the sample home's configuration read", readConfig)
    && corePath("file-read-database", "the sample home's reference database read", readDatabase)
    && corePath("file-write-database", "the unit's reference database with 100 rooms written", writeDatabase);

} // namespace
