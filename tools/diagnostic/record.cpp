// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "record.h"

#include "qmlaccess.h"

namespace {

const QStringList &accuracyStages()
{
    // Those that a diagnostic file keeps.
    static const QStringList stages{QStringLiteral("ACCURACY_INIT"), QStringLiteral("ACCURACY_INTERRUPT"),
                                    QStringLiteral("ACCURACY_FINAL")};
    return stages;
}

/// Collects what differs, each line behind the place where it does.
class Comparison
{
public:
    void at(const QString &place) { m_place = place; }
    void compare(const char *what, const QString &measured, const QString &loaded)
    {
        if (measured != loaded)
            m_lines.append(QStringLiteral("%1: %2 \"%3\" came back as \"%4\"")
                               .arg(m_place, QLatin1String(what), measured, loaded));
    }
    void compare(const char *what, int measured, int loaded)
    {
        compare(what, QString::number(measured), QString::number(loaded));
    }
    void compare(const char *what, double measured, double loaded)
    {
        compare(what, QString::number(measured, 'g', 6), QString::number(loaded, 'g', 6));
    }
    QStringList lines() const { return m_lines; }

private:
    QString m_place;
    QStringList m_lines;
};

QString kept(const QString &decision)
{
    const bool isKept = decision == QLatin1String("POSITIVE") || decision == QLatin1String("NEGATIVE");
    return isKept ? decision : QStringLiteral("NOT_DETERMINED");
}

void compareMeasures(Comparison &comparison, const MeasureRecord &measured, const MeasureRecord &loaded)
{
    comparison.compare("number", measured.idNAP, loaded.idNAP);
    comparison.compare("concentration", measured.concentration, loaded.concentration);
    comparison.compare("sigma", measured.sigma, loaded.sigma);
    comparison.compare("decision", kept(measured.decision), loaded.decision);
    comparison.compare("localisation", measured.localisation, loaded.localisation);
    comparison.compare("degradation", measured.degradation, loaded.degradation);
    comparison.compare("conservation", measured.conservation, loaded.conservation);
}

void compareUnits(Comparison &comparison, const QString &place, const UnitRecord &measured,
                  const UnitRecord &loaded)
{
    comparison.at(place);
    comparison.compare("room", measured.room, loaded.room);
    comparison.compare("zone", QString(measured.zone), QString(loaded.zone));
    comparison.compare("element", measured.element, loaded.element);
    comparison.compare("substrate", measured.substrate, loaded.substrate);
    comparison.compare("coating", measured.coating, loaded.coating);
    comparison.compare("observation", measured.observation, loaded.observation);
    comparison.compare("statut", measured.statut, loaded.statut);
    comparison.compare("number of measures", int(measured.measures.size()), int(loaded.measures.size()));
    for (int i = 0; i < qMin(measured.measures.size(), loaded.measures.size()); ++i) {
        comparison.at(QStringLiteral("%1, measure %2").arg(place).arg(i + 1));
        compareMeasures(comparison, measured.measures.at(i), loaded.measures.at(i));
    }
}

} // namespace

MeasureRecord MeasureRecord::of(const QObject *measure)
{
    MeasureRecord record;
    record.idNAP = qml::readInt(measure, "idNAP");
    record.concentration = qml::read(measure, "concentration").toDouble();
    record.sigma = qml::read(measure, "sigma").toDouble();
    record.decision = qml::readKey(measure, "detectionDecision");
    record.localisation = qml::readKey(measure, "localisation");
    record.degradation = qml::readKey(measure, "degradationState");
    record.conservation = qml::readText(measure, "conservationState");
    return record;
}

UnitRecord UnitRecord::of(const QObject *unit)
{
    UnitRecord record;
    record.room = qml::readText(unit, "local");
    record.zone = QLatin1Char(qml::read(unit, "zone").value<char>());
    record.element = qml::readText(unit, "element");
    record.substrate = qml::readText(unit, "substrat");
    record.coating = qml::readText(unit, "revetement");
    record.observation = qml::readText(unit, "observation");
    record.decision = qml::readKey(unit, "detectionDecision");
    record.statut = qml::readKey(unit, "statut");
    QObject *measures = qml::readObject(unit, "measures");
    for (int row = 0; measures && row < qml::count(measures); ++row)
        record.measures.append(MeasureRecord::of(qml::item(measures, row)));
    return record;
}

DiagnosticRecord DiagnosticRecord::of(QObject *controller, QObject *units)
{
    DiagnosticRecord record;
    record.name = qml::readText(controller, "fileName");
    record.localization = qml::readText(controller, "localization");
    record.collapse = qml::readBool(controller, "effondrement");
    record.runs = qml::readBool(controller, "coulures");
    record.damp = qml::readBool(controller, "humidite");

    const QString stageBefore = qml::readKey(controller, "accuracyStage");
    for (const QString &stage : accuracyStages()) {
        qml::write(controller, "accuracyStage", stage);
        const QObject *accuracy = qml::readObject(controller, "currentAccuracy");
        record.accuracies.append(
            {stage, qml::readInt(accuracy, "idNAP"), qml::readKey(accuracy, "detectionDecision")});
    }
    qml::write(controller, "accuracyStage", stageBefore);

    for (int row = 0; row < qml::count(units); ++row)
        record.units.append(UnitRecord::of(qml::item(units, row)));
    return record;
}

int DiagnosticRecord::measureCount() const
{
    int count = 0;
    for (const UnitRecord &unit : units)
        count += int(unit.measures.size());
    return count;
}

QStringList differences(const DiagnosticRecord &measured, const DiagnosticRecord &loaded)
{
    Comparison comparison;
    comparison.at(QStringLiteral("diagnostic"));
    comparison.compare("name", measured.name, loaded.name);
    comparison.compare("localization", measured.localization, loaded.localization);
    comparison.compare("collapse", measured.collapse, loaded.collapse);
    comparison.compare("runs of paint", measured.runs, loaded.runs);
    comparison.compare("damp", measured.damp, loaded.damp);
    comparison.compare("number of accuracy checks", int(measured.accuracies.size()),
                       int(loaded.accuracies.size()));
    for (int i = 0; i < qMin(measured.accuracies.size(), loaded.accuracies.size()); ++i) {
        const AccuracyRecord &check = measured.accuracies.at(i);
        comparison.at(check.stage);
        comparison.compare("number", check.idNAP, loaded.accuracies.at(i).idNAP);
        comparison.compare("decision", check.decision, loaded.accuracies.at(i).decision);
    }
    comparison.at(QStringLiteral("diagnostic"));
    comparison.compare("number of units", int(measured.units.size()), int(loaded.units.size()));
    for (int i = 0; i < qMin(measured.units.size(), loaded.units.size()); ++i)
        compareUnits(comparison, QStringLiteral("unit %1").arg(i + 1), measured.units.at(i),
                     loaded.units.at(i));
    return comparison.lines();
}
