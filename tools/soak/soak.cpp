// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "soak.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QTimer>

#include <algorithm>
#include <cstdio>

#include <config.h>
#include <database.h>
#include <failure.h>
#include <halvarcontroller.h>
#include <measure.h>
#include <measurelistmodel.h>
#include <simulatorcontrol.h>
#include <ud.h>
#include <udlistmodel.h>

#include "holdings.h"

namespace {

const QString home = QStringLiteral("/data/lambrik/");
constexpr int limitMs = 30000;
constexpr int resultsAShot = 3;
constexpr double warmUpShare = 0.1;

QString diagnosticName(int number)
{
    return QStringLiteral("soak-%1").arg(number, 4, 10, QLatin1Char('0'));
}

QString path(const QString &name)
{
    return home + QStringLiteral("files/") + name + QStringLiteral(".xml");
}

} // namespace

Soak::Soak(const SoakOptions &options)
    : m_options(options)
    , m_resident{QStringLiteral("resident memory"), QStringLiteral("kB"), 0.02, 1024, {}, {}}
    , m_descriptors{QStringLiteral("descriptors"), QString(), 0, 0.5, {}, {}}
    , m_threads{QStringLiteral("threads"), QString(), 0, 0.5, {}, {}}
    , m_time{QStringLiteral("time per shot"), QStringLiteral("ms"), 0.1, 0.5, {}, {}}
{ }

Soak::~Soak() = default;

bool Soak::run()
{
    m_instrument = std::make_unique<SimulatorControl>();
    if (!m_instrument->connectTo() || !m_instrument->subscribe())
        throw Failure{m_instrument->errorString() + QStringLiteral(" (is halvar-simulator running?)")};
    connect(m_instrument.get(), &SimulatorControl::noticeReceived, this, &Soak::onNotice);
    command("speed", {{QStringLiteral("value"), m_options.speed}});
    m_config = std::make_unique<Config>(nullptr);
    m_database = std::make_unique<Database>(nullptr);
    if (!m_config->read(home) || !m_database->read(home))
        throw Failure{QStringLiteral("%1 is no home of an instrument").arg(home)};

    const int diagnostics = (m_options.units + m_options.unitsADiagnostic - 1) / m_options.unitsADiagnostic;
    constexpr int diagnosticsADay = 10;
    for (int diagnostic = 0; diagnostic < diagnostics; ++diagnostic) {
        // Switched off and on again now and then, as an instrument is.
        if (diagnostic % diagnosticsADay == 0) {
            switchOff();
            switchOn();
        }
        work(diagnostic);
        sample();
    }
    const int lost = search();
    switchOff();

    const QVector<Curve> curves{m_resident, m_descriptors, m_threads, m_time};
    const double warmUp = warmUpShare * m_shots;
    bool flat = true;
    for (const Curve &curve : curves) {
        const Fit line = fit(curve, warmUp);
        flat = flat && line.isFlat;
        say(QStringLiteral("%1: mean %2 %3, slope %4 %3 per 1,000 shots, %5 %3 over the run, %6 allowed: %7")
                .arg(curve.name)
                .arg(line.mean, 0, 'g', 6)
                .arg(curve.unit)
                .arg(line.perShot * 1000, 0, 'g', 3)
                .arg(line.growth, 0, 'g', 3)
                .arg(line.allowed, 0, 'g', 3)
                .arg(line.isFlat ? QStringLiteral("flat") : QStringLiteral("NOT FLAT")));
    }
    QFile file(QDir(m_options.out).filePath(QStringLiteral("soak.svg")));
    const QByteArray drawn = picture(curves, warmUp);
    if (!file.open(QIODevice::WriteOnly) || file.write(drawn) != drawn.size())
        throw Failure{QStringLiteral("%1 cannot be written: %2").arg(file.fileName(), file.errorString())};
    return lost == 0 && flat;
}

void Soak::switchOn()
{
    m_controller = std::make_unique<HalvarController>(home, m_config.get(), m_database.get(), nullptr);
    m_commandsSent = commandsReceived();
    connect(m_controller.get(), &HalvarController::msp_send_request, this, [this] { ++m_commandsSent; });
    m_controller->init();
    waitFor([this] { return !m_controller->getMSPFwVersion().isEmpty(); },
            QStringLiteral("the microcontroller is to answer"));
    m_controller->setMeasureMode(MeasureModeEnumClass::TRIGGER);
    m_controller->setBranchMode(BranchModeEnumClass::BRANCH_INDEXED);
}

void Soak::switchOff()
{
    if (!m_controller)
        return;
    m_controller.reset();
    command("napDie");
    command("napReturn");
}

void Soak::work(int diagnostic)
{
    const int units =
        qMin(m_options.unitsADiagnostic, m_options.units - diagnostic * m_options.unitsADiagnostic);
    m_controller->initFile();
    m_controller->setFileName(diagnosticName(diagnostic));
    m_controller->setLocalization(QStringLiteral("Bâtiment %1").arg(diagnostic));
    QVector<int> ids;
    for (int unit = 0; unit < units; ++unit) {
        addUnit(unit);
        // Shots are dealt out evenly over all units of the run.
        const qint64 ordinal = qint64(diagnostic) * m_options.unitsADiagnostic + unit + 1;
        const int due = int(ordinal * m_options.shots / m_options.units);
        while (m_shots < due) {
            shoot(ids);
            if (m_options.faultEvery > 0 && m_shots % m_options.faultEvery == 0)
                fault();
        }
    }
    m_controller->saveFile();
    m_ids.append(ids);
    compare(diagnostic);
}

void Soak::addUnit(int unit)
{
    auto *added = new UD;
    added->setLocal(QStringLiteral("Chambre %1").arg(unit / 4 + 1));
    added->setZone(QLatin1Char(char('A' + unit % 4)).toLatin1());
    added->setElement(QStringLiteral("Mur"));
    added->setSubstrat(QStringLiteral("Plâtre"));
    added->setRevetement(QStringLiteral("Peinture"));
    m_controller->uds->append(added);
    m_controller->setUdIndexEdition(m_controller->uds->size() - 1);
}

void Soak::press()
{
    // A unit that has its result puts the instrument in standby, by a command that may be on its way.
    waitFor([this] { return commandsReceived() == m_commandsSent; },
            QStringLiteral("the microcontroller is to have its commands"));
    if (msp().value(QLatin1String("state")) != QLatin1String("READY_HARD"))
        rearm();
    m_detections = 0;
    m_finishedId = -1;
    command("press");
}

void Soak::release()
{
    command("release");
    waitFor([this] { return isIdle(); }, QStringLiteral("the measure is to end"));
}

void Soak::rearm()
{
    // Whatever the library takes for granted after a fault, the microcontroller is told to stand by in
    // between.
    for (const bool enabled : {true, false, true})
        m_controller->setEnableMeasure(enabled);
    waitFor(
        [this] {
            return commandsReceived() == m_commandsSent
                && msp().value(QLatin1String("state")) == QLatin1String("READY_HARD");
        },
        QStringLiteral("the microcontroller is to be in its measuring mode"));
}

void Soak::shoot(QVector<int> &ids)
{
    QElapsedTimer timer;
    timer.start();
    const UD *unit = m_controller->uds->at(m_controller->udIndexEdition());
    const int before = unit->measures()->size();
    press();
    waitFor([&] { return unit->measures()->size() == before + 1; },
            QStringLiteral("the measure is to begin"));
    // As an operator does, who looks at the screen: what the service has sent may still be on its way.
    int shown = 0;
    const auto counting =
        connect(unit->measures()->last(), &Measure::sigmaChanged, this, [&shown] { ++shown; });
    waitFor([&shown] { return shown >= resultsAShot; }, QStringLiteral("results are to come"));
    disconnect(counting);
    release();
    waitFor([this] { return m_finishedId >= 0; }, QStringLiteral("the measure is to come to a result"));
    if (unit->measures()->size() != before + 1 || unit->measures()->last()->idNAP() != m_finishedId)
        throw Failure{
            QStringLiteral("shot %1: the unit has %2 measures, the last of them number %3; expected "
                           "%4 and %5")
                .arg(m_shots + 1)
                .arg(unit->measures()->size())
                .arg(before > 0 || unit->measures()->size() > 0 ? unit->measures()->last()->idNAP() : -1)
                .arg(before + 1)
                .arg(m_finishedId)};
    ids.append(m_finishedId);
    ++m_shots;
    m_shotNs += timer.nsecsElapsed();
}

void Soak::compare(int diagnostic)
{
    const DiagnosticRecord measured = DiagnosticRecord::of(m_controller.get(), m_controller->uds);
    m_controller->initFile();
    m_controller->setUdIndexEdition(-1);
    m_controller->loadFile(path(diagnosticName(diagnostic)));
    const QStringList changed =
        differences(measured, DiagnosticRecord::of(m_controller.get(), m_controller->uds));
    m_changed += changed.size();
    for (const QString &line : changed.mid(0, 3))
        say(QStringLiteral("%1: %2").arg(diagnosticName(diagnostic), line));
}

int Soak::search()
{
    int lost = 0;
    int found = 0;
    for (int diagnostic = 0; diagnostic < m_ids.size(); ++diagnostic) {
        m_controller->initFile();
        m_controller->setUdIndexEdition(-1);
        m_controller->loadFile(path(diagnosticName(diagnostic)));
        QVector<int> ids;
        for (const UD *unit : m_controller->uds->toList()) {
            for (const Measure *measure : unit->measures()->toList())
                ids.append(measure->idNAP());
        }
        // What a fault ended is in the file, too; each whole shot has to be, in its order.
        auto place = ids.constBegin();
        for (const int id : m_ids.at(diagnostic)) {
            const auto next = std::find(place, ids.constEnd(), id);
            if (next == ids.constEnd()) {
                ++lost;
                say(QStringLiteral("%1: shot %2 is not in the file").arg(diagnosticName(diagnostic)).arg(id));
            } else {
                ++found;
                place = next + 1;
            }
        }
    }
    QStringList faults;
    for (auto fault = m_faults.constBegin(); fault != m_faults.constEnd(); ++fault)
        faults.append(QStringLiteral("%1 %2").arg(fault.value()).arg(fault.key()));
    say(QStringLiteral(
            "%1 shots over %2 units: %3 found in %4 files, %5 lost, %6 values changed by the files")
            .arg(m_shots)
            .arg(m_options.units)
            .arg(found)
            .arg(m_ids.size())
            .arg(lost)
            .arg(m_changed));
    say(QStringLiteral("faults on the way: %1")
            .arg(faults.isEmpty() ? QStringLiteral("none") : faults.join(QStringLiteral(", "))));
    return lost + m_changed;
}

void Soak::sample()
{
    const Holdings held = Holdings::now();
    m_resident.add(m_shots, double(held.memoryKb));
    m_descriptors.add(m_shots, held.descriptors);
    m_threads.add(m_shots, held.threads);
    const int shots = m_shots - m_sampledShots;
    if (shots > 0)
        m_time.add(m_shots, double(m_shotNs) / 1e6 / shots);
    m_sampledShots = m_shots;
    m_shotNs = 0;
    say(QStringLiteral("%1 shots: %2 kB, %3 descriptors, %4 threads, %5 ms a shot")
            .arg(m_shots)
            .arg(held.memoryKb)
            .arg(held.descriptors)
            .arg(held.threads)
            .arg(m_time.values.isEmpty() ? 0 : m_time.values.last(), 0, 'f', 2));
}

void Soak::command(const char *name, const QJsonObject &members)
{
    if (!m_instrument->run(QLatin1String(name), members))
        throw Failure{m_instrument->errorString()};
}

QJsonObject Soak::msp()
{
    return m_instrument->status().value(QLatin1String("msp")).toObject();
}

int Soak::commandsReceived()
{
    int count = 0;
    const QJsonObject microcontroller = msp();
    for (const char *answer : {"commands", "refused"}) {
        const QJsonObject commands = microcontroller.value(QLatin1String(answer)).toObject();
        for (const QJsonValue &number : commands)
            count += number.toInt();
    }
    return count;
}

void Soak::onNotice(const QJsonObject &notice)
{
    const QString kind = notice.value(QLatin1String("notice")).toString();
    if (kind == QLatin1String("detection") && notice.contains(QLatin1String("decision")))
        ++m_detections;
    else if (kind == QLatin1String("finished"))
        m_finishedId = notice.value(QLatin1String("id")).toInt(-1);
}

bool Soak::isIdle() const
{
    return m_controller->acquisitionMode() == AcquisitionModeEnumClass::NONE;
}

void Soak::waitFor(const std::function<bool()> &condition, const QString &what)
{
    QElapsedTimer timer;
    timer.start();
    QTimer tick; // an event at least each millisecond, for what changes without one
    tick.start(1);
    while (!condition()) {
        if (!m_instrument->isConnected())
            throw Failure{QStringLiteral("the simulated instrument has gone")};
        if (timer.elapsed() > limitMs)
            throw Failure{
                QStringLiteral("after %1 shots: waited %2 s in vain: %3; the microcontroller had %4 "
                               "commands, and tells %5")
                    .arg(m_shots)
                    .arg(limitMs / 1000)
                    .arg(what)
                    .arg(m_commandsSent)
                    .arg(QString::fromUtf8(QJsonDocument(msp()).toJson(QJsonDocument::Compact)))};
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void Soak::say(const QString &line)
{
    std::printf("%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}
