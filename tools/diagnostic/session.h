// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_SESSION_H
#define DIAGNOSTIC_SESSION_H

#include <QString>

#include <memory>

#include "scenario.h"

class Config;
class Database;
class HalvarController;
class Operator;
class Progress;
class SimulatorControl;

/// What the command line says.
struct Options
{
    QString scenario;
    QString home;
    QString out;
    double speed = 0; ///< 0: as the scenario says
};

/// One recording: the instrument's home filled, the library assembled as an application does, the scenario
/// performed, the diagnostic saved, loaded again and compared, the files handed over.
class Session
{
public:
    Session(const Options &options, Progress *progress);
    ~Session();

    /// Performs everything, and prints the summary. Throws Failure.
    void run();

private:
    Q_DISABLE_COPY(Session)
    void prepareFiles();
    void assemble();
    void perform();
    void verify();
    void handOver(const QString &summary);

    const Options m_options;
    Progress *const m_progress;
    const Scenario m_scenario;
    // Destroyed from the last to the first: the controller reads the configuration and the database.
    std::unique_ptr<SimulatorControl> m_instrument;
    std::unique_ptr<Config> m_config;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<HalvarController> m_controller;
    std::unique_ptr<Operator> m_operator;
};

#endif // DIAGNOSTIC_SESSION_H
