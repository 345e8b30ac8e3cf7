// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef SIMULATOR_COMMANDTABLE_H
#define SIMULATOR_COMMANDTABLE_H

#include <QDate>
#include <QJsonObject>
#include <QString>

/// Which commands there are and what each takes; the one place that judges what comes from outside.
namespace simulator::commandtable {

/// What is wrong with a member: its name (empty: the command itself) and what was expected.
struct Complaint
{
    QString member;
    QString text;

    bool isEmpty() const { return text.isEmpty(); }
};

bool exists(const QString &command);
/// Whether \p command changes a setting, so that a scenario may begin with it.
bool isSetting(const QString &command);
/// Its one member; empty when it has none or several.
QString onlyMember(const QString &command);

/// Judges \p members of \p command, "command" and "tag" left aside. Empty when all is well: then every member
/// is known, of its type and in its range, and none is missing.
Complaint check(const QString &command, const QJsonObject &members);

/// "expected a number, found "abc"", in one line however long the value is.
QString expected(const QString &what, const QJsonValue &found);

/// "yyyy-MM-dd"; null when it is none.
QDate date(const QJsonValue &value);

} // namespace simulator::commandtable

#endif // SIMULATOR_COMMANDTABLE_H
