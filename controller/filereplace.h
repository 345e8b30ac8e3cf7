// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_FILEREPLACE_H
#define HALVAR_FILEREPLACE_H

#include <QByteArray>
#include <QString>

#include "halvar-export.h"

namespace halvar {

/// Why a file was not replaced.
struct ReplaceFailure
{
    /// False when the temporary file could not even be opened, as in a missing or read-only directory.
    bool opened = false;
    /// The system's text, e.g. "No space left on device".
    QString reason;
};

/// Replaces the file at \p path, or creates it, with \p content.
///
/// The content goes to a temporary file, is brought to the disk, and takes the old file's place in one
/// rename: a power cut at any instant leaves the old file or the new one, complete. A temporary file that
/// an earlier power cut left behind is overwritten. An existing file hands its permissions on.
///
/// \param failure says why when the result is false; may be null.
/// \param temporaryPath in the same directory as \p path; empty for \p path + ".tmp".
/// \return false when anything failed: then the old file is untouched and the temporary one removed.
HALVAR_EXPORT bool replaceFile(const QString &path, const QByteArray &content,
                               ReplaceFailure *failure = nullptr, const QString &temporaryPath = QString());

/// The file at \p path exists and its permissions keep this process from writing it. The directory would
/// let it be replaced all the same; whoever respects the protection asks first.
HALVAR_EXPORT bool isWriteProtected(const QString &path);

/// Writes the one Error line that tells of a file at \p path that could not be saved.
HALVAR_EXPORT void logReplaceFailure(const QString &path, const ReplaceFailure &failure);

} // namespace halvar

#endif // HALVAR_FILEREPLACE_H
