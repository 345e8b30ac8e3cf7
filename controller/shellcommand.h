// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_SHELLCOMMAND_H
#define HALVAR_SHELLCOMMAND_H

#include <QString>

#include "halvar-export.h"

namespace halvar {

/// \p argument as one word of the system's command interpreter: as it stands when it holds only letters,
/// digits and "_@%+=:,./-", otherwise in single quotes. Nothing in a serial number or a password is obeyed.
HALVAR_EXPORT QString shellWord(const QString &argument);

/// Runs \p command through the system's command interpreter and waits for it; its result does not matter.
void runShellCommand(const QString &command);

} // namespace halvar

#endif // HALVAR_SHELLCOMMAND_H
