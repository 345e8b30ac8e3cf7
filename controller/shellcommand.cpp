// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "shellcommand.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

// Such a character means itself to every shell, wherever it stands.
bool isPlain(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') || (code >= '0' && code <= '9')
        || (code < 128 && code > 0 && std::strchr("_@%+=:,./-", code));
}

} // namespace

namespace halvar {

QString shellWord(const QString &argument)
{
    if (!argument.isEmpty() && std::all_of(argument.begin(), argument.end(), isPlain))
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
