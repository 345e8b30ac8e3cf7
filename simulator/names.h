// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_NAMES_H
#define SIMULATOR_NAMES_H

#include <QJsonValue>
#include <QStringList>
#include <QVector>

#include <optional>

namespace simulator {

/// The names of one enumeration, as the control socket and the scenarios write its values.
class Names
{
public:
    struct Entry
    {
        const char *name;
        int value;
    };
    Names(std::initializer_list<Entry> entries)
        : m_entries(entries)
    { }

    /// The number itself when it has no name.
    QString name(int value) const;
    /// The same as JSON: a text, or a number without a name.
    QJsonValue json(int value) const;
    std::optional<int> value(const QString &name) const;
    /// "STANDBY, READY_HARD, ...".
    QString list() const;

private:
    const char *find(int value) const;
    QVector<Entry> m_entries;
};

namespace names {

const Names &mspCommand();
const Names &mspEvent();
const Names &mspState();
const Names &acqStatus();
const Names &acqError();
const Names &decision();
const Names &calibrationOutcome(); ///< 0 success, 1 error
const Names &accuracyOutcome(); ///< a decision; -1 what is measured
const Names &acquisition();

} // namespace names
} // namespace simulator

#endif // SIMULATOR_NAMES_H
