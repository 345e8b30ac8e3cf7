// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "shellcommand.h"

#include <QRegularExpression>

#include <cstdlib>

namespace halvar {

QString shellWord(const QString &argument)
{
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9_@%+=:,./-]+\\z"));
    if (plain.match(argument).hasMatch())
        return argument;
    // A zero byte would end the command line early.
    QString quoted = argument;
    quoted.remove(QChar(0));
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

void runShellCommand(const QString &command)
{
    [[maybe_unused]] const int ignored = std::system(command.toUtf8().constData());
}

} // namespace halvar
