// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef HALVAR_LABELS_H
#define HALVAR_LABELS_H

#include <cstddef>

namespace halvar {

/// The entry of a label table for \p value, empty for a value that the table does not have: QML and files
/// can pass numbers that the enumeration lacks.
template <std::size_t N>
const char *nameOf(const char *const (&names)[N], int value)
{
    return value >= 0 && static_cast<std::size_t>(value) < N ? names[value] : "";
}

} // namespace halvar

#endif // HALVAR_LABELS_H
