// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_RECORD_H
#define DIAGNOSTIC_RECORD_H

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// One measure, as the library offers it to QML.
struct MeasureRecord
{
    int idNAP = -1;
    double concentration = 0;
    double sigma = 0;
    QString decision; ///< key of the enumeration, like the two that follow
    QString localisation;
    QString degradation;
    QString conservation;

    static MeasureRecord of(const QObject *measure);
};

struct UnitRecord
{
    QString room;
    QChar zone;
    QString element;
    QString substrate;
    QString coating;
    QString observation;
    QString decision;
    QString statut;
    QVector<MeasureRecord> measures;

    static UnitRecord of(const QObject *unit);
};

/// The result of the accuracy check of one stage.
struct AccuracyRecord
{
    QString stage;
    int idNAP = -1;
    QString decision;
};

/// A whole diagnostic as plain values, taken from the objects that QML sees.
struct DiagnosticRecord
{
    QString name;
    QString localization;
    bool collapse = false;
    bool runs = false;
    bool damp = false;
    QVector<AccuracyRecord> accuracies;
    QVector<UnitRecord> units;

    /// \param controller is asked for one accuracy stage after the other, and has its own again afterwards.
    static DiagnosticRecord of(QObject *controller, QObject *units);
    int measureCount() const;
};

/// What tells \p loaded from \p measured, one line each; none when the file kept everything that it is to
/// keep.
///
/// A diagnostic file holds six significant digits of a number, the result of a measure only when it is
/// positive or negative, and of an accuracy check its number and its result; it does not hold the decision of
/// a unit.
QStringList differences(const DiagnosticRecord &measured, const DiagnosticRecord &loaded);

#endif // DIAGNOSTIC_RECORD_H
