// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_RUN_H
#define ORDERS_RUN_H

#include <cstddef>
#include <string>

#include "event.h"

namespace orders {

struct Outcome
{
    std::size_t steps = 0; ///< events that model and library agreed on
    std::string failure; ///< empty when they agreed to the end
};

/// Runs \p sequence through a model and a controller of its own, in a process of its own: each sequence
/// begins with a controller just started, and a crash or a hang is a failure like any other, which can be
/// shrunk.
Outcome run(const Sequence &sequence);

} // namespace orders

#endif // ORDERS_RUN_H
