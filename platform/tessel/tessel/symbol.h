// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_SYMBOL_H
#define TESSEL_SYMBOL_H

#include <QByteArray>

#include "export.h"

namespace tessel {

/// A name of the program's own, made once and compared by identity. Symbols are never given back: what comes
/// from outside does not become one.
class TESSEL_EXPORT Symbol
{
public:
    explicit Symbol(const char *name);

    const QByteArray &name() const { return *m_name; }
    const char *c_str() const { return m_name->constData(); }

    friend bool operator==(const Symbol &a, const Symbol &b) { return a.m_name == b.m_name; }
    friend bool operator!=(const Symbol &a, const Symbol &b) { return a.m_name != b.m_name; }

private:
    const QByteArray *m_name; // owned by the table of symbols
};

} // namespace tessel

#endif // TESSEL_SYMBOL_H
