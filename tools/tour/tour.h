// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TOUR_TOUR_H
#define TOUR_TOUR_H

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include "hand.h"

class HalvarController;
class SimulatorControl;

/// A whole diagnostic by hand: from the start-up hold-off and the code through checks and measures to the
/// saved file, on the simulated instrument, with a picture of every screen and state.
class Tour
{
public:
    /// \param pictures is called with each state's name when there is something to be looked at; it may look
    /// as long as it likes.
    Tour(QQuickWindow *window, HalvarController &controller, SimulatorControl &instrument,
         std::function<void(const QString &name)> pictures);

    /// Throws Failure.
    void run();
    /// The main screens only, in whatever language they are. Throws Failure.
    void lookAround();

private:
    // What the operator does, in order.
    void start();
    void unlock();
    void checkAccuracy();
    void calibrate();
    void measureDirectly();
    void meetFaults();
    void lookAtFiles();
    void lookAtOddLists();
    void beginDiagnostic();
    void describeUnit();
    void measureUnit();
    void continueUnit();
    void leaveOutUnit();
    void finishDiagnostic();
    void openAgain();
    void meetRareStates();
    void notReady();
    void failChecks();
    void failShots();
    void exhaustCalibration();
    void service();

    // The hand on the instrument.
    void place(double concentration, const QString &substrate);
    /// Instrument seconds per real second. Four pictures need a second: results come slower where they show.
    void setSpeed(double speed);
    void setBattery(int microvolts, bool low);
    void press();
    void release();
    void acknowledge();
    void hold(int results);
    /// A whole shot; in the mode of the trigger it is held for so many results.
    void shoot(int results);
    bool isIdle() const;
    void back(const QString &to);
    void pick(const QString &row, const QString &title);

    void picture(const QString &name);
    QJsonObject instrument(const QString &command, const QJsonObject &members = {});

    Hand m_hand;
    HalvarController &m_controller;
    SimulatorControl &m_instrument;
    std::function<void(const QString &)> m_pictures;
};

#endif // TOUR_TOUR_H
