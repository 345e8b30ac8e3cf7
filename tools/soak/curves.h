// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SOAK_CURVES_H
#define SOAK_CURVES_H

#include <QString>
#include <QVector>

/// One value of the process, followed over the shots.
struct Curve
{
    QString name;
    QString unit;
    /// How much more of the curve's mean value the whole run may end with, by the fitted line.
    double relativeAllowance = 0;
    /// Or this much in the curve's unit, whichever is more.
    double absoluteAllowance = 0;
    QVector<double> shots;
    QVector<double> values;

    void add(double shot, double value);
};

/// A line through a curve's points by least squares.
struct Fit
{
    double perShot = 0;
    double mean = 0;
    double growth = 0; ///< over all shots that the curve covers
    double allowed = 0;
    bool isFlat = false;
};

/// The line through the points from \p warmUp shots on. Not flat when fewer than three points remain: nothing
/// is known then. Falling counts as flat.
Fit fit(const Curve &curve, double warmUp);

/// The curves below each other with their fitted lines, as an SVG picture.
QByteArray picture(const QVector<Curve> &curves, double warmUp);

#endif // SOAK_CURVES_H
