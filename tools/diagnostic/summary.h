// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_SUMMARY_H
#define DIAGNOSTIC_SUMMARY_H

#include <QString>
#include <QStringList>
#include <QVector>

#include "record.h"

/// A table whose columns are as wide as their widest cell.
class Table
{
public:
    explicit Table(const QStringList &heads);
    /// One row; a cell may hold several lines.
    void add(const QStringList &cells);
    /// A line between the rows so far and the next one.
    void rule();
    QString text() const;

private:
    struct Row
    {
        bool isRule = false;
        QVector<QStringList> cells; ///< the lines of each
    };
    QVector<Row> m_rows;
    QVector<int> m_widths;
};

/// "1.52 ± 0.14 Positive".
QString measureText(const MeasureRecord &measure);

/// The units with their measures, decisions and statuts, the accuracy checks, the direct measures and the
/// observations on the building, for people to read.
QString summary(const DiagnosticRecord &diagnostic, const QVector<MeasureRecord> &direct);

#endif // DIAGNOSTIC_SUMMARY_H
