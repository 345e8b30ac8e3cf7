// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SOAK_SOAK_H
#define SOAK_SOAK_H

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QVector>

#include <functional>
#include <memory>

#include <record.h>

#include "curves.h"

class Config;
class Database;
class HalvarController;
class SimulatorControl;

struct SoakOptions
{
    int shots = 100000;
    int units = 2000;
    int unitsADiagnostic = 25;
    int faultEvery = 97; ///< shots between two faults; 0: none
    double speed = 200;
    QString out;
};

/// A long day's work without an operator: shots over many units and diagnostics, with faults in between,
/// through the real links. Each diagnostic is loaded again and compared when it is done. Whatever does not
/// happen as it should throws Failure.
class Soak : public QObject
{
public:
    explicit Soak(const SoakOptions &options);
    ~Soak() override;

    /// Shoots, then loads every file and looks for every shot. Prints what came of it.
    /// \return whether nothing was lost and all curves are flat.
    bool run();

private:
    void switchOn();
    void switchOff();
    void work(int diagnostic);
    void addUnit(int unit);
    void shoot(QVector<int> &ids);
    void press();
    void release();
    void rearm();
    void compare(int diagnostic);
    int search();
    void sample();

    // What goes wrong on the way; each leaves the instrument ready for the next shot.
    void fault();
    void shock();
    void jammedShutter();
    void failingService();
    void lostMicrocontroller();
    void slowService();
    void earlyRelease();

    void command(const char *name, const QJsonObject &members = {});
    QJsonObject msp();
    int commandsReceived();
    void onNotice(const QJsonObject &notice);
    bool isIdle() const;
    void waitFor(const std::function<bool()> &condition, const QString &what);
    void say(const QString &line);

    const SoakOptions m_options;
    std::unique_ptr<SimulatorControl> m_instrument;
    std::unique_ptr<Config> m_config;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<HalvarController> m_controller;
    QVector<QVector<int>> m_ids; ///< the service's number of each shot, by diagnostic
    int m_changed = 0; ///< what a diagnostic that was loaded again had otherwise
    QMap<QString, int> m_faults;
    int m_shots = 0;
    int m_nextFault = 0;
    int m_commandsSent = 0; ///< to the microcontroller, since it was started
    int m_detections = 0; ///< of the running acquisition
    int m_finishedId = -1; ///< its number; -1 until it comes to a result
    qint64 m_shotNs = 0; ///< spent in shots since the last sample
    int m_sampledShots = 0;
    Curve m_resident;
    Curve m_descriptors;
    Curve m_threads;
    Curve m_time;
};

#endif // SOAK_SOAK_H
