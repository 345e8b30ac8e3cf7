// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef DIAGNOSTIC_SCENARIO_H
#define DIAGNOSTIC_SCENARIO_H

#include <QJsonObject>
#include <QString>
#include <QVector>

/// One thing that the operator does. The members have been checked: those that the kind of step knows, each
/// of its type, the required ones present.
struct Step
{
    QString kind;
    QJsonObject members;

    QString text(const char *member) const { return members.value(QLatin1String(member)).toString(); }
    int number(const char *member, int otherwise = 0) const
    {
        return members.value(QLatin1String(member)).toInt(otherwise);
    }
    bool flag(const char *member, bool otherwise = false) const
    {
        return members.value(QLatin1String(member)).toBool(otherwise);
    }
    QJsonObject object(const char *member) const { return members.value(QLatin1String(member)).toObject(); }
    bool has(const char *member) const { return members.contains(QLatin1String(member)); }
};

/// What an operator does in one diagnostic, in order (docs/diagnostic-scenarios.md).
struct Scenario
{
    QString title;
    /// How many times as fast as real time the simulated instrument runs.
    double speed = 1;
    static constexpr double minimumSpeed = 0.01;
    static constexpr double maximumSpeed = 500;
    QVector<Step> steps;

    /// \param name the name of one of tools/scenarios, or a path (with "/" or ".json").
    /// Throws Failure when there is none or it is not right.
    static Scenario load(const QString &name);
    /// \param origin for the texts of failures.
    static Scenario parse(const QByteArray &json, const QString &origin);
    /// The scenarios that come with the program, by name.
    static QStringList names();
};

#endif // DIAGNOSTIC_SCENARIO_H
