// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
// What each command of the control socket does. Its members have been judged before (commandtable.h).
#include "simulator.h"

#include <QJsonArray>

#include "commandtable.h"
#include "names.h"

namespace nap = com::halvar::nap;

namespace simulator {

namespace {

void take(const QJsonObject &members, const char *name, double &number)
{
    number = members.value(QLatin1String(name)).toDouble(number);
}

void take(const QJsonObject &members, const char *name, QString &text)
{
    text = members.value(QLatin1String(name)).toString(text);
}

/// The number of a name, or the number that stands there itself.
int number(const QJsonObject &members, const char *member, const Names &names)
{
    const QJsonValue value = members.value(QLatin1String(member));
    return value.isDouble() ? value.toInt() : names.value(value.toString()).value_or(0);
}

} // namespace

void Simulator::addInstrumentActions()
{
    const auto done = [] { return QString(); };
    m_actions.insert(QStringLiteral("sample"), [=](const QJsonObject &members) {
        take(members, "concentration", settings().sample.concentration);
        take(members, "substrate", settings().sample.substrate);
        take(members, "distance", settings().sample.distance);
        return done();
    });
    m_actions.insert(QStringLiteral("source"), [=](const QJsonObject &members) {
        take(members, "activity", settings().source.activity);
        take(members, "halfLife", settings().source.halfLife);
        if (members.contains(QLatin1String("date")))
            settings().source.date = commandtable::date(members.value(QLatin1String("date")));
        return done();
    });
    m_actions.insert(QStringLiteral("detector"), [=](const QJsonObject &members) {
        Detector &detector = settings().detector;
        take(members, "sigma", detector.sigma);
        take(members, "threshold", detector.threshold);
        take(members, "k", detector.k);
        take(members, "timeLimit", detector.timeLimit);
        take(members, "accuracyTime", detector.accuracyTime);
        take(members, "calibrationTime", detector.calibrationTime);
        return done();
    });
    m_actions.insert(QStringLiteral("reference"), [=](const QJsonObject &members) {
        take(members, "value", settings().reference.value);
        take(members, "precision", settings().reference.precision);
        return done();
    });
    m_actions.insert(QStringLiteral("today"), [=](const QJsonObject &members) {
        settings().today = commandtable::date(members.value(QLatin1String("date")));
        return done();
    });
    m_actions.insert(QStringLiteral("seed"), [=](const QJsonObject &members) {
        settings().seed = static_cast<quint32>(members.value(QLatin1String("value")).toInt());
        m_service.acquisition().restartDraws();
        return done();
    });
    m_actions.insert(QStringLiteral("speed"), [=](const QJsonObject &members) {
        take(members, "value", settings().speed);
        m_service.acquisition().settingsChanged();
        return done();
    });
    m_actions.insert(QStringLiteral("conditions"), [=](const QJsonObject &members) {
        Conditions &conditions = settings().conditions;
        take(members, "temperature", conditions.temperature);
        take(members, "voltage", conditions.voltage);
        take(members, "temperatureDrift", conditions.temperatureDrift);
        take(members, "voltageDrift", conditions.voltageDrift);
        m_service.acquisition().settingsChanged();
        return done();
    });
    m_actions.insert(QStringLiteral("battery"), [this](const QJsonObject &members) {
        return m_files.setBattery(members.value(QLatin1String("value")))
            ? QString()
            : QStringLiteral("the gauge's file cannot be written");
    });
    m_actions.insert(QStringLiteral("quit"), [=](const QJsonObject &) {
        QMetaObject::invokeMethod(this, &Simulator::quitRequested, Qt::QueuedConnection);
        return done();
    });
}

void Simulator::addMspActions()
{
    const auto done = [] { return QString(); };
    m_actions.insert(QStringLiteral("press"), [this](const QJsonObject &) {
        return m_msp.press() ? QString() : QStringLiteral("the trigger is pressed already");
    });
    m_actions.insert(QStringLiteral("release"), [this](const QJsonObject &) {
        return m_msp.release() ? QString() : QStringLiteral("the trigger is not pressed");
    });
    m_actions.insert(QStringLiteral("mspEvent"), [=](const QJsonObject &members) {
        m_msp.happen(static_cast<MSPClient::MSPEvent>(number(members, "event", names::mspEvent())),
                     static_cast<short>(members.value(QLatin1String("code")).toInt()));
        return done();
    });
    m_actions.insert(QStringLiteral("mspInfo"),
                     [this](const QJsonObject &members) { return applyMspInfo(members); });
    m_actions.insert(QStringLiteral("mspRefuse"), [this](const QJsonObject &members) {
        return applyRefusals(members.value(QLatin1String("commands")));
    });
    m_actions.insert(QStringLiteral("mspShutter"), [=](const QJsonObject &members) {
        m_msp.model.shutterFailures = members.value(QLatin1String("failures")).toInt();
        return done();
    });
    m_actions.insert(QStringLiteral("mspDie"), [=](const QJsonObject &) {
        m_msp.die();
        return done();
    });
    m_actions.insert(QStringLiteral("mspReturn"),
                     [this](const QJsonObject &) { return m_msp.start() ? QString() : m_msp.errorString(); });
}

void Simulator::addNapActions()
{
    const auto done = [] { return QString(); };
    m_actions.insert(QStringLiteral("calibration"), [=](const QJsonObject &members) {
        if (members.contains(QLatin1String("outcome")))
            settings().calibrationFails = number(members, "outcome", names::calibrationOutcome()) != 0;
        if (members.contains(QLatin1String("date"))) // "never" is no date
            settings().calibrationDate = commandtable::date(members.value(QLatin1String("date")));
        return done();
    });
    m_actions.insert(QStringLiteral("accuracy"), [=](const QJsonObject &members) {
        const int outcome = number(members, "outcome", names::accuracyOutcome());
        settings().accuracyOutcome.reset();
        if (outcome >= 0)
            settings().accuracyOutcome = static_cast<nap::DetectionDecision>(outcome);
        return done();
    });
    m_actions.insert(QStringLiteral("napError"), [=](const QJsonObject &members) {
        m_service.acquisition().fail(static_cast<nap::AcqError>(number(members, "error", names::acqError())));
        return done();
    });
    m_actions.insert(QStringLiteral("napStatus"), [=](const QJsonObject &members) {
        nap::NotificationMessage message;
        message.set_id(tessel::AString("NAP_STATUS"));
        message.set_status(static_cast<nap::AcqStatus>(number(members, "status", names::acqStatus())));
        m_service.notify(message);
        return done();
    });
    m_actions.insert(QStringLiteral("napSilent"), [=](const QJsonObject &members) {
        m_service.setSilent(members.value(QLatin1String("on")).toBool());
        return done();
    });
    m_actions.insert(QStringLiteral("napDelay"), [=](const QJsonObject &members) {
        m_service.setDelay(members.value(QLatin1String("ms")).toInt());
        return done();
    });
    m_actions.insert(QStringLiteral("napDie"), [=](const QJsonObject &) {
        m_service.die();
        return done();
    });
    m_actions.insert(QStringLiteral("napReturn"), [this](const QJsonObject &) {
        return m_service.start(m_places.port) ? QString() : QStringLiteral("the port is taken");
    });
}

QString Simulator::applyMspInfo(const QJsonObject &members)
{
    MSPInfo &info = m_msp.model.info;
    static const struct
    {
        const char *name;
        void (MSPInfo::*set)(bool);
    } flags[] = {{"shock", &MSPInfo::setShock},
                 {"shutter", &MSPInfo::setShutter},
                 {"shockDetector", &MSPInfo::setShockDetector},
                 {"DAC", &MSPInfo::setDAC},
                 {"highVoltage", &MSPInfo::setHighVoltage},
                 {"shutterPosition", &MSPInfo::setShutterPosition},
                 {"abort", &MSPInfo::setAbort},
                 {"probe", &MSPInfo::setProbe}};
    for (const auto &flag : flags) {
        const QJsonValue value = members.value(QLatin1String(flag.name));
        if (value.isBool())
            (info.*flag.set)(value.toBool());
    }
    if (members.contains(QLatin1String("state")))
        info.setState(static_cast<MSPInfo::MSPState>(number(members, "state", names::mspState())));
    take(members, "fwVersion", info.fwVersion);
    take(members, "MSPVersion", info.MSPVersion);
    return {};
}

QString Simulator::applyRefusals(const QJsonValue &commands)
{
    QSet<int> refused;
    if (commands.isString()) {
        for (int command = MSPClient::LIGHT_ON; command < MSPClient::NB_COMMANDS; ++command)
            refused.insert(command);
    }
    for (const QJsonValue &command : commands.toArray())
        refused.insert(names::mspCommand().value(command.toString()).value_or(MSPClient::NB_COMMANDS));
    m_msp.model.refused = refused;
    return {};
}

} // namespace simulator
