// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "operator.h"

#include <simulatorcontrol.h>

#include "failure.h"
#include "progress.h"
#include "qmlaccess.h"
#include "summary.h"

namespace {

QString onOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

QString sampleText(const Step &step)
{
    const QJsonObject sample = step.object("sample");
    return QStringLiteral("%1 mg/cm²").arg(sample.value(QLatin1String("concentration")).toDouble());
}

QString unitTitle(const QObject *unit)
{
    return QStringLiteral("%1, zone %2, %3")
        .arg(qml::readText(unit, "local"), QString(QLatin1Char(qml::read(unit, "zone").value<char>())),
             qml::readText(unit, "element"));
}

} // namespace

QString Operator::describe(const Step &step)
{
    const QString &kind = step.kind;
    if (kind == QLatin1String("pin"))
        return step.flag("accepted", true) ? QStringLiteral("Enter the PIN code")
                                           : QStringLiteral("Enter a wrong PIN code");
    if (kind == QLatin1String("wait-for-go"))
        return QStringLiteral("Let the instrument settle");
    if (kind == QLatin1String("diagnostic"))
        return QStringLiteral("Open the diagnostic \"%1\"").arg(step.text("name"));
    if (kind == QLatin1String("mode"))
        return QStringLiteral("Choose the measure mode %1").arg(step.text("measureMode"));
    if (kind == QLatin1String("accuracy"))
        return QStringLiteral("Check the accuracy (%1)").arg(step.text("stage"));
    if (kind == QLatin1String("calibration"))
        return QStringLiteral("Calibrate");
    if (kind == QLatin1String("unit"))
        return step.flag("continues") ? QStringLiteral("Continue with the next zone")
                                      : QStringLiteral("Add a unit");
    if (kind == QLatin1String("select"))
        return QStringLiteral("Select unit %1").arg(step.number("unit"));
    if (kind == QLatin1String("measure"))
        return QStringLiteral("Measure the unit (sample of %1)").arg(sampleText(step));
    if (kind == QLatin1String("direct"))
        return QStringLiteral("Measure directly (sample of %1)").arg(sampleText(step));
    if (kind == QLatin1String("note"))
        return QStringLiteral("Note where the measure was taken");
    if (kind == QLatin1String("observation"))
        return QStringLiteral("Note an observation");
    if (kind == QLatin1String("skip"))
        return QStringLiteral("Mark the unit as not measured");
    if (kind == QLatin1String("building"))
        return QStringLiteral("Note the state of the building");
    if (kind == QLatin1String("light"))
        return QStringLiteral("Switch the light %1").arg(onOff(step.flag("on")));
    if (kind == QLatin1String("wifi"))
        return QStringLiteral("Switch the Wi-Fi %1").arg(onOff(step.flag("on")));
    if (kind == QLatin1String("battery"))
        return QStringLiteral("Battery at %1 V").arg(step.number("voltage") / 1e6, 0, 'f', 2);
    if (kind == QLatin1String("shock"))
        return QStringLiteral("Knock the instrument");
    if (kind == QLatin1String("shutter-fault"))
        return QStringLiteral("Let the shutter jam");
    if (kind == QLatin1String("error"))
        return QStringLiteral("Read the error");
    return QStringLiteral("Change the instrument");
}

QString Operator::perform(const Step &step)
{
    const QString result = carryOut(step);
    const QString message = qml::readText(m_interface.error, "errorMessage");
    if (!message.isEmpty() && step.kind != QLatin1String("instrument"))
        throw Failure{QStringLiteral("the instrument shows \"%1\"").arg(message)};
    return result;
}

QString Operator::carryOut(const Step &step)
{
    const QString &kind = step.kind;
    if (kind == QLatin1String("pin"))
        return enterPin(step);
    if (kind == QLatin1String("wait-for-go"))
        return waitForGo();
    if (kind == QLatin1String("diagnostic"))
        return newDiagnostic(step);
    if (kind == QLatin1String("mode"))
        return setMode(step);
    if (kind == QLatin1String("accuracy"))
        return checkAccuracy(step);
    if (kind == QLatin1String("calibration"))
        return calibrate(step);
    if (kind == QLatin1String("unit"))
        return addUnit(step);
    if (kind == QLatin1String("select"))
        return selectUnit(step);
    if (kind == QLatin1String("measure"))
        return measureUnit(step);
    if (kind == QLatin1String("direct"))
        return measureDirect(step);
    if (kind == QLatin1String("note"))
        return note(step);
    if (kind == QLatin1String("observation")) {
        qml::write(selectedUnit(), "observation", step.text("text"));
        return step.text("text");
    }
    if (kind == QLatin1String("skip"))
        return skip(step);
    if (kind == QLatin1String("building"))
        return noteBuilding(step);
    if (kind == QLatin1String("light"))
        return setLight(step);
    if (kind == QLatin1String("wifi")) {
        qml::call(m_interface.controller, "switchWifi", {step.flag("on")});
        return {};
    }
    if (kind == QLatin1String("battery"))
        return setBattery(step);
    if (kind == QLatin1String("shock"))
        return shake();
    if (kind == QLatin1String("shutter-fault"))
        return shutterFault();
    if (kind == QLatin1String("error"))
        return readError(step);
    if (kind == QLatin1String("instrument")) {
        instrument(step.text("command"), step.object("members"));
        return step.text("command");
    }
    throw Failure{QStringLiteral("the step \"%1\" is not known").arg(kind), Failure::wrongUsage};
}

QString Operator::enterPin(const Step &step)
{
    qml::call(m_interface.pin, "clearDigits");
    const QString code = step.text("code");
    for (const QChar digit : code)
        qml::call(m_interface.pin, "enterDigit", {QString(digit)});
    const bool accepted = qml::call(m_interface.pin, "checkSecret").toBool();
    if (accepted != step.flag("accepted", true))
        throw Failure{QStringLiteral("the PIN code %1 is %2")
                          .arg(code, accepted ? QStringLiteral("accepted") : QStringLiteral("refused"))};
    return accepted ? QStringLiteral("accepted") : QStringLiteral("refused, as it should be");
}

QString Operator::waitForGo()
{
    waitFor([this] { return !qml::readBool(m_interface.controller, "waitingForGo"); },
            QStringLiteral("the start-up hold-off is to end"), m_longLimit);
    // The service tells its status when it changes; an interface that comes up asks for it.
    qml::call(m_interface.controller, "requestUpdate");
    waitFor([this] { return qml::readBool(m_interface.error, "readyForAcquisition"); },
            QStringLiteral("the analysis service is to be ready"), shortLimit);
    return QStringLiteral("ready at %1 °C, %2 V; MSP firmware %3")
        .arg(qml::readInt(m_interface.controller, "temperature"))
        .arg(qml::readInt(m_interface.controller, "voltage"))
        .arg(qml::call(m_interface.controller, "getMSPFwVersion").toString());
}

QString Operator::newDiagnostic(const Step &step)
{
    qml::call(m_interface.controller, "initFile");
    qml::write(m_interface.controller, "fileName", step.text("name"));
    qml::write(m_interface.controller, "localization", step.text("localization"));
    return step.text("localization");
}

QString Operator::setMode(const Step &step)
{
    const QString mode = step.text("measureMode");
    qml::write(m_interface.controller, "measureMode", mode);
    if (qml::readKey(m_interface.controller, "measureMode") != mode)
        throw Failure{QStringLiteral("the measure mode cannot be changed")};
    if (step.has("nbMeasures"))
        qml::write(m_interface.controller, "nbMeasures", step.number("nbMeasures"));
    if (step.has("measureTime"))
        qml::write(m_interface.controller, "measureTime", step.number("measureTime"));
    return QStringLiteral("%1 measures a unit, %2 s")
        .arg(qml::readInt(m_interface.controller, "nbMeasures"))
        .arg(qml::readInt(m_interface.controller, "measureTime"));
}

QString Operator::checkAccuracy(const Step &step)
{
    qml::write(m_interface.controller, "accuracyStage", step.text("stage"));
    beginAcquisition();
    qml::call(m_interface.controller, "startAccuracyCheck");
    waitForResult(QStringLiteral("the accuracy check"));
    const MeasureRecord result =
        MeasureRecord::of(qml::readObject(m_interface.controller, "currentAccuracy"));
    if (result.idNAP != m_finishedId)
        throw Failure{QStringLiteral("the accuracy check shows measure %1, the service finished measure %2")
                          .arg(result.idNAP)
                          .arg(m_finishedId)};
    if (step.has("decision") && result.decision != step.text("decision"))
        throw Failure{QStringLiteral("the accuracy check gives %1, expected %2")
                          .arg(result.decision, step.text("decision"))};
    return measureText(result).simplified();
}

QString Operator::calibrate(const Step &step)
{
    beginAcquisition();
    qml::call(m_interface.controller, "startCalibration");
    waitFor([this] { return isIdle(); }, QStringLiteral("the calibration is to end"), m_longLimit);
    const QString state = qml::readKey(m_interface.calibration, "calibrationState");
    // A calibration that has succeeded leaves the state as if none had been started.
    const QString expected = step.has("state") ? step.text("state") : QStringLiteral("NOT_STARTED");
    if (state != expected)
        throw Failure{QStringLiteral("the calibration ended in %1, expected %2").arg(state, expected)};
    qml::call(m_interface.controller, "requestUpdate");
    // The service answers with its status, "nothing runs", which would end whatever is started at once. No
    // hand is that quick.
    pause(handsPause);
    return QStringLiteral("%1, last one of %2")
        .arg(state == QLatin1String("NOT_STARTED") ? QStringLiteral("done") : state,
             qml::readText(m_interface.controller, "lastCalibrationDate"));
}

QString Operator::addUnit(const Step &step)
{
    const int last = qml::count(m_interface.units) - 1;
    qml::call(m_interface.units, "add", {step.flag("continues") ? last : -1});
    QObject *unit = qml::item(m_interface.units, last + 1);
    if (!unit)
        throw Failure{QStringLiteral("no unit was added")};

    struct Choice
    {
        const char *member;
        const char *property;
        QObject *list;
    };
    const QVector<Choice> choices{{"room", "local", m_interface.rooms},
                                  {"element", "element", m_interface.elements},
                                  {"substrate", "substrat", m_interface.substrates},
                                  {"coating", "revetement", m_interface.coatings}};
    for (const Choice &choice : choices) {
        if (!step.has(choice.member))
            continue;
        requireTitle(choice.list, step.text(choice.member), choice.member);
        qml::write(unit, choice.property, step.text(choice.member));
    }
    qml::write(m_interface.controller, "udLocal", qml::read(unit, "local"));
    qml::write(m_interface.controller, "udIndex", last + 1);
    qml::write(m_interface.controller, "udIndexEdition", last + 1);
    return unitTitle(unit);
}

QString Operator::selectUnit(const Step &step)
{
    QObject *unit = qml::item(m_interface.units, step.number("unit") - 1);
    if (!unit)
        throw Failure{QStringLiteral("there is no unit %1").arg(step.number("unit"))};
    qml::write(m_interface.controller, "udLocal", qml::read(unit, "local"));
    qml::write(m_interface.controller, "udIndex", step.number("unit") - 1);
    qml::write(m_interface.controller, "udIndexEdition", step.number("unit") - 1);
    return unitTitle(unit);
}

QString Operator::measureUnit(const Step &step)
{
    QStringList results;
    const int count = step.number("count", 1);
    for (int shot = 0; shot < count; ++shot)
        results.append(measureText(shoot(step, Branch::Indexed)).simplified());
    const QString statut = qml::readKey(selectedUnit(), "statut");
    if (step.has("statut") && statut != step.text("statut"))
        throw Failure{QStringLiteral("the unit's statut is %1, expected %2 (%3)")
                          .arg(statut, step.text("statut"), results.join(QStringLiteral("; ")))};
    return QStringLiteral("%1 → %2").arg(results.join(QStringLiteral("; ")), statut);
}

QString Operator::measureDirect(const Step &step)
{
    qml::write(m_interface.controller, "udIndexEdition", -1);
    return measureText(shoot(step, Branch::Direct)).simplified();
}

QString Operator::note(const Step &step)
{
    QObject *measures = qml::readObject(selectedUnit(), "measures");
    QObject *measure = qml::item(measures, qml::count(measures) - 1);
    if (!measure)
        throw Failure{QStringLiteral("the unit has no measure to note something about")};
    QStringList noted;
    const QVector<QPair<const char *, const char *>> notes{{"localisation", "localisation"},
                                                           {"degradation", "degradationState"},
                                                           {"conservation", "conservationState"}};
    for (const auto &[member, property] : notes) {
        if (!step.has(member))
            continue;
        qml::write(measure, property, step.text(member));
        noted.append(step.text(member));
    }
    return noted.join(QStringLiteral(", "));
}

QString Operator::skip(const Step &step)
{
    requireTitle(m_interface.reasonsNotMeasured, step.text("reason"), "reason not to measure");
    QObject *unit = selectedUnit();
    qml::write(unit, "statut", QStringLiteral("SKIPPED"));
    qml::write(unit, "observation", step.text("reason"));
    return step.text("reason");
}

QString Operator::noteBuilding(const Step &step)
{
    const QVector<QPair<const char *, const char *>> notes{
        {"collapse", "effondrement"}, {"runs", "coulures"}, {"damp", "humidite"}};
    QStringList noted;
    for (const auto &[member, property] : notes) {
        if (!step.has(member))
            continue;
        qml::write(m_interface.controller, property, step.flag(member));
        noted.append(QStringLiteral("%1: %2").arg(
            QLatin1String(property), step.flag(member) ? QStringLiteral("yes") : QStringLiteral("no")));
    }
    return noted.join(QStringLiteral(", "));
}

QString Operator::setLight(const Step &step)
{
    const bool on = step.flag("on");
    qml::write(m_interface.controller, "light", on);
    waitFor([this, on] { return msp().value(QLatin1String("light")).toBool() == on; },
            QStringLiteral("the MSP is to switch the light"), shortLimit);
    return {};
}

QString Operator::setBattery(const Step &step)
{
    instrument(QStringLiteral("battery"), {{QStringLiteral("value"), step.number("voltage")}});
    waitFor([this, &step] { return qml::readKey(m_interface.battery, "level") == step.text("level"); },
            QStringLiteral("the battery's level is to be %1").arg(step.text("level")), shortLimit);
    m_events.append(QStringLiteral("battery %1").arg(step.text("level")));
    return step.text("level");
}

QString Operator::shake()
{
    const auto resets = [this] {
        const QJsonObject commands = msp().value(QLatin1String("commands")).toObject();
        return commands.value(QLatin1String("RESET_SHOCK")).toInt();
    };
    const int before = resets();
    instrument(QStringLiteral("mspEvent"),
               {{QStringLiteral("event"), QStringLiteral("SYS_ERR")}, {QStringLiteral("code"), 0}});
    waitFor([this] { return qml::readBool(m_interface.error, "shock"); },
            QStringLiteral("the shock is to be shown"), shortLimit);
    const QString last = qml::readText(m_interface.error, "lastShock");
    if (last.isEmpty())
        throw Failure{QStringLiteral("the shock is not in the history")};
    qml::call(m_interface.controller, "resetShock");
    waitFor([&] { return !qml::readBool(m_interface.error, "shock") && resets() == before + 1; },
            QStringLiteral("the shock is to be taken back"), shortLimit);
    m_events.append(QStringLiteral("shock"));
    return QStringLiteral("recorded %1, taken back").arg(last);
}

QString Operator::shutterFault()
{
    arm();
    instrument(QStringLiteral("mspShutter"), {{QStringLiteral("failures"), 1}});
    if (instrument(QStringLiteral("press")).value(QLatin1String("opened")).toBool())
        throw Failure{QStringLiteral("the shutter opens in spite of its fault")};
    waitFor([this] { return !qml::readText(m_interface.error, "errorMessage").isEmpty(); },
            QStringLiteral("the shutter's fault is to be shown"), shortLimit);
    const QString message = qml::readText(m_interface.error, "errorMessage");
    instrument(QStringLiteral("release"));
    if (m_shots == 0)
        pause(delayedStop);
    qml::call(m_interface.controller, "ackError");
    qml::call(m_interface.error, "resetErrorMessage");
    waitFor([this] { return mspState() == QLatin1String("STANDBY"); },
            QStringLiteral("the fault is to be acknowledged"), shortLimit);
    rearm();
    m_events.append(message);
    return message;
}

QString Operator::readError(const Step &step)
{
    waitFor([this, &step] { return qml::readText(m_interface.error, "errorMessage") == step.text("text"); },
            QStringLiteral("the instrument is to show \"%1\"").arg(step.text("text")), shortLimit);
    qml::call(m_interface.error, "resetErrorMessage");
    m_events.append(step.text("text"));
    return step.text("text");
}
