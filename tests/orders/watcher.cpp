// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "watcher.h"

#include <QMetaEnum>
#include <QThread>

#include <utility>

#include <QsLog.h>

#include "battery.h"
#include "calibration.h"
#include "halvar-error.h"
#include "halvarcontroller.h"
#include "measurelistmodel.h"
#include "pin.h"
#include "ud.h"
#include "udlistmodel.h"

namespace orders {

namespace {

std::string word(bool value)
{
    return value ? "true" : "false";
}

std::string word(int value)
{
    return std::to_string(value);
}

std::string word(const QString &value)
{
    return value.toStdString();
}

Watcher *reader = nullptr; ///< of the log

/// Tells the lines that are the only sign of what happened: Error and Fatal ones, and the count of wrong
/// codes.
void readLog(const QString &message, QsLogging::Level level)
{
    const bool telling =
        level >= QsLogging::ErrorLevel || message.contains(QLatin1String("wrong password reached."));
    // What the worker thread logs is the link's own affair.
    if (telling && QThread::currentThread() == reader->thread())
        reader->add("log " + message.mid(message.indexOf(QLatin1Char('['))).simplified().toStdString());
}

} // namespace

Watcher::Watcher(HalvarController *controller, const QByteArray &home)
    : m_log(QsLogging::DestinationFactory::MakeFunctorDestination(&readLog))
    , m_files(home, [this](const std::string &effect) { m_effects.push_back(effect); })
{
    watchController(controller);
    watchCompanions(controller);
    reader = this;
    QsLogging::Logger::instance().addDestination(m_log);
}

Watcher::~Watcher()
{
    QsLogging::Logger::instance().removeDestination(m_log);
}

void Watcher::add(const std::string &effect)
{
    m_files.drain();
    m_effects.push_back(effect);
}

Effects Watcher::take()
{
    m_files.drain();
    return std::exchange(m_effects, {});
}

void Watcher::watchController(HalvarController *c)
{
    using C = HalvarController;
    const auto property = [this, c](const char *name, auto signal, auto getter) {
        connect(c, signal, this,
                [this, c, name, getter] { add(std::string(name) + ' ' + word((c->*getter)())); });
    };
    property("acquisitionModeChanged", &C::acquisitionModeChanged, &C::acquisitionMode);
    property("branchModeChanged", &C::branchModeChanged, &C::branchMode);
    property("measureModeChanged", &C::measureModeChanged, &C::measureMode);
    property("measureTimeChanged", &C::measureTimeChanged, &C::measureTime);
    property("nbMeasuresChanged", &C::nbMeasuresChanged, &C::nbMeasures);
    property("accuracyStageChanged", &C::accuracyStageChanged, &C::accuracyStage);
    property("lightChanged", &C::lightChanged, &C::light);
    property("fileNameChanged", &C::fileNameChanged, &C::fileName);
    property("localizationChanged", &C::localizationChanged, &C::localization);
    property("udIndexChanged", &C::udIndexChanged, &C::udIndex);
    property("udIndexEditionChanged", &C::udIndexEditionChanged, &C::udIndexEdition);
    property("udLocalChanged", &C::udLocalChanged, &C::udLocal);
    property("ackErrorNbChanged", &C::ackErrorNbChanged, &C::ackErrorNb);

    const auto member = [this, c](const char *name, auto signal, auto pointer) {
        connect(c, signal, this,
                [this, c, name, pointer] { add(std::string(name) + ' ' + word(c->*pointer)); });
    };
    member("couluresChanged", &C::couluresChanged, &C::coulures);
    member("effondrementChanged", &C::effondrementChanged, &C::effondrement);
    member("humiditeChanged", &C::humiditeChanged, &C::humidite);

    connect(c, &C::waitingForGoUpdated, this,
            [this, c] { add("waitingForGoUpdated " + word(c->property("waitingForGo").toBool())); });
    connect(c, &C::sendTension, this, [this](int value) { add("sendTension " + word(value)); });
    connect(c, &C::sendTemperature, this, [this](int value) { add("sendTemperature " + word(value)); });
    connect(c, &C::sendLastCalibrationDate, this,
            [this](const QString &date) { add("sendLastCalibrationDate " + word(date)); });
    connect(c, &C::currentAccuracyChanged, this,
            [this, c] { add("currentAccuracyChanged " + nameOf(c->currentAccuracy())); });
    connect(c, &C::msp_info_request, this, [this] { add("MSP information request"); });
    connect(c, &C::msp_send_request, this, [this](MSPClient::MSPCommand command, const QString &params) {
        m_commands.append(command);
        const char *const name = QMetaEnum::fromType<MSPClient::MSPCommand>().valueToKey(command);
        add("MSP " + std::string(name ? name : "?") + (params.isNull() ? "" : " with parameters"));
    });
}

void Watcher::watchCompanions(HalvarController *c)
{
    connect(c->pin, &PIN::acceptedUpdated, this, [this](bool value) { add("pin accepted " + word(value)); });
    connect(c->pin, &PIN::nbDigitsChanged, this, [this](int value) { add("pin nbDigits " + word(value)); });
    connect(c->pin, &PIN::disabledUpdated, this, [this](bool value) { add("pin disabled " + word(value)); });
    connect(c->error, &Error::shockSignal, this, [this](bool value) { add("shockSignal " + word(value)); });
    connect(c->error, &Error::readyForAcquisitionSignal, this,
            [this](bool value) { add("readyForAcquisitionSignal " + word(value)); });
    connect(c->error, &Error::errorMessageSignal, this,
            [this](const QString &value) { add("errorMessageSignal " + word(value)); });
    connect(c->error, &Error::lastShockSignal, this, [this] { add("lastShockSignal"); });
    connect(c->battery, &Battery::levelChanged, this, [this](int value) { add("battery " + word(value)); });
    connect(c->calibration, &Calibration::calibrationStateChanged, this,
            [this](int value) { add("calibrationStateChanged " + word(value)); });

    watchMeasure(c->accuracyLive, "live");
    watchMeasure(c->accuracyInit, "init");
    watchMeasure(c->accuracyInterrupt, "interrupt");
    watchMeasure(c->accuracyFinal, "final");
    watchMeasures(c->directMeasures, "direct");
    watchList(c->uds, "units", [this](UD *unit) { watchUnit(unit, "unit " + word(++m_lastUnit)); });
}

void Watcher::watchMeasure(const Measure *measure, const std::string &name)
{
    m_names.insert(measure, name);
    connect(measure, &Measure::concentrationChanged, this,
            [this, name](double value) { add(name + " concentration " + text(value)); });
    connect(measure, &Measure::sigmaChanged, this,
            [this, name, measure] { add(name + " sigma " + text(measure->sigma())); });
    connect(measure, &Measure::detectionDecisionChanged, this,
            [this, name](int value) { add(name + " decision " + word(value)); });
    connect(measure, &Measure::localisationChanged, this,
            [this, name, measure] { add(name + " localisation " + word(measure->localisation())); });
    connect(measure, &Measure::degradationStateChanged, this, [this, name] { add(name + " degradation"); });
    connect(measure, &Measure::conservationStateChanged, this, [this, name] { add(name + " conservation"); });
    connect(measure, &Measure::idNAPChanged, this,
            [this, name, measure] { add(name + " id " + word(measure->idNAP())); });
}

std::string Watcher::nextMeasure()
{
    return "measure " + word(++m_lastMeasure);
}

void Watcher::watchMeasures(const MeasureListModel *list, const std::string &name)
{
    watchList(list, name, [this](Measure *measure) { watchMeasure(measure, nextMeasure()); });
}

void Watcher::watchUnit(UD *unit, const std::string &name)
{
    m_names.insert(unit, name);
    connect(unit, &UD::statutChanged, this,
            [this, name, unit] { add(name + " statut " + word(unit->statut())); });
    connect(unit, &UD::detectionDecisionChanged, this,
            [this, name, unit] { add(name + " decision " + word(unit->detectionDecision())); });
    connect(unit, &UD::observationChanged, this,
            [this, name, unit] { add(name + " observation " + word(unit->observation())); });
    connect(unit, &UD::localChanged, this,
            [this, name, unit] { add(name + " local " + word(unit->local())); });
    for (const Measure *measure : *unit->measures())
        watchMeasure(measure, nextMeasure());
    watchMeasures(unit->measures(), name);
}

template <typename List, typename Attach>
void Watcher::watchList(const List *list, const std::string &name, Attach attach)
{
    connect(list, &QAbstractItemModel::rowsInserted, this,
            [this, list, name, attach](const QModelIndex &, int first, int last) {
                for (int row = first; row <= last; ++row) {
                    attach(list->at(row));
                    add(name + ": " + nameOf(list->at(row)) + " inserted at " + word(row));
                }
            });
    connect(list, &QAbstractItemModel::rowsRemoved, this,
            [this, name](const QModelIndex &, int first, int last) {
                add(name + ": rows " + word(first) + " to " + word(last) + " removed");
            });
    connect(list, &QAbstractItemModel::rowsMoved, this,
            [this, name](const QModelIndex &, int start, int, const QModelIndex &, int row) {
                add(name + ": row " + word(start) + " moved to " + word(row));
            });
    connect(list, &QQmlObjectListModelBase::countChanged, this,
            [this, list, name] { add(name + ": count " + word(list->rowCount())); });
}

} // namespace orders
