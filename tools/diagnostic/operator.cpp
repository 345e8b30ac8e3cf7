// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "operator.h"

#include <QEventLoop>
#include <QTimer>

#include <simulatorcontrol.h>

#include "failure.h"
#include "progress.h"
#include "qmlaccess.h"

namespace {

/// How often a condition is looked at that no signal announces.
constexpr int lookPeriod = 10;
/// A measure that ends with fewer results than this is stopped only some time after the trigger's release.
constexpr int resultsOfACompleteShot = 2;

QString expected(const QString &what, const QString &wanted, const QString &found)
{
    return QStringLiteral("%1 is %2, expected %3").arg(what, found, wanted);
}

} // namespace

Operator::Operator(const Interface &interface, SimulatorControl *instrument, Progress *progress, double speed,
                   QObject *parent)
    : QObject(parent)
    , m_interface(interface)
    , m_instrument(instrument)
    , m_progress(progress)
    , m_longLimit(int(60000 * qMax(1.0, 1 / speed)))
{
    connect(m_instrument, &SimulatorControl::noticeReceived, this, &Operator::onNotice);
    if (!m_instrument->subscribe())
        throw Failure{m_instrument->errorString()};
    m_commandsSent = commandsReceived();
    if (!connect(m_interface.controller, SIGNAL(msp_send_request(MSPClient::MSPCommand, QString)), this,
                 SLOT(countCommand())))
        throw Failure{QStringLiteral("the library has no signal msp_send_request")};
}

QJsonObject Operator::instrument(const QString &command, const QJsonObject &members)
{
    const QJsonObject answer = m_instrument->command(command, members);
    if (!answer.value(QLatin1String("ok")).toBool())
        throw Failure{QStringLiteral("the simulated instrument refuses \"%1\": %2")
                          .arg(command, answer.value(QLatin1String("error")).toString())};
    return answer;
}

QJsonObject Operator::msp()
{
    return instrument(QStringLiteral("status")).value(QLatin1String("msp")).toObject();
}

QString Operator::mspState()
{
    return msp().value(QLatin1String("state")).toString();
}

void Operator::onNotice(const QJsonObject &notice)
{
    const QString kind = notice.value(QLatin1String("notice")).toString();
    if (kind == QLatin1String("detection")) {
        ++m_results;
        if (notice.contains(QLatin1String("decision")))
            m_detections.append({notice.value(QLatin1String("value")).toDouble(),
                                 notice.value(QLatin1String("sigma")).toDouble(),
                                 notice.value(QLatin1String("decision")).toString()});
        m_progress->detail(m_detections.isEmpty() ? QStringLiteral("the shot begins")
                                                  : QStringLiteral("result %1, %2 ± %3")
                                                        .arg(m_detections.size())
                                                        .arg(m_detections.last().value, 0, 'f', 2)
                                                        .arg(m_detections.last().sigma, 0, 'f', 2));
    } else if (kind == QLatin1String("finished")) {
        m_finishedId = notice.value(QLatin1String("id")).toInt(-1);
        m_isFinished = true;
    }
}

void Operator::beginAcquisition()
{
    m_detections.clear();
    m_results = 0;
    m_isFinished = false;
    m_finishedId = -1;
}

void Operator::waitForResult(const QString &what)
{
    waitFor([this] { return isIdle(); }, QStringLiteral("%1 is to end").arg(what), m_longLimit);
    // The two hear of it by different ways.
    waitFor([this] { return m_isFinished; }, QStringLiteral("%1 is to come to a result").arg(what),
            shortLimit);
}

void Operator::waitFor(const std::function<bool()> &condition, const QString &what, int limit)
{
    QEventLoop loop;
    QTimer look;
    QTimer deadline;
    bool held = condition();
    connect(&look, &QTimer::timeout, &loop, [&] {
        held = condition();
        if (held)
            loop.quit();
    });
    deadline.setSingleShot(true);
    connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(m_instrument, &SimulatorControl::connectionLost, &loop, &QEventLoop::quit);
    if (!held) {
        look.start(lookPeriod);
        deadline.start(limit);
        loop.exec();
    }
    if (!held && !m_instrument->isConnected())
        throw Failure{QStringLiteral("the simulated instrument has gone")};
    if (!held)
        throw Failure{QStringLiteral("waited %1 s in vain: %2").arg(limit / 1000.0).arg(what)};
}

void Operator::pause(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool Operator::isIdle() const
{
    // Read, not awaited: an accuracy check and a calibration go back to NONE without a signal.
    return qml::readKey(m_interface.controller, "acquisitionMode") == QLatin1String("NONE");
}

QObject *Operator::selectedUnit() const
{
    QObject *unit = qml::item(m_interface.units, qml::readInt(m_interface.controller, "udIndexEdition"));
    if (!unit)
        throw Failure{QStringLiteral("no unit is selected")};
    return unit;
}

int Operator::commandsReceived()
{
    int count = 0;
    const QJsonObject counts = msp();
    for (const char *name : {"commands", "refused"}) {
        const QJsonObject commands = counts.value(QLatin1String(name)).toObject();
        for (const QJsonValue &number : commands)
            count += number.toInt();
    }
    return count;
}

void Operator::arm()
{
    qml::call(m_interface.controller, "setEnableMeasure", {true});
    // The state alone may be one that a command on its way is about to end.
    waitFor(
        [this] { return commandsReceived() == m_commandsSent && mspState() == QLatin1String("READY_HARD"); },
        QStringLiteral("the MSP is to be in its measuring mode"), shortLimit);
}

void Operator::rearm()
{
    // After a fault the MSP is in standby while the library still holds the measuring mode for granted.
    qml::call(m_interface.controller, "setEnableMeasure", {false});
    qml::call(m_interface.controller, "setEnableMeasure", {true});
}

void Operator::hold(const Step &step)
{
    const int results = step.number("results", 6);
    const bool byTrigger = qml::readKey(m_interface.controller, "measureMode") == QLatin1String("TRIGGER");
    waitFor([this] { return !isIdle() || m_isFinished; }, QStringLiteral("the measure is to begin"),
            shortLimit);
    if (byTrigger) {
        waitFor([this, results] { return int(m_detections.size()) >= results; },
                QStringLiteral("%1 results are to come").arg(results), m_longLimit);
        instrument(QStringLiteral("release"));
    }
    waitForResult(QStringLiteral("the measure"));
    if (!byTrigger)
        instrument(QStringLiteral("release"));
    // With fewer results the library ends a measure only after this time, and would end the next one.
    if (m_results < resultsOfACompleteShot)
        pause(delayedStop);
}

MeasureRecord Operator::shoot(const Step &step, Branch branch)
{
    const bool direct = branch == Branch::Direct;
    qml::write(m_interface.controller, "branchMode",
               direct ? QStringLiteral("BRANCH_DIRECT") : QStringLiteral("BRANCH_INDEXED"));
    QObject *list = direct ? m_interface.directMeasures : qml::readObject(selectedUnit(), "measures");
    const int before = qml::count(list);
    const QString mode = qml::readKey(m_interface.controller, "measureMode");

    instrument(QStringLiteral("sample"), step.object("sample"));
    arm();
    beginAcquisition();
    if (!instrument(QStringLiteral("press")).value(QLatin1String("opened")).toBool())
        throw Failure{QStringLiteral("the shutter does not open")};
    hold(step);

    if (qml::count(list) != before + 1)
        throw Failure{expected(QStringLiteral("the number of measures"), QString::number(before + 1),
                               QString::number(qml::count(list)))};
    const MeasureRecord shown = MeasureRecord::of(qml::item(list, direct ? 0 : before));
    expectShotAsSent(shown, mode);
    if (step.has("decision") && shown.decision != step.text("decision"))
        throw Failure{expected(QStringLiteral("the decision"), step.text("decision"), shown.decision)};
    ++m_shots;
    return shown;
}

void Operator::expectShotAsSent(const MeasureRecord &shown, const QString &measureMode) const
{
    if (m_detections.isEmpty())
        throw Failure{QStringLiteral("the service sent no result")};
    // A shot that the operator ends is settled on the result before the last three: while the trigger goes up
    // the instrument already moves.
    constexpr int discarded = 3;
    const int count = int(m_detections.size());
    const bool settled = measureMode == QLatin1String("TRIGGER") && count > discarded;
    const Detection &sent = m_detections.at(settled ? count - 1 - discarded : count - 1);
    const QString decision =
        sent.decision == QLatin1String("UNDETERMINED") ? QStringLiteral("NOT_DETERMINED") : sent.decision;
    const QString sentText =
        QStringLiteral("%1 ± %2 %3").arg(sent.value, 0, 'g', 17).arg(sent.sigma, 0, 'g', 17).arg(decision);
    const QString shownText = QStringLiteral("%1 ± %2 %3")
                                  .arg(shown.concentration, 0, 'g', 17)
                                  .arg(shown.sigma, 0, 'g', 17)
                                  .arg(shown.decision);
    if (sentText != shownText)
        throw Failure{expected(QStringLiteral("the measure shown"), sentText, shownText)};
    if (m_finishedId != shown.idNAP)
        throw Failure{expected(QStringLiteral("the number of the measure"), QString::number(m_finishedId),
                               QString::number(shown.idNAP))};
}

DiagnosticRecord Operator::record() const
{
    return DiagnosticRecord::of(m_interface.controller, m_interface.units);
}

QVector<MeasureRecord> Operator::directMeasures() const
{
    QVector<MeasureRecord> measures;
    // The newest is on top.
    for (int row = qml::count(m_interface.directMeasures) - 1; row >= 0; --row)
        measures.append(MeasureRecord::of(qml::item(m_interface.directMeasures, row)));
    return measures;
}

void Operator::save()
{
    qml::call(m_interface.controller, "saveFile");
}

void Operator::reload(const QString &path)
{
    qml::call(m_interface.controller, "initFile");
    qml::write(m_interface.controller, "udIndexEdition", -1);
    if (qml::count(m_interface.units) != 0)
        throw Failure{QStringLiteral("a blank diagnostic still has units")};
    qml::call(m_interface.controller, "loadFile", {path});
}

void Operator::requireTitle(QObject *list, const QString &title, const char *what) const
{
    for (int row = 0; row < qml::count(list); ++row) {
        if (qml::readText(qml::item(list, row), "title") == title)
            return;
    }
    throw Failure{QStringLiteral("the reference database has no %1 \"%2\"").arg(QLatin1String(what), title)};
}
