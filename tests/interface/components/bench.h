// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef COMPONENTS_BENCH_H
#define COMPONENTS_BENCH_H

#include <QColor>
#include <QObject>
#include <QQmlEngine>

#include <memory>

#include <config.h>
#include <database.h>
#include <halvarcontroller.h>
#include <interface.h>

#include "qmlwatch.h"

/// The library's real objects for tests in QML, and a hand on what only C++ reaches: what the analysis
/// service and the MSP tell, the lists, the battery's file. In QML it is called bench. Only inside a private
/// instrument.
class Bench : public QObject
{
    Q_OBJECT
public:
    /// Qt's warnings since reset(), once.
    Q_INVOKABLE QStringList warnings();
    /// What is to be complained of in the window that \p item is in.
    Q_INVOKABLE QStringList complaints(QObject *item) const;
    /// How many pixels of this colour \p item shows.
    Q_INVOKABLE int pixelsOf(QObject *item, const QColor &color) const;
    /// No units, no direct measures, no digits, no errors, nothing running.
    Q_INVOKABLE void reset();

    Q_INVOKABLE void conditions(bool ready, double temperature, double voltage);
    Q_INVOKABLE void setBattery(int microvolts);
    Q_INVOKABLE void setError(const QString &text);
    Q_INVOKABLE void setShock(bool on);
    Q_INVOKABLE void setPinDisabled(bool on);
    /// The source ends so many days from today.
    Q_INVOKABLE void setSourceEnd(int days);

    Q_INVOKABLE void openShutter();
    Q_INVOKABLE void startMeasure();
    /// The first result of a shot, which has no decision: the measure is there.
    Q_INVOKABLE void tellFirst();
    Q_INVOKABLE void tellResult(double concentration, double sigma, int decision);
    Q_INVOKABLE void tellEnd();
    /// How the accuracy check of the current stage came out.
    Q_INVOKABLE void setCheck(int decision);

    Q_INVOKABLE void addUnit(const QString &room, const QString &element, int statut);
    Q_INVOKABLE void addRoom(const QString &title, bool activated);

public slots: // called by QtQuickTest
    void applicationAvailable();
    void qmlEngineAvailable(QQmlEngine *engine);
    void cleanupTestCase();

private:
    std::unique_ptr<QmlWatch> m_watch;
    Config m_config{nullptr};
    std::unique_ptr<Database> m_database;
    std::unique_ptr<HalvarController> m_controller;
    std::unique_ptr<Interface> m_interface;
};

#endif // COMPONENTS_BENCH_H
