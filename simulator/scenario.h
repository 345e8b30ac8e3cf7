// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_SCENARIO_H
#define SIMULATOR_SCENARIO_H

#include <QJsonObject>
#include <QString>
#include <QVector>

namespace simulator {

/// How the instrument is at the start, and what happens to it by itself (docs/simulator.md).
struct Scenario
{
    struct Step
    {
        double at = 0; ///< instrument seconds from the start, or from the notice that it waits for
        QJsonObject after; ///< the notice that it waits for; empty: the start
        int count = 1; ///< how many of these notices it waits for
        QJsonObject command;
    };

    QString name;
    QString description;
    QVector<QJsonObject> settings; ///< commands, in the order of their names
    QVector<Step> steps;

    /// Reads the scenario \p name: a file when it holds a '/' or ends in ".json", else one of \p directory.
    /// \return whether it is sound; otherwise \p error is one line with file, key and what was expected.
    bool read(const QString &name, const QString &directory, QString &error);

private:
    /// An empty text, or the key and what was expected.
    QString parse(const QJsonObject &root);
    QString parseStep(const QJsonValue &value, int index);
};

} // namespace simulator

#endif // SIMULATOR_SCENARIO_H
