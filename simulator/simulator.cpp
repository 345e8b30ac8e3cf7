// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "simulator.h"

#include <QJsonArray>
#include <QTimer>

#include <cmath>

#include <QsLog.h>

#include "commandtable.h"
#include "names.h"

namespace nap = com::halvar::nap;

namespace simulator {

namespace {

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

QJsonObject counts(const QMap<QString, int> &map)
{
    QJsonObject object;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        object.insert(entry.key(), entry.value());
    return object;
}

QJsonObject resultObject(const nap::DetectionResult &result)
{
    QJsonObject object{{key("value"), result.get_value()}, {key("sigma"), result.get_sigma()}};
    if (result.is_set_decision())
        object.insert(key("decision"), names::decision().json(result.get_decision()));
    return object;
}

bool holds(const QJsonObject &notice, const QJsonObject &members)
{
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (notice.value(member.key()) != member.value())
            return false;
    }
    return true;
}

} // namespace

Simulator::Simulator(QObject *parent)
    : Simulator(Places(), parent)
{ }

Simulator::Simulator(const Places &places, QObject *parent)
    : QObject(parent)
    , m_places(places)
    , m_files(places.sysClass)
    , m_shell(places.commands)
    , m_control([this](const QJsonObject &command) { return execute(command); })
{
    m_service.setObserverPort(places.observerPort);
    addInstrumentActions();
    addMspActions();
    addNapActions();
    connectNotices();
}

Simulator::~Simulator()
{
    // While everything that they report to is still there.
    m_service.die();
    m_msp.die();
}

void Simulator::prepare(const Scenario &scenario)
{
    m_scenario = scenario;
    for (const QJsonObject &command : scenario.settings)
        execute(command);
}

bool Simulator::start(QString &error)
{
    if (!m_service.start(m_places.port)) {
        error = QStringLiteral("port %1 of this machine is taken").arg(m_places.port);
        return false;
    }
    if (!m_msp.start()) {
        error =
            QStringLiteral("the MSP's socket %1 is taken: %2").arg(msp::serverName(), m_msp.errorString());
        return false;
    }
    if (!m_control.listen(m_places.control)) {
        error = QStringLiteral("the control socket %1 is taken: %2")
                    .arg(m_places.control, m_control.errorString());
        return false;
    }
    // Last: a second simulator must leave the files of the first one alone.
    if (!m_files.start(error) || !m_shell.start(error))
        return false;
    for (const Scenario::Step &step : qAsConst(m_scenario.steps)) {
        if (step.after.isEmpty())
            schedule(step);
        else
            m_waiting.append(step);
    }
    return true;
}

QJsonObject Simulator::execute(const QJsonObject &command)
{
    const QString name = command.value(QLatin1String("command")).toString();
    if (name.isEmpty())
        return refusal(QStringLiteral("expected a member \"command\" with a name"));
    const commandtable::Complaint complaint = commandtable::check(name, command);
    if (!complaint.isEmpty())
        return refusal(complaint.member.isEmpty()
                           ? QStringLiteral("%1: %2").arg(name, complaint.text)
                           : QStringLiteral("%1: %2: %3").arg(name, complaint.member, complaint.text));
    QLOG_DEBUG() << "control:" << name;
    if (name == QLatin1String("status"))
        return status();
    const Action action = m_actions.value(name);
    const QString refused = action ? action(command) : QString();
    if (!refused.isEmpty())
        return refusal(QStringLiteral("%1: %2").arg(name, refused));
    QJsonObject answer{{key("ok"), true}};
    if (name == QLatin1String("press"))
        answer.insert(key("opened"), m_msp.model.shutterOpen());
    return answer;
}

void Simulator::connectNotices()
{
    connect(
        &m_service, &AnalysisService::called, this, [this](const QString &name, int result, bool autoStop) {
            QJsonObject object{{key("notice"), key("napCall")}, {key("call"), name}, {key("result"), result}};
            if (name == QLatin1String("startMeasure"))
                object.insert(key("autoStop"), autoStop);
            notice(object);
        });
    connect(&m_service, &AnalysisService::observerChanged, this,
            [this](const QString &event, const QString &description) {
                notice({{key("notice"), key("observer")},
                        {key("event"), event},
                        {key("description"), description}});
            });
    connect(&m_service, &AnalysisService::notified, this, [this](const nap::NotificationMessage &message) {
        if (message.get_id() == tessel::AString("NAP_DETECTION")) {
            QJsonObject object = resultObject(message.get_detection());
            object.insert(key("notice"), key("detection"));
            notice(object);
        } else if (message.get_id() == tessel::AString("NAP_STATUS")) {
            QJsonObject object{{key("notice"), key("status")},
                               {key("status"), names::acqStatus().json(message.get_status())}};
            if (message.is_set_error())
                object.insert(key("error"), names::acqError().json(message.get_error()));
            notice(object);
        } else {
            notice({{key("notice"), key("notification")}, {key("id"), message.get_id().toString()}});
        }
    });
    connect(&m_service.acquisition(), &Acquisition::finished, this, [this](int id, Acquisition::Kind kind) {
        notice({{key("notice"), key("finished")},
                {key("id"), id},
                {key("acquisition"), names::acquisition().name(kind)}});
    });
    connect(&m_msp, &Msp::executed, this, [this](const QString &command, bool accepted) {
        notice({{key("notice"), key("mspCommand")},
                {key("command"), command},
                {key("accepted"), accepted},
                {key("state"), names::mspState().json(m_msp.model.info.state())}});
    });
    connect(&m_msp, &Msp::eventSent, this, [this](int event, int code) {
        notice({{key("notice"), key("mspEvent")},
                {key("event"), names::mspEvent().json(event)},
                {key("code"), code}});
    });
    connect(&m_msp, &Msp::infoGiven, this, [this] {
        notice({{key("notice"), key("mspInfo")},
                {key("state"), names::mspState().json(m_msp.model.info.state())}});
    });
    connect(&m_files, &SysFiles::lineWritten, this, [this](const QString &file, const QString &content) {
        notice({{key("notice"), key("gpio")}, {key("file"), file}, {key("content"), content}});
    });
    connect(&m_shell, &ShellRecord::called, this, [this](const QString &line) {
        notice({{key("notice"), key("shell")}, {key("line"), line}});
    });
    connect(&m_files, &SysFiles::levelChanged, this, [this](int level) {
        notice({{key("notice"), key("beeper")}, {key("level"), level}});
    });
}

void Simulator::notice(const QJsonObject &notice)
{
    m_control.notice(notice);
    emit noticed(notice);
    for (int i = m_waiting.size() - 1; i >= 0; --i) {
        Scenario::Step &step = m_waiting[i];
        if (!holds(notice, step.after) || --step.count > 0)
            continue;
        schedule(m_waiting.takeAt(i));
    }
}

void Simulator::schedule(const Scenario::Step &step)
{
    // Never at once: what a notice tells of is still being done.
    QTimer::singleShot(static_cast<int>(std::lround(step.at * 1000 / settings().speed)), this, [this, step] {
        const QJsonObject answer = execute(step.command);
        if (!answer.value(QLatin1String("ok")).toBool()) {
            QLOG_WARN() << "scenario:" << answer.value(QLatin1String("error")).toString();
        }
    });
}

QJsonObject Simulator::status() const
{
    const Acquisition &acquisition = m_service.acquisition();
    const Settings &settings = acquisition.settings;
    QJsonObject nap{{key("alive"), m_service.isAlive()},
                    {key("silent"), m_service.isSilent()},
                    {key("delay"), m_service.delay()},
                    {key("calibrationFails"), settings.calibrationFails},
                    {key("acquisition"), names::acquisition().name(acquisition.kind())},
                    {key("status"), names::acqStatus().name(acquisition.status())},
                    {key("lastId"), acquisition.lastId()},
                    {key("calibrationDate"),
                     settings.calibrationDate.isValid() ? settings.calibrationDate.toString(Qt::ISODate)
                                                        : QStringLiteral("never")},
                    {key("observers"), QJsonArray::fromStringList(m_service.observers())},
                    {key("calls"), counts(m_service.calls())}};
    if (acquisition.lastId() > 0)
        nap.insert(key("last"), resultObject(acquisition.lastResult()));
    const MspModel &model = m_msp.model;
    QStringList refusing;
    for (int command = MSPClient::LIGHT_ON; command < MSPClient::NB_COMMANDS; ++command) {
        if (model.refused.contains(command))
            refusing.append(names::mspCommand().name(command));
    }
    return {{key("ok"), true},
            {key("scenario"), m_scenario.name},
            {key("seed"), static_cast<double>(settings.seed)},
            {key("speed"), settings.speed},
            {key("pressed"), model.pressed()},
            {key("sample"),
             QJsonObject{{key("concentration"), settings.sample.concentration},
                         {key("substrate"), settings.sample.substrate},
                         {key("distance"), settings.sample.distance}}},
            {key("source"), QJsonObject{{key("activity"), acquisition.activity()}}},
            {key("conditions"),
             QJsonObject{{key("temperature"), settings.conditions.temperature},
                         {key("voltage"), settings.conditions.voltage},
                         {key("ready"), settings.conditions.ready()}}},
            {key("nap"), nap},
            {key("msp"),
             QJsonObject{{key("alive"), m_msp.isAlive()},
                         {key("clients"), m_msp.clientCount()},
                         {key("state"), names::mspState().json(model.info.state())},
                         {key("light"), model.light()},
                         {key("shutterOpen"), model.shutterOpen()},
                         {key("shutterFailures"), model.shutterFailures},
                         {key("refusing"), QJsonArray::fromStringList(refusing)},
                         {key("commands"), counts(m_msp.commands())},
                         {key("refused"), counts(m_msp.refusals())},
                         {key("infoRequests"), m_msp.infoRequests()}}},
            {key("battery"), m_files.battery()},
            {key("beeper"), QJsonObject{{key("level"), m_files.level()}, {key("beeps"), m_files.beeps()}}}};
}

} // namespace simulator
