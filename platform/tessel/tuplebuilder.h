// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TUPLEBUILDER_H
#define TESSEL_TUPLEBUILDER_H

#include "tessel/tuple.h"

namespace tessel {

/// For the decoder, which knows the names that it has seen: looking each up again would make a message of
/// many fields expensive.
struct TupleBuilder
{
    static bool contains(const Tuple &tuple, const QByteArray &name) { return tuple.indexOf(name) >= 0; }
    static void reserve(Tuple &tuple, int fields);
    /// \p name must not be in \p tuple yet, \p value not be T_NONE.
    static void append(Tuple &tuple, const QByteArray &name, const Value &value);
};

} // namespace tessel

#endif // TESSEL_TUPLEBUILDER_H
