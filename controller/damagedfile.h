// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_DAMAGEDFILE_H
#define HALVAR_DAMAGEDFILE_H

#include <QString>

#include "halvar-export.h"

namespace halvar {

/// For certain there is no file at \p path: nothing, or a directory. When it cannot be told, the answer is
/// no.
HALVAR_EXPORT bool isNoFile(const QString &path);

/// Keeps what stands at \p path beside it, under its name and ".damaged" (".damaged.1", ... when that is
/// taken by something else): what cannot be read here can perhaps be repaired by hand. A copy that is there
/// already is not made again, and a copy is kept as it is. \return the copy's path, empty when there is none.
HALVAR_EXPORT QString keepDamaged(const QString &path);

/// Keeps the file at \p path, of which more may be on the disk than was read, before it is replaced.
/// \return true when it may be replaced: it is kept, and one Warn line says where, or nothing is lost with
/// it. False when it must stay in its place.
HALVAR_EXPORT bool keepBeforeReplacing(const QString &path);

/// Writes the one Error line that tells of a file at \p path that stays in its place because of that.
HALVAR_EXPORT void logNotKept(const QString &path);

} // namespace halvar

#endif // HALVAR_DAMAGEDFILE_H
