// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_OPERATOR_H
#define DIAGNOSTIC_OPERATOR_H

#include <QJsonObject>
#include <QObject>
#include <QVector>

#include <functional>

#include "record.h"
#include "scenario.h"

class Progress;
class SimulatorControl;

/// The objects that an application hands to QML, by which the operator sees and does everything.
struct Interface
{
    QObject *controller = nullptr;
    QObject *units = nullptr;
    QObject *directMeasures = nullptr;
    QObject *pin = nullptr;
    QObject *battery = nullptr;
    QObject *date = nullptr;
    QObject *error = nullptr;
    QObject *calibration = nullptr;
    QObject *rooms = nullptr;
    QObject *elements = nullptr;
    QObject *substrates = nullptr;
    QObject *coatings = nullptr;
    QObject *reasonsNotMeasured = nullptr;
};

/// Does what a scenario says, as an operator does: through the interface, and with the hand on the
/// instrument.
///
/// Whatever does not happen as it should throws Failure. What the library shows of a measure is compared with
/// what the analysis service sent for it, shot by shot.
class Operator : public QObject
{
    Q_OBJECT
public:
    /// \param speed of the instrument: the slower it is, the more patience it needs.
    Operator(const Interface &interface, SimulatorControl *instrument, Progress *progress, double speed,
             QObject *parent = nullptr);

    /// What \p step is called in the progress.
    static QString describe(const Step &step);
    /// \return what came of it, for the progress. An error text that nobody expected is a failure.
    QString perform(const Step &step);

    DiagnosticRecord record() const;
    QVector<MeasureRecord> directMeasures() const;
    int shots() const { return m_shots; }
    QStringList events() const { return m_events; }

    /// Saves the diagnostic under its name.
    void save();
    /// Starts a blank diagnostic and loads the one at \p path into it.
    void reload(const QString &path);

private slots:
    void countCommand() { ++m_commandsSent; }

private:
    enum class Branch {
        Direct,
        Indexed
    };

    QString carryOut(const Step &step);

    // Steps.
    QString enterPin(const Step &step);
    QString waitForGo();
    QString newDiagnostic(const Step &step);
    QString setMode(const Step &step);
    QString checkAccuracy(const Step &step);
    QString calibrate(const Step &step);
    QString addUnit(const Step &step);
    QString selectUnit(const Step &step);
    QString measureUnit(const Step &step);
    QString measureDirect(const Step &step);
    QString note(const Step &step);
    QString skip(const Step &step);
    QString noteBuilding(const Step &step);
    QString setLight(const Step &step);
    QString setBattery(const Step &step);
    QString shake();
    QString shutterFault();
    QString readError(const Step &step);

    // The hand on the instrument.
    QJsonObject instrument(const QString &command, const QJsonObject &members = {});
    QJsonObject msp();
    QString mspState();
    int commandsReceived();
    void arm();
    void rearm();
    MeasureRecord shoot(const Step &step, Branch branch);
    void hold(const Step &step);
    void onNotice(const QJsonObject &notice);
    void beginAcquisition();
    void waitForResult(const QString &what);
    void expectShotAsSent(const MeasureRecord &shown, const QString &measureMode) const;

    // Waiting: the event loop runs until the condition holds.
    void waitFor(const std::function<bool()> &condition, const QString &what, int limit);
    void pause(int milliseconds);
    bool isIdle() const;
    QObject *selectedUnit() const;
    void requireTitle(QObject *list, const QString &title, const char *what) const;

    static constexpr int shortLimit = 5000;
    /// A release of the trigger that comes before the second result stops the measure only after 2 s, and
    /// would stop the next one if that ran by then.
    static constexpr int delayedStop = 2100;
    /// Between two things that an operator does.
    static constexpr int handsPause = 200;

    /// One detection with a decision, as the service sent it.
    struct Detection
    {
        double value;
        double sigma;
        QString decision;
    };

    const Interface m_interface;
    SimulatorControl *const m_instrument;
    Progress *const m_progress;
    const int m_longLimit; ///< ms, for what the instrument does in its own time
    QVector<Detection> m_detections; ///< of the running acquisition
    int m_results = 0; ///< detections of it, with or without a decision
    bool m_isFinished = false; ///< it came to a result
    int m_finishedId = -1; ///< the number that the service gave it
    int m_commandsSent = 0; ///< to the MSP, since it was started
    int m_shots = 0;
    QStringList m_events;
};

#endif // DIAGNOSTIC_OPERATOR_H
