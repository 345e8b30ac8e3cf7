// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_ACQUISITION_H
#define SIMULATOR_ACQUISITION_H

#include <QObject>
#include <QTimer>

#include <optional>

#include <nap/records.h>

#include "physics.h"

namespace simulator {

/// What the service answers when it refuses; 0 otherwise.
enum Refusal : int {
    Busy = -1, ///< an acquisition runs already
    NothingRuns = -2 ///< there is no acquisition that this could end
};

/// Everything that can be set from outside; read when an acquisition begins, except the conditions and the
/// speed, which act at once.
struct Settings
{
    Sample sample;
    Source source;
    Detector detector;
    Reference reference;
    Conditions conditions;
    QDate today; ///< null: the real one
    QDate calibrationDate = QDate(2026, 1, 12); ///< null: never calibrated
    bool calibrationFails = false;
    std::optional<com::halvar::nap::DetectionDecision> accuracyOutcome; ///< none: what is measured
    quint32 seed = 1;
    double speed = 1; ///< instrument seconds per real second
};

/// The analysis service's one acquisition at a time. A measure is told as a status IN_PROGRESS, a detection
/// without decision, which opens the shot, a detection after every period, and the status NOT_STARTED that
/// ends it.
class Acquisition : public QObject
{
    Q_OBJECT
public:
    enum Kind {
        None,
        Measure,
        Accuracy,
        Calibration
    };

    explicit Acquisition(QObject *parent = nullptr);

    Settings settings;
    /// To be called after a change of the conditions or the speed.
    void settingsChanged();
    /// The next acquisition draws what the first one of settings.seed draws.
    void restartDraws() { m_stream = 0; }

    // The service's operations: 0, or a Refusal.
    int startMeasure(const com::halvar::nap::MeasureCustomData &customData, bool autoStop);
    int startAccuracyCheck();
    int startCalibration();
    /// Ends the measure with its result, made of the whole periods so far.
    int requestStopMeasure();
    /// Ends whatever runs, without a result or a number.
    int abort();
    /// \return NothingRuns when there is no measure yet.
    int lastMeasure(com::halvar::nap::MeasureSummary &measure) const;
    void sendLastStatus();

    /// Tells the error; a running acquisition has failed by it, and waits for abort().
    void fail(com::halvar::nap::AcqError error);
    /// Forgets what runs, without a word: the service's process is gone.
    void vanish();

    Kind kind() const { return m_kind; }
    com::halvar::nap::AcqStatus status() const;
    int lastId() const { return m_lastId; }
    /// Of the last finished measure or check; empty before.
    com::halvar::nap::DetectionResult lastResult() const { return m_last.get_detectionResult(); }
    double activity() const;

signals:
    void notify(const com::halvar::nap::NotificationMessage &message);
    void finished(int id, simulator::Acquisition::Kind kind);

private:
    int begin(Kind kind, double truth);
    void tick();
    void tickMeasure();
    void tickAccuracy();
    void sendStatus(com::halvar::nap::AcqStatus status,
                    std::optional<com::halvar::nap::AcqError> error = std::nullopt);
    void sendDetection(const com::halvar::nap::DetectionResult &result);
    com::halvar::nap::DetectionResult result(com::halvar::nap::DetectionDecision decision) const;
    com::halvar::nap::DetectionDecision decision() const;
    void finish(const com::halvar::nap::DetectionResult &result);
    void end();
    QDate today() const;
    void pace();

    Kind m_kind = None;
    std::optional<com::halvar::nap::AcqError> m_error; ///< the acquisition has failed
    bool m_autoStop = false;
    bool m_wasReady = true;
    int m_periods = 0; ///< since the beginning, or since the failure
    quint32 m_stream = 0;
    Sample m_sample;
    Detector m_detector;
    std::optional<Counting> m_counting;
    com::halvar::nap::MeasureCustomData m_customData;
    com::halvar::nap::MeasureSummary m_last;
    int m_lastId = 0;
    QTimer m_timer;
};

} // namespace simulator

#endif // SIMULATOR_ACQUISITION_H
