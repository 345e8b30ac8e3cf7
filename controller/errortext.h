// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_ERRORTEXT_H
#define HALVAR_ERRORTEXT_H

#include <QString>

namespace halvar {

/// Who reports an error; the letter stands before the code in the text shown.
enum ErrorSource : char {
    ServiceSource = 'C',
    MspSource = 'S'
};

/// The text that the operator reads out to the service line, e.g. "Anomalie DAC - Erreur S4".
inline QString errorText(const QString &prefix, ErrorSource source, int code)
{
    return prefix + QLatin1String("Erreur ") + QLatin1Char(source) + QString::number(code);
}

} // namespace halvar

#endif // HALVAR_ERRORTEXT_H
