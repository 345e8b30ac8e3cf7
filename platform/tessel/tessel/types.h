// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef TESSEL_TYPES_H
#define TESSEL_TYPES_H

namespace tessel {

/// Types of a field; the numbers travel in messages.
enum Types : int {
    T_NONE = 0, ///< no value; never in a tuple
    T_BOOL = 1,
    T_INT = 2, ///< 32 bits
    T_DOUBLE = 3,
    T_ASTRING = 4,
    T_TUPLE = 5,
    T_TIME_DATE = 6,
    T_TIME_PERIOD = 7
};

} // namespace tessel

#endif // TESSEL_TYPES_H
