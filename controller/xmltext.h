// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_XMLTEXT_H
#define HALVAR_XMLTEXT_H

#include <QByteArray>
#include <QString>

#include "halvar-export.h"

namespace halvar {

/// \p text as an XML document can hold it: control characters and halves of surrogate pairs become U+FFFD.
/// One of them, say from a keyboard or a damaged name, would otherwise make the whole file unreadable.
HALVAR_EXPORT QString xmlText(const QString &text);

/// Puts a reference in the place of each carriage return of \p document, which an XML writer composed. The
/// writer leaves it bare in a text, where a reader takes it for the end of a line.
HALVAR_EXPORT void keepCarriageReturns(QByteArray &document);

} // namespace halvar

#endif // HALVAR_XMLTEXT_H
