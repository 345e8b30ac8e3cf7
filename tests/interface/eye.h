// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef EYE_H
#define EYE_H

#include <QStringList>

class QQuickWindow;

/// How strictly a window is looked at.
enum class Strictness {
    Everything,
    /// Texts may end in an ellipsis: they are longer than any that is meant for the screen.
    LongTexts
};

/// What somebody who looks at \p window would complain of: controls that cover each other, texts that cover
/// each other or are cut, controls that lie outside, are too small for a finger or say nothing to those who
/// do not see them. One line each; none is a window as it should be.
QStringList complaints(const QQuickWindow *window, Strictness strictness = Strictness::Everything);

/// Whether a visible text holds \p words, as people type them: without the blanks that keep a line together.
bool isSaid(const QQuickWindow *window, const QString &words);

#endif // EYE_H
