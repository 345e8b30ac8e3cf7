// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef STEP_H
#define STEP_H

#include <rapidcheck.h>

#include <ostream>
#include <vector>

namespace histories {

/// One kind of step: what a failure calls it and how often it is drawn.
struct Kind
{
    const char *name;
    int weight;
};

/// One step of a history. Its numbers say where and what; each kind of step takes them modulo what it has.
struct Step
{
    const char *name;
    int kind;
    int a;
    int b;
};
using Steps = std::vector<Step>;

void showValue(const Step &step, std::ostream &stream);

/// Sequences of up to \p longest steps of these kinds.
rc::Gen<Steps> sequences(const std::vector<Kind> &kinds, int longest);

} // namespace histories

#endif // STEP_H
