// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "watcher.h"

#include <QMetaEnum>
#include <QThread>

#include <sstream>
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

constexpr std::size_t MostEffects = 100000; // of one event

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

/// "measure 3 id 12" is about "measure id", "unit 2: count 1" about "unit rows", "pin nbDigits 1" about
/// "pin nbDigits", anything else about its first word.
std::string topicOf(const std::string &effect)
{
    std::istringstream words(effect);
    std::string first, second, third;
    words >> first >> second >> third;
    if (first == "measure" || first == "unit")
        return first + ' ' + (second.back() == ':' ? "rows" : third);
    return first == "pin" ? first + ' ' + second : first;
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
    // What goes on and on would take all memory before its time is over.
    if (m_effects.size() > MostEffects)
        qFatal("No end of effects; the last one: %s", effect.c_str());
}

Effects Watcher::take()
{
    m_files.drain();
    return std::exchange(m_effects, {});
}

void Watcher::signalled(const std::string &effect)
{
    add(effect);
    if (onSignal)
        onSignal(topicOf(effect));
}

void Watcher::watchController(HalvarController *c)
{
    using C = HalvarController;
    const auto property = [this, c](const char *name, auto signal, auto getter) {
        connect(c, signal, this,
                [this, c, name, getter] { signalled(std::string(name) + ' ' + word((c->*getter)())); });
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
                [this, c, name, pointer] { signalled(std::string(name) + ' ' + word(c->*pointer)); });
    };
    member("couluresChanged", &C::couluresChanged, &C::coulures);
    member("effondrementChanged", &C::effondrementChanged, &C::effondrement);
    member("humiditeChanged", &C::humiditeChanged, &C::humidite);

    connect(c, &C::waitingForGoUpdated, this,
            [this, c] { signalled("waitingForGoUpdated " + word(c->property("waitingForGo").toBool())); });
    connect(c, &C::sendTension, this, [this](int value) { signalled("sendTension " + word(value)); });
    connect(c, &C::sendTemperature, this, [this](int value) { signalled("sendTemperature " + word(value)); });
    connect(c, &C::sendLastCalibrationDate, this,
            [this](const QString &date) { signalled("sendLastCalibrationDate " + word(date)); });
    connect(c, &C::currentAccuracyChanged, this,
            [this, c] { signalled("currentAccuracyChanged " + nameOf(c->currentAccuracy())); });
    connect(c, &C::msp_info_request, this, [this] { signalled("MSP information request"); });
    connect(c, &C::msp_send_request, this, [this](MSPClient::MSPCommand command, const QString &params) {
        m_commands.append(command);
        const char *const name = QMetaEnum::fromType<MSPClient::MSPCommand>().valueToKey(command);
        signalled("MSP " + std::string(name ? name : "?") + (params.isNull() ? "" : " with parameters"));
    });
}

void Watcher::watchCompanions(HalvarController *c)
{
    connect(c->pin, &PIN::acceptedUpdated, this,
            [this](bool value) { signalled("pin accepted " + word(value)); });
    connect(c->pin, &PIN::nbDigitsChanged, this,
            [this](int value) { signalled("pin nbDigits " + word(value)); });
    connect(c->pin, &PIN::disabledUpdated, this,
            [this](bool value) { signalled("pin disabled " + word(value)); });
    connect(c->error, &Error::shockSignal, this,
            [this](bool value) { signalled("shockSignal " + word(value)); });
    connect(c->error, &Error::readyForAcquisitionSignal, this,
            [this](bool value) { signalled("readyForAcquisitionSignal " + word(value)); });
    connect(c->error, &Error::errorMessageSignal, this,
            [this](const QString &value) { signalled("errorMessageSignal " + word(value)); });
    connect(c->error, &Error::lastShockSignal, this, [this] { signalled("lastShockSignal"); });
    connect(c->battery, &Battery::levelChanged, this,
            [this](int value) { signalled("battery " + word(value)); });
    connect(c->calibration, &Calibration::calibrationStateChanged, this,
            [this](int value) { signalled("calibrationStateChanged " + word(value)); });

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
            [this, name](double value) { signalled(name + " concentration " + text(value)); });
    connect(measure, &Measure::sigmaChanged, this,
            [this, name, measure] { signalled(name + " sigma " + text(measure->sigma())); });
    connect(measure, &Measure::detectionDecisionChanged, this,
            [this, name](int value) { signalled(name + " decision " + word(value)); });
    connect(measure, &Measure::localisationChanged, this,
            [this, name, measure] { signalled(name + " localisation " + word(measure->localisation())); });
    connect(measure, &Measure::degradationStateChanged, this,
            [this, name] { signalled(name + " degradation"); });
    connect(measure, &Measure::conservationStateChanged, this,
            [this, name] { signalled(name + " conservation"); });
    connect(measure, &Measure::idNAPChanged, this,
            [this, name, measure] { signalled(name + " id " + word(measure->idNAP())); });
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
            [this, name, unit] { signalled(name + " statut " + word(unit->statut())); });
    connect(unit, &UD::detectionDecisionChanged, this,
            [this, name, unit] { signalled(name + " decision " + word(unit->detectionDecision())); });
    connect(unit, &UD::observationChanged, this,
            [this, name, unit] { signalled(name + " observation " + word(unit->observation())); });
    connect(unit, &UD::localChanged, this,
            [this, name, unit] { signalled(name + " local " + word(unit->local())); });
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
                    signalled(name + ": " + nameOf(list->at(row)) + " inserted at " + word(row));
                }
            });
    connect(list, &QAbstractItemModel::rowsRemoved, this,
            [this, name](const QModelIndex &, int first, int last) {
                signalled(name + ": rows " + word(first) + " to " + word(last) + " removed");
            });
    connect(list, &QAbstractItemModel::rowsMoved, this,
            [this, name](const QModelIndex &, int start, int, const QModelIndex &, int row) {
                signalled(name + ": row " + word(start) + " moved to " + word(row));
            });
    connect(list, &QQmlObjectListModelBase::countChanged, this,
            [this, list, name] { signalled(name + ": count " + word(list->rowCount())); });
}

} // namespace orders
