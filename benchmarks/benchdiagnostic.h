// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef BENCHDIAGNOSTIC_H
#define BENCHDIAGNOSTIC_H

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

#include "config.h"
#include "database.h"
#include "halvarcontroller.h"

/// A controller with a home of its own, and diagnostics of any number of units in it. Constructing one beeps
/// and runs shell commands: only inside a private instrument.
class BenchDiagnostic
{
public:
    static constexpr int measuresOfAUnit = 5;

    /// \p rooms are in the reference lists beforehand, as are all other names: loading adds none, as in daily
    /// use.
    explicit BenchDiagnostic(int rooms = 30);

    /// The one that the rows share, so that they find the same document.
    static BenchDiagnostic &shared();

    HalvarController &controller() const { return *m_controller; }
    Database &database() { return m_database; }
    /// The controller holding a diagnostic of this many units, saved in path(), room by room.
    HalvarController &withUnits(int units);
    /// A blank diagnostic, whose former units are gone.
    void clear();

    QString path() const { return m_home.filePath(QStringLiteral("files/benchmark.xml")); }
    /// What path() holds.
    QByteArray document() const;
    /// Where the reference database's unit file lies.
    QString databaseDirectory() const { return m_home.filePath(QStringLiteral("database")); }

private:
    QTemporaryDir m_home;
    Config m_config{nullptr};
    Database m_database{nullptr};
    std::unique_ptr<HalvarController> m_controller;
    QStringList m_rooms;
};

#endif // BENCHDIAGNOSTIC_H
