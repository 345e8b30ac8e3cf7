// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "summary.h"

#include <QMetaEnum>

#include <enums.h>

namespace {

/// The label of an enumeration's key: what the diagnostic file and the instrument's screen show.
template <typename Enumeration, typename Names>
QString label(const QString &key, const Names &names)
{
    bool known = false;
    const int value = QMetaEnum::fromType<Enumeration>().keyToValue(key.toLatin1().constData(), &known);
    return known && value < int(std::size(names)) ? QString::fromUtf8(names[value]) : key;
}

QString decisionLabel(const QString &key)
{
    return label<DetectionDecisionEnumClass::DetectionDecision>(
        key, DetectionDecisionEnumClass::DetectionDecisionNames);
}

QString statutLabel(const QString &key)
{
    const QString text = label<UDStatutEnumClass::UDStatut>(key, UDStatutEnumClass::UDStatutNames);
    return text.isEmpty() ? QStringLiteral("—") : text;
}

QString padded(const QString &text, int width)
{
    return text + QString(qMax(0, width - int(text.size())), QLatin1Char(' '));
}

QString surface(const UnitRecord &unit)
{
    return QStringLiteral("%1 / %2").arg(unit.substrate, unit.coating);
}

QString accuracyLine(const DiagnosticRecord &diagnostic)
{
    QStringList checks;
    for (const AccuracyRecord &check : diagnostic.accuracies) {
        if (check.idNAP >= 0)
            checks.append(
                QStringLiteral("%1 %2 (measure %3)")
                    .arg(check.stage.section(QLatin1Char('_'), 1).toLower(), decisionLabel(check.decision))
                    .arg(check.idNAP));
    }
    return checks.isEmpty() ? QStringLiteral("none") : checks.join(QStringLiteral(", "));
}

QString buildingLine(const DiagnosticRecord &diagnostic)
{
    QStringList seen;
    if (diagnostic.collapse)
        seen.append(QStringLiteral("effondrement"));
    if (diagnostic.runs)
        seen.append(QStringLiteral("coulures"));
    if (diagnostic.damp)
        seen.append(QStringLiteral("humidité"));
    return seen.isEmpty() ? QStringLiteral("nothing noted") : seen.join(QStringLiteral(", "));
}

} // namespace

Table::Table(const QStringList &heads)
    : m_widths(heads.size(), 0)
{
    add(heads);
    rule();
}

void Table::add(const QStringList &cells)
{
    Row row;
    for (int column = 0; column < m_widths.size(); ++column) {
        const QStringList lines = cells.value(column).split(QLatin1Char('\n'));
        for (const QString &line : lines)
            m_widths[column] = qMax(m_widths.at(column), int(line.size()));
        row.cells.append(lines);
    }
    m_rows.append(row);
}

void Table::rule()
{
    Row row;
    row.isRule = true;
    m_rows.append(row);
}

QString Table::text() const
{
    QString text;
    for (const Row &row : m_rows) {
        if (row.isRule) {
            QStringList pieces;
            for (const int width : m_widths)
                pieces.append(QString(width, QChar(0x2500)));
            text += pieces.join(QStringLiteral("──")) + QLatin1Char('\n');
            continue;
        }
        int height = 1;
        for (const QStringList &lines : row.cells)
            height = qMax(height, int(lines.size()));
        for (int line = 0; line < height; ++line) {
            QStringList pieces;
            for (int column = 0; column < row.cells.size(); ++column)
                pieces.append(padded(row.cells.at(column).value(line), m_widths.at(column)));
            QString whole = pieces.join(QStringLiteral("  "));
            while (whole.endsWith(QLatin1Char(' ')))
                whole.chop(1);
            text += whole + QLatin1Char('\n');
        }
    }
    return text;
}

QString measureText(const MeasureRecord &measure)
{
    return QStringLiteral("%1 ± %2  %3")
        .arg(measure.concentration, 5, 'f', 2)
        .arg(measure.sigma, 0, 'f', 2)
        .arg(decisionLabel(measure.decision));
}

QString summary(const DiagnosticRecord &diagnostic, const QVector<MeasureRecord> &direct)
{
    QString text = QStringLiteral("%1, %2\n\n").arg(diagnostic.name, diagnostic.localization);
    Table table({QStringLiteral("Unit"), QStringLiteral("Room"), QStringLiteral("Zone"),
                 QStringLiteral("Element"), QStringLiteral("Substrate / coating"), QStringLiteral("Measures"),
                 QStringLiteral("Decision"), QStringLiteral("Statut")});
    int number = 0;
    for (const UnitRecord &unit : diagnostic.units) {
        QStringList measures;
        for (const MeasureRecord &measure : unit.measures)
            measures.append(measureText(measure));
        table.add({QString::number(++number), unit.room, QString(unit.zone), unit.element, surface(unit),
                   measures.isEmpty() ? unit.observation : measures.join(QLatin1Char('\n')),
                   unit.measures.isEmpty() ? QString() : decisionLabel(unit.decision),
                   statutLabel(unit.statut)});
    }
    text += table.text() + QLatin1Char('\n');

    QStringList directTexts;
    for (const MeasureRecord &measure : direct)
        directTexts.append(measureText(measure).simplified());
    text += QStringLiteral("Direct measures:  %1\n")
                .arg(directTexts.isEmpty() ? QStringLiteral("none") : directTexts.join(QStringLiteral("; ")));
    text += QStringLiteral("Accuracy checks:  %1\n").arg(accuracyLine(diagnostic));
    text += QStringLiteral("Building:         %1\n").arg(buildingLine(diagnostic));
    return text;
}
