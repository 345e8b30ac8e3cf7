// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "acquisition.h"

#include <QDateTime>

#include <cmath>

namespace nap = com::halvar::nap;

namespace simulator {

namespace {

constexpr double LongestMeasure = 600; // s, of one that nobody stops
constexpr int PeriodsToAbort = 20; // a failed acquisition that nobody aborts ends by itself

const tessel::AString Component("simulator");

} // namespace

Acquisition::Acquisition(QObject *parent)
    : QObject(parent)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Acquisition::tick);
}

void Acquisition::settingsChanged()
{
    pace();
    const bool ready = settings.conditions.ready();
    if (m_kind != None && !m_error && !ready) {
        fail(settings.conditions.temperatureOk() ? nap::INVALID_ACCELERATING_VOLTAGE
                                                 : nap::INVALID_TEMPERATURE);
    } else if (ready != m_wasReady) {
        m_wasReady = ready;
        sendLastStatus();
    }
}

int Acquisition::startMeasure(const nap::MeasureCustomData &customData, bool autoStop)
{
    if (m_kind != None)
        return Busy;
    m_customData = customData;
    m_autoStop = autoStop;
    return begin(Measure, settings.sample.concentration);
}

int Acquisition::startAccuracyCheck()
{
    if (m_kind != None)
        return Busy;
    m_customData = nap::MeasureCustomData();
    return begin(Accuracy, settings.reference.value);
}

int Acquisition::startCalibration()
{
    if (m_kind != None)
        return Busy;
    return begin(Calibration, 0);
}

int Acquisition::begin(Kind kind, double truth)
{
    m_kind = kind;
    m_error.reset();
    m_periods = 0;
    m_detector = settings.detector;
    m_sample = settings.sample;
    if (kind == Accuracy) {
        // The reference block lies in its place in the case.
        m_sample.substrate.clear();
        m_sample.distance = 0;
    }
    m_counting.emplace(settings.seed, ++m_stream, truth * settings.conditions.gain(),
                       sigmaOfOneSecond(m_detector, m_sample, activity()));
    pace();
    if (!settings.conditions.ready()) {
        fail(settings.conditions.temperatureOk() ? nap::INVALID_ACCELERATING_VOLTAGE
                                                 : nap::INVALID_TEMPERATURE);
        return 0;
    }
    sendStatus(nap::IN_PROGRESS);
    if (kind != Calibration) {
        nap::DetectionResult opening;
        opening.set_value(0.0);
        opening.set_sigma(0.0);
        sendDetection(opening);
    }
    return 0;
}

int Acquisition::requestStopMeasure()
{
    if (m_kind != Measure)
        return NothingRuns;
    if (m_error) {
        end();
        return 0;
    }
    const nap::DetectionResult last = result(decision());
    sendDetection(last);
    finish(last);
    return 0;
}

int Acquisition::abort()
{
    if (m_kind == None)
        return NothingRuns;
    end();
    return 0;
}

int Acquisition::lastMeasure(nap::MeasureSummary &measure) const
{
    if (m_lastId == 0)
        return NothingRuns;
    measure = m_last;
    return 0;
}

void Acquisition::sendLastStatus()
{
    sendStatus(status(), m_error);
}

void Acquisition::fail(nap::AcqError error)
{
    if (m_kind != None) {
        m_error = error;
        m_periods = 0;
    }
    sendStatus(m_kind == None ? nap::NOT_STARTED : nap::ERROR, error);
}

void Acquisition::vanish()
{
    m_kind = None;
    m_error.reset();
    pace();
}

nap::AcqStatus Acquisition::status() const
{
    if (m_kind == None)
        return nap::NOT_STARTED;
    return m_error ? nap::ERROR : nap::IN_PROGRESS;
}

double Acquisition::activity() const
{
    return settings.source.activityOn(today());
}

QDate Acquisition::today() const
{
    return settings.today.isValid() ? settings.today : QDate::currentDate();
}

void Acquisition::pace()
{
    const bool drifts = settings.conditions.temperatureDrift != 0 || settings.conditions.voltageDrift != 0;
    if (m_kind == None && !drifts) {
        m_timer.stop();
        return;
    }
    // A period that runs begins anew.
    m_timer.start(qMax(1, static_cast<int>(std::lround(Period * 1000 / settings.speed))));
}

void Acquisition::tick()
{
    ++m_periods;
    settings.conditions.drift(Period);
    const bool ready = settings.conditions.ready();
    if (m_kind == None || m_error) {
        if (m_kind != None && m_periods >= PeriodsToAbort)
            end();
        else if (ready != m_wasReady)
            sendLastStatus();
        m_wasReady = ready;
        return;
    }
    m_wasReady = ready;
    if (!ready) {
        fail(settings.conditions.temperatureOk() ? nap::INVALID_ACCELERATING_VOLTAGE
                                                 : nap::INVALID_TEMPERATURE);
        return;
    }
    switch (m_kind) {
    case Measure:
        tickMeasure();
        break;
    case Accuracy:
        tickAccuracy();
        break;
    case Calibration:
        if (m_periods * Period < m_detector.calibrationTime)
            break;
        if (settings.calibrationFails) {
            fail(nap::DPP_ERROR);
            break;
        }
        settings.calibrationDate = today();
        end();
        break;
    case None:
        break;
    }
}

void Acquisition::tickMeasure()
{
    m_counting->addPeriod();
    const nap::DetectionDecision decided = decision();
    const nap::DetectionResult intermediate = result(decided);
    sendDetection(intermediate);
    const double liveTime = m_counting->liveTime();
    if (m_autoStop && (decided != nap::UNDETERMINED || liveTime >= m_detector.timeLimit))
        finish(intermediate);
    else if (liveTime >= LongestMeasure)
        fail(nap::TIMEOUT_ERROR);
}

void Acquisition::tickAccuracy()
{
    m_counting->addPeriod();
    if (m_counting->liveTime() < m_detector.accuracyTime) {
        sendDetection(result(nap::UNDETERMINED));
        return;
    }
    nap::DetectionDecision outcome = nap::ACCURACY_ERROR;
    if (settings.accuracyOutcome) {
        outcome = *settings.accuracyOutcome;
    } else if (!settings.calibrationDate.isValid()) {
        outcome = nap::UNCALIBRATED;
    } else {
        const double off = std::abs(m_counting->value() - settings.reference.value);
        if (off <= settings.reference.precision + m_detector.k * m_counting->sigma())
            outcome = nap::ACCURACY_OK;
    }
    const nap::DetectionResult last = result(outcome);
    sendDetection(last);
    finish(last);
}

nap::DetectionDecision Acquisition::decision() const
{
    if (m_counting->liveTime() <= 0)
        return nap::INSUFFICIENT_ACQTIME;
    if (!settings.calibrationDate.isValid())
        return nap::UNCALIBRATED;
    if (m_sample.distance > FarthestDistance)
        return nap::COMPTON_ERROR;
    return decide(m_detector, *m_counting);
}

nap::DetectionResult Acquisition::result(nap::DetectionDecision decision) const
{
    nap::DetectionResult result;
    result.set_value(m_counting->value());
    result.set_sigma(m_counting->sigma());
    result.set_decision(decision);
    result.set_sourceActivity(activity());
    return result;
}

void Acquisition::finish(const nap::DetectionResult &result)
{
    nap::SpectrumInformation information;
    information.set_liveTime(tessel::TimePeriod(std::llround(m_counting->liveTime() * 1e6)));
    m_last = nap::MeasureSummary();
    m_last.set_id(++m_lastId);
    m_last.set_spectrumInformation(information);
    m_last.set_detectionResult(result);
    m_last.set_customData(m_customData);
    emit finished(m_lastId, m_kind);

    nap::SpectrumResult spectrum;
    spectrum.set_information(information);
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_SPECTRUM"));
    message.set_component(Component);
    message.set_spectrum(spectrum);
    emit notify(message);
    end();
}

void Acquisition::end()
{
    m_kind = None;
    m_error.reset();
    pace();
    sendStatus(nap::NOT_STARTED);
}

void Acquisition::sendStatus(nap::AcqStatus status, std::optional<nap::AcqError> error)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_STATUS"));
    message.set_component(Component);
    message.set_status(status);
    message.set_conditions(settings.conditions.record());
    if (error)
        message.set_error(*error);
    emit notify(message);
}

void Acquisition::sendDetection(const nap::DetectionResult &result)
{
    nap::NotificationMessage message;
    message.set_id(tessel::AString("NAP_DETECTION"));
    message.set_component(Component);
    message.set_detection(result);
    emit notify(message);
}

} // namespace simulator
