// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_FILEREPLACE_H
#define HALVAR_FILEREPLACE_H

#include <QByteArray>
#include <QString>

#include "halvar-export.h"

namespace halvar {

/// What went wrong when a file was replaced.
struct ReplaceFailure
{
    /// Anything did.
    explicit operator bool() const { return !reason.isEmpty(); }

    /// False when the temporary file could not even be opened, as in a missing or read-only directory.
    bool opened = false;
    /// The new file is in place, but its directory could not be brought to the disk: a power cut may bring
    /// the old file back, which is complete too.
    bool replaced = false;
    /// The system's text, e.g. "No space left on device".
    QString reason;
};

/// Who may read a file that did not exist before. Only its owner writes it.
enum class Readers {
    Owner,
    Everybody
};

/// Replaces the file at \p path, or creates it, with \p content.
///
/// The content goes to a temporary file, is brought to the disk, and takes the old file's place in one
/// rename: a power cut at any instant leaves the old file or the new one, complete. What an earlier power
/// cut left behind under the temporary name is removed first. An existing file hands its permissions on.
///
/// \param failure says what went wrong, also when the result is true; may be null.
/// \param temporaryPath in the same directory as \p path; empty for \p path + ".tmp".
/// \param readers of a file that did not exist before.
/// \return false when the old file is still in place, untouched; then the temporary one is removed.
HALVAR_EXPORT bool replaceFile(const QString &path, const QByteArray &content,
                               ReplaceFailure *failure = nullptr, const QString &temporaryPath = QString(),
                               Readers readers = Readers::Owner);

/// The file at \p path exists and its permissions keep this process from writing it. The directory would
/// let it be replaced all the same; whoever respects the protection asks first.
HALVAR_EXPORT bool isWriteProtected(const QString &path);

/// Writes the one Error line that tells what went wrong with the file at \p path.
HALVAR_EXPORT void logReplaceFailure(const QString &path, const ReplaceFailure &failure);

} // namespace halvar

#endif // HALVAR_FILEREPLACE_H
